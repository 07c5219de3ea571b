#include "host_files.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <system_error>

#include "Failure.h"
#include "machines/portable/CodePageTable.h"
#include "machines/portable/IniText.h"
#include "machines/posix/PathMap.h"
#include "machines/posix/host_replace.h"
#include "machines/posix/private_files.h"
#include "text/text.h"

namespace ondura {

namespace {

namespace fs = std::filesystem;

std::string ReadHostFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

struct DriveMapping {
  std::string letter;
  std::string folder;
};

DriveMapping ParseDrive(const std::string& text) {
  const bool well_formed =
      text.size() > 2 && std::isalpha(static_cast<unsigned char>(text[0])) != 0 && text[1] == '=';
  if (!well_formed) {
    throw Failure(Exit::kUsage,
                  "--drive: '" + text + "' should be a letter and a folder, such as D=/srv/data");
  }
  std::string letter = ToUpper(text.substr(0, 1));
  if (letter == "C")
    throw Failure(Exit::kUsage, "--drive: C is the machine's own drive; choose another letter");
  std::error_code error;
  const fs::path folder = fs::absolute(text.substr(2), error);
  if (!fs::is_directory(folder, error)) {
    throw Failure(Exit::kUsage, "--drive: there is no folder '" + text.substr(2) + "'");
  }
  return {std::move(letter), folder.string()};
}

void WriteDrives(const fs::path& file, const std::vector<DriveMapping>& drives) {
  const CodePageTable code_page;
  IniText ini(ReadHostFile(file), code_page);
  for (const auto& drive : drives) ini.Set("Drives", drive.letter, drive.folder);
  const FolderLock lock{file.string()};
  if (!WriteBeside(file.string(), ini.bytes(), lock, OnDisk::kFirst))
    throw Failure(Exit::kFailed, "can't write '" + file.string() + "'");
}

}  // namespace

void PrepareRoot(const std::string& root, const std::vector<std::string>& drives, bool force) {
  if (root.empty())
    throw Failure(Exit::kUsage, "where? Name the machine's folder with --root DIR or in ONDURA_ROOT");
  std::vector<DriveMapping> mappings;
  mappings.reserve(drives.size());
  for (const auto& drive : drives) mappings.push_back(ParseDrive(drive));

  const fs::path folder(root);
  std::error_code error;
  if (fs::exists(folder / "machine.ini", error) && !force) {
    throw Failure(Exit::kFailed, "'" + root + "' holds a machine already; --force rewrites its files");
  }
  fs::create_directories(folder / "C", error);
  if (error) throw Failure(Exit::kFailed, "can't make '" + root + "': " + error.message());
  const std::string mended = MendFolderRights(root);
  if (!mended.empty()) std::cerr << "ondura: " << mended << "\n";
  WriteDrives(folder / "machine.ini", mappings);
}

void InstallProgram(const std::string& from, const std::string& root, std::string_view path) {
  std::error_code error;
  const fs::path target = PathMap(fs::absolute(root, error).string(), {}).ForCreation(path);
  // The old program may be running: it keeps its file until it ends.
  const fs::path fresh = target.string() + ".new";
  fs::copy_file(from, fresh, fs::copy_options::overwrite_existing, error);
  if (!error) fs::permissions(fresh, fs::perms::owner_exec, fs::perm_options::add, error);
  if (!error) fs::rename(fresh, target, error);
  if (error)
    throw Failure(Exit::kFailed,
                  "can't copy '" + from + "' to '" + target.string() + "': " + error.message());
}

std::string FindOwnProgram(const std::string& name) {
  std::error_code error;
  const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
  for (const fs::path& place :
       {folder / name, folder / "../engines" / name, folder / "../rehearsal" / name}) {
    if (fs::is_regular_file(place, error)) return place.string();
  }
  return {};
}

}  // namespace ondura
