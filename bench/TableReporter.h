#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace ondura {

// What a measure adds to the table: a value other than its own time, and the target to keep below.
void TellValue(benchmark::State& state, double value);
void TellTarget(benchmark::State& state, double target);

// Collects the measures and prints them as one table: name, value, unit, target.
class TableReporter : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override;
  void Finalize() override;

  // False when a value is above its target or a measure failed.
  [[nodiscard]] bool all_met() const { return all_met_; }

 private:
  struct Row {
    std::string name;
    std::string value;
    std::string target;
    std::string verdict;
  };

  Row RowOf(const Run& run);

  std::vector<Row> rows_;
  bool all_met_ = true;
};

}  // namespace ondura
