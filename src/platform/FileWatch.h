#pragma once

#include <memory>
#include <string_view>

namespace ondura {

// Finds out at little cost whether one file may have changed. A walk that looks at a value after every file
// reads it again only when somebody has written.
class FileWatch {
 public:
  virtual ~FileWatch() = default;

  // True at the first call, and whenever the file may differ (size, time, identity, existence) from what
  // it was at the call before. A write that another process has finished is seen at the very next call;
  // a write within the clock's granularity of the last call counts as a change.
  virtual bool MayHaveChanged() = 0;
};

// On Windows: GetFileInformationByHandle on a handle opened for attributes only.
class FileWatches {
 public:
  virtual ~FileWatches() = default;

  // Never null; the file need not exist.
  virtual std::unique_ptr<FileWatch> Watch(std::string_view path) = 0;
};

}  // namespace ondura
