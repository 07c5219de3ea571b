#include <dirent.h>
#include <unistd.h>

#include <vector>

#include "machines/posix/host_names.h"
#include "machines/posix/ports.h"

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
    const HostPlace place{host};
    const bool is_made = !host.empty() && mkdirat(place.folder(), place.name(), kNewFolderMode) == 0;
    if (is_made) paths_.NoteMade(host);
    return is_made;
  }

  bool Remove(std::string_view path, Removal removal) override {
    const auto host = paths_.FindExisting(path);
    if (!host || paths_.IsDriveRoot(path)) return false;
    const Fd folder = OpenHost(*host, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    if (!folder.valid() || !RemoveContents(folder, removal)) return false;
    const HostPlace place{*host};
    return unlinkat(place.folder(), place.name(), AT_REMOVEDIR) == 0;
  }

  bool List(std::string_view path, const std::function<Visit(const FolderEntry&)>& visit) override {
    const Fd folder = paths_.OpenExisting(path, O_RDONLY | O_DIRECTORY);
    if (!folder.valid()) return false;
    const std::string drive = paths_.DriveFolderOf(path);
    std::string scratch;
    return ListHost(folder, [&](const HostEntry& entry) {
      FolderEntry shown;
      if (!Describe(folder, entry, drive, shown)) return true;
      shown.name = WindowsName(entry.name, scratch);
      return visit(shown) == Visit::kContinue;
    });
  }

 private:
  // False for what the machine does not show: content on its way to another name, links to folders, and what
  // is neither file nor folder.
  bool Describe(const Fd& folder, const HostEntry& entry, const std::string& drive, FolderEntry& shown) {
    shown.is_folder = entry.type == DT_DIR;
    if (shown.is_folder) return true;
    if (std::string_view{entry.name}.starts_with(kNewContentPrefix)) return false;
    if (entry.type != DT_REG && entry.type != DT_LNK && entry.type != DT_UNKNOWN) return false;
    struct stat status {};
    if (fstatat(folder.get(), entry.name, &status, AT_SYMLINK_NOFOLLOW) != 0) return false;
    shown.is_folder = S_ISDIR(status.st_mode);
    if (shown.is_folder) return true;
    if (S_ISLNK(status.st_mode)) {
      const Fd target{openat(folder.get(), entry.name, O_PATH | O_CLOEXEC)};
      if (!target.valid() || fstat(target.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
      shown.leads_off_drive = !IsWithin(target, drive);
      if (shown.leads_off_drive) return true;
    }
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
