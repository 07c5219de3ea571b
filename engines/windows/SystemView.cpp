#include "engines/common/SystemView.h"

#include <windows.h>

#include <cstdlib>
#include <utility>

#include "text/text.h"

namespace ondura::engines {

namespace {

// The program sees the machine as it is.
class WholeMachine : public SystemView {
 public:
  explicit WholeMachine(const Machine& machine) : machine_(machine) {}

  [[nodiscard]] const std::string& folder() const override { return folder_; }

  std::string TargetOf(std::string_view path) override { return std::string{path}; }

  std::string FullPathOf(std::string_view path) override { return std::string{path}; }

  [[nodiscard]] bool EscapesByBackslash() const override { return false; }

  bool IsLink(std::string_view path) override {
    const int size = MultiByteToWideChar(CP_UTF8, 0, path.data(), static_cast<int>(path.size()), nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.data(), static_cast<int>(path.size()), wide.data(), size);
    const DWORD attributes = GetFileAttributesW(wide.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  }

  [[nodiscard]] std::string MachinePath(std::string_view item) const override {
    if (!item.starts_with('/')) return std::string{item};
    std::string path = ReplaceAll(item.substr(1), "/", "\\");
    if (path.size() == 1 || (path.size() > 1 && path[1] == '\\'))
      return path.insert(1, path.size() == 1 ? ":\\" : ":");
    return "\\\\" + path;
  }

  std::string SavedPath(std::string_view path) override {
    std::string text = ReplaceAll(path, "\\", "/");
    if (text.size() > 1 && text[1] == ':') text.erase(1, 1);
    while (text.starts_with('/')) text.erase(0, 1);
    return "/" + text;
  }

  std::string MachinePathOfFolder(std::string_view system_path) override { return std::string{system_path}; }

  [[nodiscard]] std::vector<std::string> Environment() const override {
    std::vector<std::string> kept;
    for (const char* const name : {"PATH", "SystemRoot", "SystemDrive", "USERPROFILE", "APPDATA",
                                   "LOCALAPPDATA", "ProgramData", "COMPUTERNAME", "USERNAME"}) {
      if (const char* const value = std::getenv(name)) kept.push_back(std::string{name} + "=" + value);
    }
    return kept;
  }

  [[nodiscard]] std::string HostName() const override { return machine_.system.ComputerName(); }

 private:
  Machine machine_;
  std::string folder_;
};

}  // namespace

std::unique_ptr<SystemView> MakeSystemView(const Machine& machine, const std::string& work_folder) {
  machine.folders.Make(work_folder);
  return std::make_unique<WholeMachine>(machine);
}

}  // namespace ondura::engines
