#include "machines/portable/IniProfileFiles.h"
#include "machines/posix/ports.h"

namespace ondura {

namespace {

class PosixProfileFiles : public IniProfileFiles {
 public:
  PosixProfileFiles(PathMap& paths, IniStore& store, const CodePageTable& table)
      : IniProfileFiles(table), paths_(paths), store_(store) {}

  bool WriteString(const IniKey& key, std::string_view value) override {
    const std::string host = paths_.ForCreation(key.file);
    if (host.empty()) return false;
    const FolderLock lock{host};
    lock_ = &lock;
    const bool written = IniProfileFiles::WriteString(key, value);
    lock_ = nullptr;
    return written;
  }

 protected:
  std::shared_ptr<const IniText> Load(std::string_view path) override {
    const std::string host = paths_.ToHost(path);
    if (host.empty()) return nullptr;
    const std::string drive = paths_.DriveFolderOf(path);
    auto text = store_.Load(host, drive);
    if (text || LastError() != HostError::kMissing) return text;
    const auto other = paths_.FindOtherCase(path);
    return other ? store_.Load(*other, drive) : nullptr;
  }

  bool Store(std::string_view path, const IniText& text) override {
    const std::string host = paths_.ForCreation(path);
    return !host.empty() && store_.Save(host, paths_.DriveFolderOf(path), text, *lock_);
  }

  bool MayReplace(std::string_view path) override { return !paths_.FindExisting(path); }

 private:
  PathMap& paths_;
  IniStore& store_;
  const FolderLock* lock_ = nullptr;  // during a change
};

}  // namespace

std::unique_ptr<ProfileFiles> MakePosixProfileFiles(PathMap& paths, IniStore& store,
                                                    const CodePageTable& code_page) {
  return std::make_unique<PosixProfileFiles>(paths, store, code_page);
}

}  // namespace ondura
