#include "machines/posix/InotifyHub.h"
#include "machines/posix/host_names.h"
#include "machines/posix/ports.h"

namespace ondura {

namespace {

// Compares the file's stamp with the one before.
class StampWatch : public FileWatch {
 public:
  StampWatch(PathMap& paths, std::string path) : paths_(paths), path_(std::move(path)) {}

  bool MayHaveChanged() override {
    const auto status = paths_.StatExisting(path_);
    const FileStamp stamp = status ? StampOf(*status) : FileStamp{};
    const bool changed = is_first_ || was_fresh_ || stamp != stamp_;
    is_first_ = false;
    was_fresh_ = status && IsFresh(stamp);
    stamp_ = stamp;
    return changed;
  }

 private:
  PathMap& paths_;
  std::string path_;
  FileStamp stamp_;
  bool is_first_ = true;
  bool was_fresh_ = false;
};

// Asks the kernel's notices, and the stamp once there are no more of them.
class NoticeWatch : public FileWatch {
 public:
  NoticeWatch(std::shared_ptr<InotifyHub> hub, PathMap& paths, std::string path)
      : hub_(std::move(hub)), by_stamp_(paths, std::move(path)) {}
  ~NoticeWatch() override { hub_->Remove(target_); }
  NoticeWatch(const NoticeWatch&) = delete;
  NoticeWatch& operator=(const NoticeWatch&) = delete;

  bool Start(const std::string& host_folder, std::string folded_name) {
    target_.folded_name = std::move(folded_name);
    return hub_->Add(host_folder, target_);
  }

  bool MayHaveChanged() override {
    hub_->Collect();
    if (target_.lost) return by_stamp_.MayHaveChanged();
    return std::exchange(target_.changed, false);
  }

 private:
  std::shared_ptr<InotifyHub> hub_;
  InotifyHub::Target target_;
  StampWatch by_stamp_;
};

class PosixFileWatches : public FileWatches {
 public:
  explicit PosixFileWatches(PathMap& paths) : paths_(paths) {}

  std::unique_ptr<FileWatch> Watch(std::string_view path) override {
    const std::string host = paths_.ForCreation(path);
    const std::size_t slash = host.rfind('/');
    struct stat status {};
    // Writes through a link are noticed in the folder of its target only.
    const bool is_link = lstat(host.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
    if (slash != std::string::npos && !is_link) {
      if (!hub_) hub_ = std::make_shared<InotifyHub>();
      auto watch = std::make_unique<NoticeWatch>(hub_, paths_, std::string{path});
      std::string scratch;
      const std::string name = host.substr(slash + 1);
      if (watch->Start(host.substr(0, slash), FoldedName(WindowsName(name, scratch)))) return watch;
    }
    return std::make_unique<StampWatch>(paths_, std::string{path});
  }

 private:
  PathMap& paths_;
  std::shared_ptr<InotifyHub> hub_;
};

}  // namespace

std::unique_ptr<FileWatches> MakePosixFileWatches(PathMap& paths) {
  return std::make_unique<PosixFileWatches>(paths);
}

}  // namespace ondura
