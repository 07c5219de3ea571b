#include "bench/compare_list_bench.h"

#include <fstream>
#include <sstream>
#include <vector>

#include "backupset/CompareList.h"
#include "bench/BenchMachine.h"
#include "bench/TableReporter.h"
#include "bench/child.h"
#include "bench/statistics.h"

namespace ondura {

namespace {

constexpr const char* kTree = "C:\\Tree";
constexpr int kRounds = 9;
constexpr double kRatioTarget = 0.80;
constexpr double kCallsTarget = 1.3;
constexpr double kMemoryTargetMib = 8;
constexpr double kMebibyte = 1024 * 1024;

// Both write one line a file into a file on the same disk; the order changes from round to round.
void BesideFind(benchmark::State& state, const std::filesystem::path& root) {
  const std::vector<std::string> find{"find", (root / "C" / "Tree").string(), "-printf", "%p %s %t\n"};
  const std::string find_output = (root / "find.txt").string();
  const auto by_find = [&] { RunChild(find, find_output); };
  const auto by_us = [&] { BuildCompareList(root); };
  by_find();  // fills the host's caches for both
  std::vector<double> ratios;
  bool find_first = true;
  for (auto round : state) {
    (void)round;
    double find_seconds = 0;
    if (find_first) find_seconds = SecondsOf(by_find);
    const double our_seconds = SecondsOf(by_us);
    if (!find_first) find_seconds = SecondsOf(by_find);
    find_first = !find_first;
    ratios.push_back(our_seconds / find_seconds);
    state.SetIterationTime(our_seconds);
  }
  state.SetLabel("x find");
  TellValue(state, Median(ratios));
  TellTarget(state, kRatioTarget);
}

// The number in the last line of the summary that strace writes.
double TotalCalls(const std::string& summary_file) {
  std::ifstream summary{summary_file};
  double calls = -1;
  for (std::string line; std::getline(summary, line);) {
    std::istringstream words{line};
    std::string percent, seconds, microseconds;
    double count = 0;
    if (line.ends_with("total") && words >> percent >> seconds >> microseconds >> count) calls = count;
  }
  return calls;
}

void CallsAnEntry(benchmark::State& state, const std::filesystem::path& root, const TreeSize& size) {
  const std::string summary = (root / "calls.txt").string();
  const auto run = RunChild({"strace", "-c", "-f", "-o", summary, OwnPath(), kBuildMode, root.string()});
  const double calls = run.exit_code == 0 ? TotalCalls(summary) : -1;
  if (calls < 0) return state.SkipWithError("not measured: strace is missing or may not trace");
  for (auto round : state) (void)round;
  state.SetLabel("calls");
  TellValue(state, calls / static_cast<double>(size.Entries()));
  TellTarget(state, kCallsTarget);
}

void MemoryAboveEmpty(benchmark::State& state, const std::filesystem::path& root) {
  const auto full = RunChild({OwnPath(), kBuildMode, root.string()});
  const auto empty = RunChild({OwnPath(), kEmptyMode});
  if (full.output.empty() || empty.output.empty()) return state.SkipWithError("not measured: no figures");
  for (auto round : state) (void)round;
  state.SetLabel("MiB");
  TellValue(state, (std::stod(full.output) - std::stod(empty.output)) / kMebibyte);
  TellTarget(state, kMemoryTargetMib);
}

}  // namespace

void MakeTreeMachine(const std::filesystem::path& root, const TreeSize& size) {
  std::filesystem::create_directories(BenchMachine::UserFolder(root));
  std::ofstream{BenchMachine::UserFolder(root) / "Ondura.ini"} << "[BackupStatus]\r\nStatus=1\r\n";
  GenerateTree(root / "C" / "Tree", size);
}

void BuildCompareList(const std::filesystem::path& root) {
  const BenchMachine bench{root};
  const Transfer transfer{bench.machine(), bench.installation()};
  Exclusions exclusions{bench.machine(), bench.installation(), transfer};
  MappedDrives drives{bench.machine().drives, transfer};
  const bool stop_flag = false;
  StatusStopCheck stop{bench.machine(), bench.installation(), stop_flag};
  Options options{bench.machine(), bench.installation()};
  Trace trace{options, bench.machine().clock};
  CompareList list{bench.machine(), bench.installation(), transfer, exclusions, drives, stop, trace};
  exclusions.Load();
  list.Begin();
  list.WalkItem({kTree, ItemKind::kFolder});
  list.Finish();
}

void RegisterCompareList(const std::filesystem::path& root, const TreeSize& size) {
  benchmark::RegisterBenchmark("compare list, time of find -printf",
                               [root](auto& state) { BesideFind(state, root); })
      ->Iterations(kRounds)
      ->UseManualTime();
  benchmark::RegisterBenchmark("compare list, system calls an entry", [root, size](auto& state) {
    CallsAnEntry(state, root, size);
  })->Iterations(1);
  benchmark::RegisterBenchmark("compare list, memory above an empty process", [root](auto& state) {
    MemoryAboveEmpty(state, root);
  })->Iterations(1);
}

}  // namespace ondura
