// Plays the scenario on this Windows: `play ENGINE DATABASE-MANAGER`. With `prepare` and `show` in the place
// of `play` somebody else runs the component in between. Works in C:\Scenario, which it clears first.

#include <exception>
#include <iostream>
#include <string>

#include "platform/forwarding.h"
#include "platform/win32/win32_machine.h"
#include "scenario.h"

namespace {

using namespace ondura;

// The component's own waits pass faster; the engine beside it lives in real time.
class FastClock : public ForwardingClock {
 public:
  using ForwardingClock::ForwardingClock;
  void Sleep(std::chrono::milliseconds duration) override { ForwardingClock::Sleep(duration / kSpeed); }

 private:
  static constexpr int kSpeed = 10;
};

Machine WithClock(const Machine& m, Clock& clock) {
  return {clock,       m.pump,   m.files,   m.folders,           m.watches,  m.drives, m.profiles, m.registry,
          m.processes, m.system, m.locale,  m.code_page,         m.internet, m.crypto, m.services, m.desktop,
          m.power,     m.names,  m.mutexes, m.continuous_backup, m.web};
}

int Perform(const std::string& action, const std::string& engine, const std::string& database_manager) {
  const auto owner = MakeWin32Machine();
  const Machine& outside = owner->machine();
  FastClock clock(outside.clock);
  const auto put_programs = [&] {
    outside.files.Copy(engine, scenario::kEngine);
    outside.files.Copy(database_manager, scenario::kDatabaseManager);
  };
  const scenario::Stage stage{outside, WithClock(outside, clock), put_programs};
  if (action == "play") {
    std::cout << scenario::Play(stage);
  } else if (action == "prepare") {
    scenario::Prepare(stage);
  } else if (action == "show") {
    std::cout << scenario::Show(stage);
  } else {
    return 2;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const int code = argc == 4 ? Perform(argv[1], argv[2], argv[3]) : 2;
    if (code == 2) std::cerr << "usage: scenario-windows play|prepare|show ENGINE DATABASE-MANAGER\n";
    return code;
  } catch (const std::exception& error) {
    std::cerr << "scenario-windows: " << error.what() << "\n";
    return 1;
  }
}
