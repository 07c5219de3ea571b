#include "own_program.h"

#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"
// Needs what the header above declares.
#include <shellapi.h>

#include <memory>

namespace ondura {

namespace {

constexpr std::size_t kLongestPath = 32768;

}  // namespace

std::vector<std::string> CommandLineWords() {
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> wide{CommandLineToArgvW(GetCommandLineW(), &count),
                                                           &LocalFree};
  std::vector<std::string> words;
  for (int at = 0; wide && at < count; ++at) words.push_back(FromWide(wide.get()[at]));
  return words;
}

std::string CommandLineTail() {
  const std::string line = FromWide(GetCommandLineW());
  // The program's name ends at its closing quote, or at the first blank.
  std::size_t end = line.starts_with('"') ? line.find('"', 1) : line.find_first_of(" \t");
  if (end == std::string::npos) return {};
  end = line.find_first_not_of(" \t", end + 1);
  return end == std::string::npos ? std::string{} : line.substr(end);
}

std::string OwnPath() {
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return FromWide(path);
}

std::string OwnFolder() {
  const std::string path = OwnPath();
  return path.substr(0, path.rfind('\\') + 1);
}

std::string OwnName() {
  const std::string path = OwnPath();
  return path.substr(path.rfind('\\') + 1);
}

}  // namespace ondura
