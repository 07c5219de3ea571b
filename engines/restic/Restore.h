#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "engines/restic/ResticStore.h"

namespace ondura::engines {

// Brings files and folders of a snapshot back, under the folder that a person names: `D:\Documents\x` becomes
// "<folder>/D/Documents/x". restic overwrites what is there and says nothing of a name that it does not find,
// so everything goes into a fresh folder beside it first, and is moved from there.
class Restore {
 public:
  struct Figures {
    std::uint64_t files = 0;
    std::uint64_t folders = 0;
    std::uint64_t bytes = 0;
  };
  using Progress = std::function<void(const Figures& done, const Figures& total)>;

  // `to` is a folder in the system's form; it is made if it is missing.
  Restore(ResticStore& store, std::string to, bool overwrites, Progress progress)
      : store_(store), to_(std::move(to)), overwrites_(overwrites), progress_(std::move(progress)) {}

  // Paths as the machine has them, whatever their letter case; a folder means all in it. False with error()
  // set when one of them is not in the snapshot, something is there already, or not all came back.
  bool Run(const ResticSnapshot& snapshot, const std::vector<std::string>& paths);

  [[nodiscard]] const std::string& error() const { return error_; }
  [[nodiscard]] const Figures& restored() const { return restored_; }

 private:
  bool FindWanted(const ResticSnapshot& snapshot, const std::vector<std::string>& paths);
  bool Fetch(const ResticSnapshot& snapshot, const std::string& fresh);
  bool MayMove(const std::string& fresh);
  bool Move(const std::string& fresh);
  bool Fail(std::string error);

  ResticStore& store_;
  std::string to_;
  bool overwrites_;
  Progress progress_;
  std::vector<std::string> patterns_;
  Figures total_;
  Figures restored_;
  std::string error_;
};

}  // namespace ondura::engines
