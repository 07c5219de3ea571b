// Plays the scenario on this Windows: `play ENGINE DATABASE-MANAGER`. With `prepare` and `show` in the place
// of `play` somebody else runs the component in between. Works in C:\Scenario, which it clears first.

#include <iostream>

#include "machines/portable/FastClock.h"
#include "machines/win32/Win32Machine.h"
#include "scenario.h"

namespace ondura::scenario {

int PlayOnMachine(const std::vector<std::string>& arguments) {
  const auto owner = MakeWin32Machine();
  const Machine& outside = owner->machine();
  FastClock clock(outside.clock);
  const auto put_programs = [&] {
    outside.files.Copy(arguments[1], kEngine);
    outside.files.Copy(arguments[2], kDatabaseManager);
  };
  const Stage stage{outside, With(outside, clock), put_programs};
  const std::string action = arguments.size() == 3 ? arguments[0] : "";
  if (action == "play") {
    std::cout << Play(stage);
  } else if (action == "prepare") {
    Prepare(stage);
  } else if (action == "show") {
    std::cout << Show(stage);
  } else {
    std::cerr << "usage: scenario-windows play|prepare|show ENGINE DATABASE-MANAGER\n";
    return 2;
  }
  return 0;
}

}  // namespace ondura::scenario
