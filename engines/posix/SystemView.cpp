#include "engines/common/SystemView.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <utility>

#include "machines/posix/host_names.h"
#include "text/text.h"

namespace ondura::engines {

namespace {

std::string DriveOf(std::string_view path) { return std::string{path.substr(0, 2)} + "\\"; }

std::string WithoutSlash(std::string text) {
  while (text.size() > 1 && text.back() == '/') text.pop_back();
  return text;
}

// The program sees a folder of links, one for each drive, wherever on the host the drives are.
class DriveLinks : public SystemView {
 public:
  DriveLinks(const Machine& machine, std::string folder) : machine_(machine), folder_(std::move(folder)) {}

  // False if a drive can't be shown.
  bool Refresh() {
    for (const std::string& root : machine_.drives.Roots()) {
      const std::string target = DriveFolder(root);
      const std::string link = folder_ + "/" + root.substr(0, 1);
      std::array<char, PATH_MAX> old{};
      const ssize_t length = readlink(link.c_str(), old.data(), old.size());
      if (length > 0 && target == std::string_view{old.data(), static_cast<std::size_t>(length)}) continue;
      unlink(link.c_str());
      if (symlink(target.c_str(), link.c_str()) != 0) return false;
    }
    return true;
  }

  [[nodiscard]] const std::string& folder() const override { return folder_; }

  std::string TargetOf(std::string_view path) override {
    const std::string saved = SavedPath(path);
    return saved.size() <= 2 ? "" : saved.substr(1);
  }

  std::string FullPathOf(std::string_view path) override { return folder_ + SavedPath(path); }

  [[nodiscard]] bool EscapesByBackslash() const override { return true; }

  bool IsLink(std::string_view path) override {
    struct stat status {};
    const std::string host = WithoutSlash(machine_.processes.SystemPath(path));
    return lstat(host.c_str(), &status) == 0 && S_ISLNK(status.st_mode);
  }

  [[nodiscard]] std::string MachinePath(std::string_view item) const override {
    if (item.starts_with(folder_)) item.remove_prefix(folder_.size());
    std::string path;
    for (const std::string& name : Split(item, "/")) {
      if (name.empty()) continue;
      std::string scratch;
      path.append(path.empty() ? "" : "\\").append(WindowsName(name, scratch));
      if (path.size() == 1) path += ':';
    }
    return path.size() == 2 ? path + "\\" : path;
  }

  std::string SavedPath(std::string_view path) override {
    const std::string host = WithoutSlash(machine_.processes.SystemPath(path));
    if (host.empty()) return "";
    const std::string drive = DriveFolder(DriveOf(path));
    return "/" + ToUpper(path.substr(0, 1)) + (host.starts_with(drive) ? host.substr(drive.size()) : "");
  }

  std::string MachinePathOfFolder(std::string_view system_path) override {
    for (const std::string& root : machine_.drives.Roots()) {
      const std::string folder = DriveFolder(root);
      if (system_path.starts_with(folder + "/")) {
        return MachinePath("/" + root.substr(0, 1) + std::string{system_path.substr(folder.size())});
      }
    }
    return "";
  }

  [[nodiscard]] std::vector<std::string> Environment() const override {
    std::vector<std::string> kept{"LC_ALL=C.UTF-8"};
    for (const char* const name : {"PATH", "HOME", "USER", "LOGNAME", "SSH_AUTH_SOCK"}) {
      if (const char* const value = std::getenv(name)) kept.push_back(std::string{name} + "=" + value);
    }
    return kept;
  }

  [[nodiscard]] std::string HostName() const override {
    std::array<char, HOST_NAME_MAX + 1> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
  }

 private:
  std::string DriveFolder(std::string_view root) { return WithoutSlash(machine_.processes.SystemPath(root)); }

  Machine machine_;
  std::string folder_;
};

}  // namespace

std::unique_ptr<SystemView> MakeSystemView(const Machine& machine, const std::string& work_folder) {
  const std::string links = work_folder + "\\Drives";
  machine.folders.Make(work_folder);
  machine.folders.Make(links);
  const std::string host = machine.processes.SystemPath(links);
  if (!machine.folders.Exists(links)) return nullptr;
  auto view = std::make_unique<DriveLinks>(machine, host);
  if (!view->Refresh()) return nullptr;
  return view;
}

}  // namespace ondura::engines
