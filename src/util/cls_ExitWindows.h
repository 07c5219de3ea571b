#pragma once

#include <cstdint>

#include "platform/Power.h"
#include "platform/Processes.h"

namespace ondura {

// Ends Windows without asking the programs that are open.
class cls_ExitWindows {
 public:
  cls_ExitWindows(Processes& processes, Power& power) : processes_(processes), power_(power) {}

  // `nFlag` as in Power.h; force is always added. A refusal goes unnoticed.
  void ExitWindows(std::uint32_t nFlag);

 private:
  Processes& processes_;
  Power& power_;
};

}  // namespace ondura
