#include "tools/ToolHouse.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace ondura::testing {
namespace {

namespace fs = std::filesystem;

std::string Slurp(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

void Spit(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

fs::path NewFolder() {
  std::string pattern = (fs::temp_directory_path() / "ondura-tool-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder for " + pattern);
  return pattern;
}

}  // namespace

std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char character : text)
    quoted += character == '\'' ? std::string{"'\\''"} : std::string{character};
  return quoted + "'";
}

ToolHouse::ToolHouse() : root_(NewFolder()) {}

ToolHouse::~ToolHouse() {
  std::error_code error;
  fs::remove_all(root_, error);
}

ToolResult ToolHouse::Run(const std::string& arguments, const std::string& input) const {
  return RunBare("--root " + Quoted(root_) + " " + arguments, input);
}

ToolResult ToolHouse::RunBare(const std::string& arguments, const std::string& input) {
  const fs::path folder = NewFolder();
  Spit(folder / "in", input);
  // The outcome must not depend on who calls: another language, another zone, nothing preset.
  std::string line = "env -u ONDURA_ROOT -u ONDURA_PASSWORD LC_ALL=de_DE.UTF-8 TZ=Europe/Berlin ";
  line += Quoted(ONDURA_TOOL) + " " + arguments;
  line += " <" + Quoted(folder / "in") + " >" + Quoted(folder / "out") + " 2>" + Quoted(folder / "err");
  const int status = std::system(line.c_str());
  ToolResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, Slurp(folder / "out"),
                    Slurp(folder / "err")};
  fs::remove_all(folder);
  return result;
}

AnnHouse::AnnHouse() {
  Put("disk/notes.txt", "notes");
  Put("disk/Documents/letter.txt", "letter");
  const bool made = Run("init --drive D=" + root() + "/disk").exit == 0 &&
                    Run("user add ann --password-stdin", "secret\nprivate\n").exit == 0;
  if (!made) throw std::runtime_error("the machine could not be made");
}

std::string ToolHouse::Bytes(const std::string& path) const { return Slurp(fs::path(root_) / path); }

void ToolHouse::Put(const std::string& path, const std::string& bytes) const {
  Spit(fs::path(root_) / path, bytes);
}

}  // namespace ondura::testing
