#pragma once

#include <gtest/gtest.h>

#include "machines/simulated/SimulatedMachine.h"

namespace ondura {

// A simulated machine that fails the test when one of its scripted faults has met no call.
class CheckedMachine : public SimulatedMachine {
 public:
  using SimulatedMachine::SimulatedMachine;

  ~CheckedMachine() {
    for (const std::string& pattern : UnfiredFaults()) ADD_FAILURE() << "no call met the fault " << pattern;
  }
};

// One that fails the test also when a handle of a process was left open.
class TidyMachine : public CheckedMachine {
 public:
  using CheckedMachine::CheckedMachine;

  ~TidyMachine() { EXPECT_EQ(OpenHandles(), 0U) << "handles were left open"; }
};

}  // namespace ondura
