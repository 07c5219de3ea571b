#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "engines/common/Client.h"
#include "engines/common/SystemView.h"
#include "engines/restic/StoreSettings.h"

namespace ondura::engines {

// How a run of restic ended.
struct ResticEnd {
  enum class How {
    kNotStarted,  // restic is missing
    kEnded,
    kStopped,  // because the caller said so
    kTimedOut
  };
  How how = How::kNotStarted;
  std::uint32_t exit_code = 0;
  std::string words{};   // what it said on errors, without messages; lines parted by LF
  std::string output{};  // what it printed, where nobody took the lines

  [[nodiscard]] bool IsDone() const { return how == How::kEnded && exit_code == 0; }
};

// restic with one user's store and passwords. No secret is on its command line, in its environment or in a
// file: the repository's password is its standard input, its address a pipe. Keys of Backblaze and Azure are
// the exception, which restic takes from its environment alone.
class ResticProgram {
 public:
  // `work_folder` is a folder of the machine without a backslash at its end; cache and temporary files go
  // there.
  ResticProgram(Client& client, const StoreSettings& settings, Account account, SystemView& view,
                const std::string& work_folder);

  // Each line that the program prints, whatever stream it is of.
  using TakeLine = std::function<void(const PipedLine& line)>;
  using IsOver = std::function<bool()>;

  struct Run {
    std::vector<std::string> arguments;
    TakeLine take_line{};                // takes the lines in place of ResticEnd::output
    IsOver is_over{};                    // asked all the time; true ends the run
    std::chrono::seconds limit{0};       // of real time; 0 is none
    std::vector<PipedSecret> secrets{};  // beside those that every run gets
  };

  // Runs restic to its end. A run that is to stop gets five seconds to give back its lock.
  ResticEnd Do(const Run& run);

  // Repository's password: the one for encryption, or the account's where the user has none.
  [[nodiscard]] const std::string& password() const { return password_; }

 private:
  [[nodiscard]] PipedRequest RequestOf(const Run& run) const;
  [[nodiscard]] std::uint64_t MemoryLimit() const;
  void AddStoreSecrets(PipedRequest& request) const;
  void AddProxy(std::vector<std::string>& environment) const;
  [[nodiscard]] std::string RepositoryWithLogin() const;

  Client& client_;
  const StoreSettings& settings_;
  Account account_;
  SystemView& view_;
  std::string cache_;         // the folder for restic's cache, as the machine has it
  std::string cache_folder_;  // in the system's form
  std::string temp_folder_;
  std::string ssh_log_;  // as the machine has it
  std::string password_;
};

// The text with "***" in the place of each login in an address.
std::string WithoutLogins(std::string text);

// The command that restic starts for a repository of kind "sftp": never asks, and reads `config_file` where
// it is not empty. What ssh says goes to `log_file`, where it is not empty: restic may end before it has
// passed it on.
std::string SshCommand(const std::string& repository, const std::string& config_file,
                       const std::string& log_file);

}  // namespace ondura::engines
