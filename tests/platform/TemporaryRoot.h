#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "machines/posix/PosixMachine.h"

namespace ondura {

// A machine's folder for one test, with drive C:, removed with this object.
class TemporaryRoot {
 public:
  TemporaryRoot();
  ~TemporaryRoot();
  TemporaryRoot(const TemporaryRoot&) = delete;
  TemporaryRoot& operator=(const TemporaryRoot&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  // Where a path of drive C: is.
  [[nodiscard]] std::filesystem::path OnHost(std::string_view path) const;

  // A file by its host path under the root; missing folders are made.
  void Put(std::string_view name, std::string_view bytes) const;
  [[nodiscard]] std::string Bytes(std::string_view name) const;

  [[nodiscard]] PosixMachineResult Make(int speed = 1) const;

  // Puts the system's Perl at `path`: a program that does what a script says without a child of its own.
  void PutPerl(std::string_view path) const;
  [[nodiscard]] static LaunchRequest PerlRequest(std::string_view path, std::string_view script);

 private:
  std::filesystem::path path_;
};

}  // namespace ondura
