// Plays the scenario on a machine in a folder: ROOT ENGINE DATABASE-MANAGER.

#include <exception>
#include <filesystem>
#include <iostream>

#include "platform/posix/posix_machine.h"
#include "scenario.h"

namespace {

constexpr int kSpeed = 20;

std::filesystem::path OnHost(const std::filesystem::path& root, std::string path) {
  path.erase(1, 1);
  for (char& character : path) {
    if (character == '\\') character = '/';
  }
  return root / path;
}

int Run(const char* const* arguments) {
  using namespace ondura;
  const std::filesystem::path root = arguments[1];
  std::filesystem::create_directories(root / "C");
  const PosixMachineResult made = MakePosixMachine({root, kSpeed, {}});
  if (!made.owner) {
    std::cerr << "scenario-posix: " << made.error << "\n";
    return 1;
  }
  const Machine& machine = made.owner->machine();
  const auto put_programs = [&] {
    std::filesystem::copy_file(arguments[2], OnHost(root, scenario::kEngine));
    std::filesystem::copy_file(arguments[3], OnHost(root, scenario::kDatabaseManager));
  };
  std::cout << scenario::Play({machine, machine, put_programs});
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 4) return Run(argv);
    std::cerr << "usage: scenario-posix ROOT ENGINE DATABASE-MANAGER\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "scenario-posix: " << error.what() << "\n";
    return 1;
  }
}
