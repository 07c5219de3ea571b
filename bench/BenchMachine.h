#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>

#include "machines/posix/PosixMachine.h"
#include "profile/Installation.h"

namespace ondura {

inline constexpr const char* kBenchUser = "ann";

// A machine in a folder and the installation on it.
class BenchMachine {
 public:
  explicit BenchMachine(const std::filesystem::path& root) {
    PosixOptions options;
    options.root = root.string();
    auto result = MakePosixMachine(std::move(options));
    if (!result.owner) throw std::runtime_error{result.error};
    owner_ = std::move(result.owner);
    installation_.ExeLocation = "C:\\Program Files\\Ondura\\";
    installation_.VirtualPath = "C:\\Data\\";
    installation_.ProductInstallationName = "Ondura";
    installation_.ExeGroup = "Ox";
    installation_.CurrentUser = kBenchUser;
  }

  [[nodiscard]] const Machine& machine() const { return owner_->machine(); }
  [[nodiscard]] const Installation& installation() const { return installation_; }

  // Where the user's folder lies on the host.
  static std::filesystem::path UserFolder(const std::filesystem::path& root) {
    return root / "C" / "Data" / (std::string{"Ondura"} + kBenchUser);
  }

 private:
  std::unique_ptr<PosixMachine> owner_;
  Installation installation_;
};

}  // namespace ondura
