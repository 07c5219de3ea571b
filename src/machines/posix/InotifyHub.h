#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "machines/posix/host_io.h"

namespace ondura {

// The kernel's notices of changed files. Their arrival raises a signal that a handler counts, so that asking
// whether anything came costs no system call while nothing happens.
class InotifyHub {
 public:
  // One file that somebody is watching.
  struct Target {
    std::string folded_name;
    bool changed = true;
    bool lost = false;  // no more notices come for it
    int folder_watch = -1;
  };

  InotifyHub();
  ~InotifyHub();
  InotifyHub(const InotifyHub&) = delete;
  InotifyHub& operator=(const InotifyHub&) = delete;

  // False when notices can't be had for the folder: it is not there, or its file system reports nothing about
  // what other machines write.
  bool Add(const std::string& host_folder, Target& target);

  void Remove(Target& target);

  // Marks the targets whose files have had notices.
  void Collect();

 private:
  void Take(int folder_watch, std::uint32_t what, std::string_view name);

  Fd queue_;
  std::unordered_map<int, std::vector<Target*>> targets_;
  std::uint32_t seen_ = 0;
};

}  // namespace ondura
