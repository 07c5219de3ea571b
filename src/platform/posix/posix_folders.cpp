#include <dirent.h>
#include <unistd.h>

#include <vector>

#include "platform/posix/host_names.h"
#include "platform/posix/ports.h"

namespace ondura {

namespace {

// Removes what is in an open folder. Links are removed, not followed.
bool RemoveContents(const Fd& folder, Removal removal) {
  struct Item {
    std::string name;
    bool is_folder = false;
  };
  std::vector<Item> items;
  bool all_gone = ListHost(folder, [&](const HostEntry& entry) {
    items.push_back({entry.name, false});
    return true;
  });
  for (Item& item : items) {
    struct stat status {};
    if (fstatat(folder.get(), item.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
    item.is_folder = S_ISDIR(status.st_mode);
    if (item.is_folder) {
      const Fd inner{
          openat(folder.get(), item.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)};
      all_gone = inner.valid() && RemoveContents(inner, removal) && all_gone;
    } else if (removal == Removal::kPlain && S_ISREG(status.st_mode) && (status.st_mode & S_IWUSR) == 0) {
      all_gone = false;
      continue;
    }
    const bool gone = unlinkat(folder.get(), item.name.c_str(), item.is_folder ? AT_REMOVEDIR : 0) == 0;
    all_gone = gone && all_gone;
  }
  return all_gone;
}

class PosixFolders : public Folders {
 public:
  PosixFolders(PathMap& paths, LocalZone& zone) : paths_(paths), zone_(zone) {}

  bool Exists(std::string_view path) override {
    const auto status = paths_.StatExisting(path);
    return status && S_ISDIR(status->st_mode);
  }

  bool Make(std::string_view path) override {
    const std::string host = paths_.ForCreation(path);
    return !host.empty() && mkdir(host.c_str(), kNewFolderMode) == 0;
  }

  bool Remove(std::string_view path, Removal removal) override {
    const auto host = paths_.FindExisting(path);
    if (!host || paths_.IsDriveRoot(path)) return false;
    const Fd folder = OpenHost(*host, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!folder.valid() || !RemoveContents(folder, removal)) return false;
    return rmdir(host->c_str()) == 0;
  }

  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override {
    const Fd folder = paths_.OpenExisting(path, O_RDONLY | O_DIRECTORY);
    if (!folder.valid()) return false;
    std::string scratch;
    return ListHost(folder, [&](const HostEntry& entry) {
      FolderEntry shown;
      if (!Describe(folder, entry, shown)) return true;
      shown.name = WindowsName(entry.name, scratch);
      return visit(shown) == Visit::kContinue;
    });
  }

 private:
  // False for what the machine does not show: links to folders, which could lead round in circles, and what
  // is neither file nor folder.
  bool Describe(const Fd& folder, const HostEntry& entry, FolderEntry& shown) {
    shown.is_folder = entry.type == DT_DIR;
    if (shown.is_folder) return true;
    if (entry.type != DT_REG && entry.type != DT_LNK && entry.type != DT_UNKNOWN) return false;
    struct stat status {};
    if (entry.type == DT_UNKNOWN) {
      if (fstatat(folder.get(), entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
      shown.is_folder = S_ISDIR(status.st_mode);
      if (shown.is_folder) return true;
    }
    const bool need_target = entry.type != DT_UNKNOWN || S_ISLNK(status.st_mode);
    if (need_target && fstatat(folder.get(), entry.name, &status, 0) != 0) return false;
    shown.size_bytes = static_cast<std::uint64_t>(status.st_size);
    shown.modified = zone_.ToLocal(status.st_mtim.tv_sec);
    return S_ISREG(status.st_mode);
  }

  PathMap& paths_;
  LocalZone& zone_;
};

}  // namespace

std::unique_ptr<Folders> MakePosixFolders(PathMap& paths, LocalZone& zone) {
  return std::make_unique<PosixFolders>(paths, zone);
}

}  // namespace ondura
