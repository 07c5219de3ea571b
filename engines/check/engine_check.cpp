#include "engines/check/engine_check.h"

#include <algorithm>
#include <iterator>

namespace ondura::check {

std::vector<CheckCase> AllCases() {
  std::vector<CheckCase> all;
  for (auto cases : {CallCases(), FileCases(), ListCases(), TroubleCases()}) {
    std::ranges::copy_if(cases, std::back_inserter(all),
                         [](const CheckCase& check) { return IsForThisSystem(check.name); });
  }
  return all;
}

CheckReport RunCase(const CheckCase& check, const CheckPlan& plan) {
  try {
    check.run(plan);
    return {};
  } catch (const NotOffered& missing) {
    return {CheckOutcome::kNotOffered, missing.what()};
  } catch (const std::exception& failure) {
    return {CheckOutcome::kFailed, failure.what()};
  }
}

}  // namespace ondura::check
