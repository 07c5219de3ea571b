#pragma once

#include <memory>
#include <string_view>
#include <vector>

namespace ondura::rehearsal {

// Dialog windows of this program on the person's desktop, there for as long as the object.
class OwnWindows {
 public:
  virtual ~OwnWindows() = default;

  // Lets the windows answer what was sent to them.
  virtual void Pump() = 0;
};

// Shows one window for each title; never null. A machine in a folder has no desktop to show them on.
std::unique_ptr<OwnWindows> ShowDialogs(const std::vector<std::string_view>& titles);

}  // namespace ondura::rehearsal
