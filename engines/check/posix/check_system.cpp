#include "engines/check/check_system.h"

#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <utility>

#include "engines/check/CheckMachine.h"
#include "machines/posix/PosixMachine.h"

namespace ondura::check {

namespace fs = std::filesystem;

const char* const kDocuments = "D:\\Documents\\";
const char* const kDocumentsDrive = "D:\\";

namespace {

// Waits of engines pass that much faster; what they wait for in earnest does not.
constexpr int kSpeed = 10;

class FolderMachine : public engines::ProgramMachine {
 public:
  explicit FolderMachine(std::unique_ptr<PosixMachine> owner) : owner_(std::move(owner)) {}
  const Machine& machine() override { return owner_->machine(); }

 private:
  std::unique_ptr<PosixMachine> owner_;
};

std::string ReadHostFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>{file}, {}};
}

std::string Variable(const std::string& name, const std::string& fallback) {
  const char* const value = std::getenv(name.c_str());
  return name + "=" + (value != nullptr ? value : fallback);
}

}  // namespace

std::string MakeCheckFolder() {
  std::string folder = (fs::temp_directory_path() / "ondura-engine-check-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    throw std::runtime_error("can't make a folder in " + fs::temp_directory_path().string());
  }
  return folder;
}

void RemoveCheckFolder(const std::string& folder) {
  std::error_code error;
  fs::remove_all(folder, error);
}

CheckGround MakeCheckGround(const std::string& folder) {
  fs::create_directories(folder + "/C/Program Files/Ondura");
  fs::create_directories(folder + "/C/ProgramData/Ondura");
  fs::create_directories(folder + "/data/Documents");
  std::ofstream(folder + "/machine.ini") << "[Drives]\nD=data\n";
  PosixMachineResult made = MakePosixMachine({.root = folder, .speed = kSpeed, .pump = {}});
  if (!made.owner) throw std::runtime_error(made.error);
  return {.owner = std::make_unique<FolderMachine>(std::move(made.owner)),
          .install = "C:\\Program Files\\Ondura\\",
          .data = "C:\\ProgramData\\Ondura\\",
          .speed = kSpeed,
          .environment = {"ONDURA_ROOT=" + folder, "ONDURA_SPEED=" + std::to_string(kSpeed),
                          Variable("PATH", "/usr/bin:/bin"), Variable("HOME", "/")}};
}

bool IsForThisSystem(std::string_view) { return true; }

std::vector<std::string> TroublesomeNames() {
  return {"[brackets] $HOME #hash !bang %TEMP% {x}",
          " blank in front",
          "blank at the end ",
          "new\nline",
          "tab\there",
          "Übersicht für März €.txt",
          "日本語",
          "back\\slash",
          "star*question?",
          "'quotes' \"both\"",
          "-dash",
          "bytes that are no UTF-8 \xFF\xFE",
          std::string(255, 'n')};
}

std::shared_ptr<void> MakeUnreadable(const fs::path& file) {
  if (geteuid() == 0)
    throw NotOffered("a file that can't be read, to the administrator; run it as somebody else");
  fs::permissions(file, fs::perms::none);
  return nullptr;
}

bool IsRunning(int id) {
  const std::string stat = ReadHostFile("/proc/" + std::to_string(id) + "/stat");
  const auto state = stat.rfind(") ");
  return state != std::string::npos && stat[state + 2] != 'Z' && stat[state + 2] != 'X';
}

std::vector<HostProgram> ProgramsBelow(int id) {
  std::map<int, std::vector<int>> children;
  for (const fs::directory_entry& entry : fs::directory_iterator{"/proc"}) {
    const std::string name = entry.path().filename().string();
    int number = 0;
    if (std::from_chars(name.data(), name.data() + name.size(), number).ec != std::errc{}) continue;
    const std::string stat = ReadHostFile(entry.path() / "stat");
    std::istringstream rest{stat.substr(std::min(stat.size(), stat.rfind(')') + 1))};
    std::string state;
    int parent = 0;
    if (rest >> state >> parent) children[parent].push_back(number);
  }
  std::vector<HostProgram> programs;
  std::vector<int> queue{id};
  for (std::size_t at = 0; at < queue.size(); ++at) {
    const fs::path folder = "/proc/" + std::to_string(queue[at]);
    HostProgram program{queue[at], ReadHostFile(folder / "cmdline"), ReadHostFile(folder / "environ"), 0};
    std::istringstream pages{ReadHostFile(folder / "statm")};
    std::uint64_t all = 0;
    std::uint64_t resident = 0;
    if (pages >> all >> resident)
      program.resident_bytes = resident * static_cast<std::uint64_t>(getpagesize());
    programs.push_back(std::move(program));
    for (const int child : children[queue[at]]) queue.push_back(child);
  }
  return programs;
}

}  // namespace ondura::check
