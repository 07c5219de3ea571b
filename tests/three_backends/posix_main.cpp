// Plays the scenario on a machine in a folder: ROOT ENGINE DATABASE-MANAGER.

#include <filesystem>
#include <iostream>
#include <stdexcept>

#include "machines/posix/PosixMachine.h"
#include "scenario.h"

namespace ondura::scenario {

constexpr int kSpeed = 20;

int PlayOnMachine(const std::vector<std::string>& arguments) {
  if (arguments.size() != 3) {
    std::cerr << "usage: scenario-posix ROOT ENGINE DATABASE-MANAGER\n";
    return 2;
  }
  const std::filesystem::path root = arguments[0];
  std::filesystem::create_directories(root / "C");
  const PosixMachineResult made = MakePosixMachine({root, kSpeed, {}});
  if (!made.owner) throw std::runtime_error(made.error);
  const Machine& machine = made.owner->machine();
  const auto put_programs = [&] {
    const std::filesystem::path install = root / "C/Scenario/Install";
    std::filesystem::copy_file(arguments[1], install / "ScnClsClient.exe");
    std::filesystem::copy_file(arguments[2], install / "OnduraSDBManager.exe");
  };
  std::cout << Play({machine, machine, put_programs});
  return 0;
}

}  // namespace ondura::scenario
