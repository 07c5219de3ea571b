#include "engines/check/engine_check.h"

#include <iterator>

namespace ondura::check {

std::vector<CheckCase> AllCases() {
  std::vector<CheckCase> all;
  for (auto cases : {CallCases(), FileCases(), ListCases(), TroubleCases()}) {
    all.insert(all.end(), std::make_move_iterator(cases.begin()), std::make_move_iterator(cases.end()));
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
