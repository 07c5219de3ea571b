#pragma once

#include <string>
#include <thread>

#include "Reporter.h"
#include "machines/win32/handles.h"

namespace ondura {

// Has the elevated host run while this object lives: jobs wait for it without a limit, and nobody may be
// logged on who could start it. One that has ended is started again a minute later; one that another session
// has started already is left to it. The host ends with this process, however that ends.
class ElevatedKeeper {
 public:
  // `command_line` starts the host. A failure to start it goes to `reporter`, once.
  ElevatedKeeper(std::string command_line, const Reporter& reporter);
  ~ElevatedKeeper();
  ElevatedKeeper(const ElevatedKeeper&) = delete;
  ElevatedKeeper& operator=(const ElevatedKeeper&) = delete;

 private:
  void Keep();
  void RunOnce();

  std::string command_line_;
  const Reporter& reporter_;
  UniqueHandle leave_;
  UniqueHandle job_;
  bool has_reported_ = false;
  std::thread thread_;
};

}  // namespace ondura
