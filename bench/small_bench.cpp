#include "bench/small_bench.h"

#include <fstream>
#include <string>
#include <string_view>

#include "bench/BenchMachine.h"
#include "bench/TableReporter.h"
#include "bench/statistics.h"
#include "profile/ProfileStore.h"
#include "reporting/Trace.h"

namespace ondura {

namespace {

constexpr int kLinesBetweenCaps = 10'000;

constexpr std::size_t kDamagedBytes = 10'000'000;
constexpr std::string_view kDamagedLine = "x=1\r\n";
constexpr double kDamagedTargetMilliseconds = 20;
constexpr int kFilesInFolder = 16'000;
constexpr double kFilesTargetSeconds = 5;

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

// Whole lines that hold nothing: the last of them is what a search for a missing key comes to.
void WriteDamagedIni(const std::filesystem::path& file) {
  std::ofstream ini{file, std::ios::binary};
  for (std::size_t bytes = 0; bytes < kDamagedBytes; bytes += kDamagedLine.size()) ini << kDamagedLine;
}

void DamagedRead(benchmark::State& state, const std::filesystem::path& root) {
  const BenchMachine bench{root};
  WriteDamagedIni(root / "C" / "Data" / "Damaged.ini");
  const std::string file = bench.installation().DataFile("Damaged.ini");
  double seconds = 0;
  for (auto round : state) {
    (void)round;
    const double read = SecondsOf([&] {
      benchmark::DoNotOptimize(bench.machine().profiles.ReadString({file, "BackupStatus", "Status"}));
    });
    state.SetIterationTime(read);
    seconds += read;
  }
  state.SetLabel("ms");
  TellValue(state, seconds * 1e3 / static_cast<double>(state.iterations()));
  TellTarget(state, kDamagedTargetMilliseconds);
  bench.machine().files.Remove(file, Removal::kForce);
}

// Each name is looked for in every letter case before its file is made.
void FilesInOneFolder(benchmark::State& state, const std::filesystem::path& root) {
  const BenchMachine bench{root};
  const std::string folder = bench.installation().DataFile("Many");
  double seconds = 0;
  for (auto round : state) {
    (void)round;
    bench.machine().folders.Make(folder);
    seconds = SecondsOf([&] {
      for (int number = 0; number < kFilesInFolder; ++number) {
        bench.machine().files.Write(folder + "\\" + std::to_string(number), "x", IfPresent::kReplace);
      }
    });
    state.SetIterationTime(seconds);
    bench.machine().folders.Remove(folder, Removal::kForce);
  }
  state.SetLabel("s");
  TellValue(state, seconds);
  TellTarget(state, kFilesTargetSeconds);
}

}  // namespace

void RegisterSmallMeasures(const std::filesystem::path& root) {
  benchmark::RegisterBenchmark("one trace line", [root](auto& state) {
    TraceLine(state, root);
  })->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("one profile read", [root](auto& state) {
    ProfileRead(state, root);
  })->Unit(benchmark::kMicrosecond);
  benchmark::RegisterBenchmark("one read in a damaged profile of 10 MB", [root](auto& state) {
    DamagedRead(state, root);
  })->UseManualTime();
  benchmark::RegisterBenchmark("16,000 files made in one folder",
                               [root](auto& state) { FilesInOneFolder(state, root); })
      ->Iterations(1)
      ->UseManualTime();
}

}  // namespace ondura
