#include "bench/TableReporter.h"

#include <cstdio>

namespace ondura {

namespace {

constexpr const char* kValue = "value";
constexpr const char* kTarget = "target";

std::string NumberWithUnit(double number, const std::string& unit) {
  char text[64];
  std::snprintf(text, sizeof text, "%.3g %s", number, unit.c_str());
  return text;
}

}  // namespace

void TellValue(benchmark::State& state, double value) { state.counters[kValue] = value; }
void TellTarget(benchmark::State& state, double target) { state.counters[kTarget] = target; }

void TableReporter::ReportRuns(const std::vector<Run>& runs) {
  for (const Run& run : runs) rows_.push_back(RowOf(run));
}

TableReporter::Row TableReporter::RowOf(const Run& run) {
  Row row{run.run_name.function_name, "-", "-", ""};
  if (run.error_occurred) {
    row.verdict = run.error_message;
    return row;
  }
  const auto value = run.counters.find(kValue);
  const auto target = run.counters.find(kTarget);
  const bool is_time = value == run.counters.end();
  const std::string unit = is_time ? benchmark::GetTimeUnitString(run.time_unit) : run.report_label;
  const double number = is_time ? run.GetAdjustedRealTime() : value->second.value;
  row.value = NumberWithUnit(number, unit);
  if (target == run.counters.end()) return row;
  row.target = "<= " + NumberWithUnit(target->second.value, unit);
  const bool met = number <= target->second.value;
  row.verdict = met ? "met" : "MISSED";
  all_met_ = all_met_ && met;
  return row;
}

void TableReporter::Finalize() {
  std::printf("%-48s %16s %18s\n", "measure", "value", "target");
  for (const Row& row : rows_) {
    std::printf("%-48s %16s %18s  %s\n", row.name.c_str(), row.value.c_str(), row.target.c_str(),
                row.verdict.c_str());
  }
}

}  // namespace ondura
