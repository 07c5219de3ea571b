#pragma once

#include <string>
#include <string_view>

#include "OpenedMachine.h"

namespace ondura {

// Engine.ini of the machine, as the commands change it: for all users, or for one.
class EngineSettings {
 public:
  // `user` empty means all users.
  EngineSettings(const Machine& machine, const std::string& install_folder, std::string user);

  [[nodiscard]] std::string Read(std::string_view section, std::string_view key) const;

  // Throws Failure (kFailed) if it can't be written. An empty value takes the key out.
  void Write(std::string_view section, std::string_view key, std::string_view value) const;

 private:
  [[nodiscard]] std::string SectionFor(std::string_view section) const;

  ProfileFiles& profiles_;
  std::string path_;
  std::string user_;
};

// The location with a folder of its own for each account, unless it says already where the account's name
// goes. Throws Failure (kUsage) for a text that is no location.
std::string StoreLocation(const std::string& location);

}  // namespace ondura
