#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/check/CheckMachine.h"

namespace ondura::check {

// One thing that an engine has to do. `run` throws CheckFailed or NotOffered.
struct CheckCase {
  std::string_view name;  // such as "names.umlauts"
  std::string_view what;  // a sentence for a person
  std::function<void(const CheckPlan& plan)> run;
  bool is_large = false;  // takes minutes
};

// In the order of docs/engine-protocol.md.
std::vector<CheckCase> CallCases();
std::vector<CheckCase> FileCases();
std::vector<CheckCase> ListCases();
std::vector<CheckCase> TroubleCases();
std::vector<CheckCase> AllCases();

enum class CheckOutcome { kPassed, kFailed, kNotOffered };

struct CheckReport {
  CheckOutcome outcome = CheckOutcome::kPassed;
  std::string reason;  // of a failure, or what is not offered
};

CheckReport RunCase(const CheckCase& check, const CheckPlan& plan);

}  // namespace ondura::check
