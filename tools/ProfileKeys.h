#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/LightCiphers.h"
#include "profile/profile_keys.h"

namespace ondura {

// Reads and writes keys by their place in the table.
class ProfileKeys {
 public:
  ProfileKeys(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation), ciphers_(machine.code_page, machine.pump) {}

  // The clear text. Empty for a missing key.
  [[nodiscard]] std::string Read(const ProfileKey& key) const;

  // False for a value whose stored form would break its line: the shift makes line ends of control
  // characters.
  [[nodiscard]] bool IsStoredInOneLine(const ProfileKey& key, std::string_view value) const;

  // False when the file can't be written.
  [[nodiscard]] bool Write(const ProfileKey& key, std::string_view value) const;

  // Why a `value` just written does not come back as it is, or empty.
  [[nodiscard]] std::string WhyNotHeld(const ProfileKey& key, std::string_view value) const;

 private:
  [[nodiscard]] std::string FileOf(const ProfileKey& key) const;
  [[nodiscard]] std::string StoredName(const ProfileKey& key) const;
  [[nodiscard]] std::string StoredValue(const ProfileKey& key, std::string_view value) const;

  Machine machine_;
  const Installation& installation_;
  LightCiphers ciphers_;
};

}  // namespace ondura
