// Plays the scenario on this Windows: ENGINE DATABASE-MANAGER. Works in C:\Scenario, which it clears first.

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
  return {clock,      m.pump,      m.files,  m.folders, m.watches,   m.drives,           m.profiles,
          m.registry, m.processes, m.system, m.locale,  m.code_page, m.internet,         m.crypto,
          m.services, m.desktop,   m.power,  m.names,   m.mutexes,   m.continuous_backup};
}

void Run(const std::string& engine, const std::string& database_manager) {
  const auto owner = MakeWin32Machine();
  const Machine& outside = owner->machine();
  FastClock clock(outside.clock);
  const auto put_programs = [&] {
    outside.files.Copy(engine, scenario::kEngine);
    outside.files.Copy(database_manager, scenario::kDatabaseManager);
  };
  std::cout << scenario::Play({outside, WithClock(outside, clock), put_programs});
}

}  // namespace

int main(int argc, char** argv) {
  try {
    if (argc == 3) {
      Run(argv[1], argv[2]);
      return 0;
    }
    std::cerr << "usage: scenario-windows ENGINE DATABASE-MANAGER\n";
    return 2;
  } catch (const std::exception& error) {
    std::cerr << "scenario-windows: " << error.what() << "\n";
    return 1;
  }
}
