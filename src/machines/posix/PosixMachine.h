#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/machine.h"

namespace ondura {

struct PosixOptions {
  std::string root;            // the machine's folder on the host
  int speed = 1;               // every wait is divided by it; 1 and above
  std::function<void()> pump;  // runs inside MessagePump::Pump; may be empty
};

// A whole Windows-like machine in one folder of the host: `C:\x\y` is `<root>/C/x/y`. Files, processes and
// clock are the real ones. `<root>/machine.ini` may describe the machine; every entry has a default:
//
//   [Drives]    D=/srv/data         drives elsewhere on the host; a relative path is under the root
//   [Locale]    ShortDate=M/d/yyyy  TimeFormat=h:mm:ss tt  Decimal=.
//   [System]    CodePage=1252  Version=6.1  Workstation=1  Wow64=0  SystemFolder=C:\Windows\system32
//               LocalDataFolder=C:\Users\Default\AppData\Local  ComputerName=ONDURA
//               ExitCommand=        shell command that runs in place of the end of Windows; none by default
//   [Internet]  Connected=1  Flags=18  Connection=Local Area Connection
//               Timeout=3600000     milliseconds that no part of a web request (to connect, to send, to be
//                                   answered) may exceed, whatever its own time-outs are
//   [Services]  Any Service Name=4  state 1 to 7; 0, not installed, by default
//
// The registry is kept in `<root>/registry.ini`, named mutexes in `<root>/mutexes/`.
class PosixMachine {
 public:
  virtual ~PosixMachine() = default;

  // Valid as long as this object.
  virtual const Machine& machine() = 0;
};

struct PosixMachineResult {
  std::unique_ptr<PosixMachine> owner;  // null on failure
  std::string error;                    // then a sentence that says what to do
};

PosixMachineResult MakePosixMachine(PosixOptions options);

}  // namespace ondura
