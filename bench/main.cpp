// Measures the component on the machine in a folder and prints one table.
//
//   ondura_bench [--folders=N] [--benchmark_filter=REGEX]
//
// Exit code 1 when a target is missed.

#include <cstdio>
#include <exception>
#include <string>

#include "bench/TableReporter.h"
#include "bench/child.h"
#include "bench/compare_list_bench.h"
#include "bench/service_bench.h"
#include "bench/size_bench.h"
#include "bench/small_bench.h"

namespace {

int PrintPeakMemory() {
  std::printf("%.0f\n", ondura::PeakMemory().value_or(0));
  return 0;
}

int Measure(int argc, char** argv) {
  using namespace ondura;
  benchmark::Initialize(&argc, argv);
  TreeSize size;
  if (argc > 1 && std::string{argv[1]}.starts_with("--folders=")) {
    size.folders = std::stoul(std::string{argv[1]}.substr(10));
  }
  const ScratchFolder scratch;
  MakeTreeMachine(scratch.path() / "tree", size);
  RegisterCompareList(scratch.path() / "tree", size);
  RegisterSizeCalculation(scratch.path() / "tree");
  for (const std::size_t users : {1, 1000}) {
    const auto root = scratch.path() / std::to_string(users);
    MakeServiceMachine(root, users);
    RegisterIdlePass(root, users);
  }
  RegisterHostStart(scratch.path() / "1");
  RegisterSmallMeasures(scratch.path() / "tree");
  TableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return reporter.all_met() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string mode = argc > 1 ? argv[1] : "";
  if (mode == ondura::kEmptyMode) return PrintPeakMemory();
  try {
    if (mode != ondura::kBuildMode || argc < 3) return Measure(argc, argv);
    ondura::BuildCompareList(argv[2]);
    return PrintPeakMemory();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "ondura_bench: %s\n", error.what());
    return 2;
  }
}
