#include "bench/small_bench.h"

#include "bench/bench_machine.h"
#include "bench/report.h"
#include "profile/ProfileStore.h"
#include "reporting/trace.h"

namespace ondura {

namespace {

constexpr int kLinesBetweenCaps = 10'000;

void TraceLine(benchmark::State& state, const std::filesystem::path& root) {
  const BenchMachine bench{root};
  Options options{bench.machine(), bench.installation()};
  Trace trace{options, bench.machine().clock};
  const std::string path = bench.installation().UserFile("ScheduleTraceFile.txt");
  int lines = 0;
  for (auto round : state) {
    (void)round;
    trace.User("  Finished API_GET_TOTALSIZE  402");
    if (++lines % kLinesBetweenCaps == 0) bench.machine().files.Remove(path, Removal::kForce);
  }
}

void ProfileRead(benchmark::State& state, const std::filesystem::path& root) {
  const BenchMachine bench{root};
  const ProfileStore profile{bench.machine(), bench.installation()};
  for (auto round : state) {
    (void)round;
    benchmark::DoNotOptimize(profile.ReadProfileValue("BackupStatus", "Status"));
  }
}

}  // namespace

void RegisterSmallMeasures(const std::filesystem::path& root) {
  benchmark::RegisterBenchmark("one trace line", [root](auto& state) {
    TraceLine(state, root);
  })->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("one profile read", [root](auto& state) {
    ProfileRead(state, root);
  })->Unit(benchmark::kMicrosecond);
}

}  // namespace ondura
