// Has the user's own store hold the authority in a PEM file, or forget it again with the program's end.
//
//   trust_authority FILE PROGRAM COMMAND-LINE-TAIL
//
// Runs the program meanwhile and ends with its exit code.

#include <cstdio>
#include <exception>
#include <fstream>
#include <sstream>

#include "machines/win32/Win32Machine.h"
#include "support/TrustedAuthority.h"

namespace {

int Run(const char* const* arguments) {
  std::ostringstream pem;
  pem << std::ifstream{arguments[1], std::ios::binary}.rdbuf();
  const ondura::TrustedAuthority trusted(pem.str());
  const auto owner = ondura::MakeWin32Machine();
  ondura::Processes& processes = owner->machine().processes;
  const ondura::ProcessHandle started =
      processes.Launch({.file = arguments[2], .parameters = arguments[3], .folder = "C:\\"});
  constexpr std::chrono::minutes kPatience{1};
  if (processes.Wait(started, kPatience) != ondura::ProcessWait::kEnded) return -1;
  return static_cast<int>(processes.ExitCode(started).value_or(0));
}

}  // namespace

int main(int count, char** arguments) {
  try {
    return count == 4 ? Run(arguments) : -1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "trust_authority: %s\n", error.what());
    return -1;
  }
}
