#include "bench/service_bench.h"

#include <fstream>

#include "bench/BenchMachine.h"
#include "bench/TableReporter.h"
#include "bench/child.h"
#include "bench/statistics.h"
#include "profile/ProductConfiguration.h"
#include "profile/profile_paths.h"
#include "schedule/job_kind.h"
#include "schedule/schedule_record.h"
#include "service/Component.h"
#include "service/Controller.h"

namespace ondura {

namespace {

constexpr double kIdleTargetMicroseconds = 40;
constexpr std::size_t kUsersOfTarget = 1000;
constexpr double kStartTargetMilliseconds = 50;
constexpr int kStarts = 15;

std::string UserName(std::size_t number) { return "user" + std::to_string(number); }

void WriteConfiguration(const BenchMachine& bench) {
  Installation installation = bench.installation();
  const ProductConfiguration configuration{bench.machine(), installation};
  const auto write = [&](std::string_view key, std::string_view value) {
    const std::string stored_key = configuration.StoredForm(key);
    bench.machine().profiles.WriteString(
        {installation.DataFile("Configuration.ini"), "ProductInfo", stored_key},
        configuration.StoredForm(value));
  };
  write("ProductNumber", "3");
  write("ProductName", installation.ProductInstallationName);
  write("ProductInstallationName", installation.ProductInstallationName);
  write("ExeGroup", installation.ExeGroup);
}

void WriteSharedState(const BenchMachine& bench) {
  const Installation& installation = bench.installation();
  ProfileFiles& profiles = bench.machine().profiles;
  profiles.WriteString({InstallPointerPath(installation), "Registry", "VirtualPath"},
                       installation.VirtualPath);
  const std::string shared = SharedStatePath(installation);
  for (const char* key : {"Standard", "Started"}) profiles.WriteString({shared, "Tolmera", key}, "0");
}

void WriteUsers(const BenchMachine& bench, std::size_t users) {
  ScheduleRecord record;
  record.recordno = CodeOf(JobKind::kFiles);
  record.nexttime = "01-01-2099 00:00:00";
  record.sortkey = "209901010000";
  record.repeatkind = "6";
  record.daymask = "1111111";
  const std::string schedule = "0\r\n" + LineOfRecord(record) + "\r\n";
  std::string list;
  for (std::size_t number = 0; number < users; ++number) {
    const std::string folder = bench.installation().FolderOf(UserName(number));
    bench.machine().folders.Make(folder);
    bench.machine().files.Write(folder + "\\" + std::string{kScheduleFileName}, schedule,
                                IfPresent::kReplace);
    list += UserName(number) + ";";
  }
  bench.machine().files.Write(bench.installation().DataFile("userlist.ini"), list + "\r\n",
                              IfPresent::kReplace);
}

void IdlePass(benchmark::State& state, const std::filesystem::path& root, std::size_t users) {
  const BenchMachine bench{root};
  Component component{bench.machine()};
  Controller& controller = component.controller();
  controller.cont_InitialSch(bench.installation().ExeLocation);
  controller.Cont_CheckStandardRunning();
  double seconds = 0;
  for (auto round : state) {
    (void)round;
    const double pass = SecondsOf([&] { controller.Cont_CheckStandardRunning(); });
    state.SetIterationTime(pass);
    seconds += pass;
  }
  state.SetLabel("us");
  TellValue(state, seconds * 1e6 / static_cast<double>(state.iterations()) / static_cast<double>(users));
  if (users == kUsersOfTarget) TellTarget(state, kIdleTargetMicroseconds);
}

void HostStart(benchmark::State& state, const std::filesystem::path& root) {
  const auto host = std::filesystem::path{OwnPath()}.parent_path().parent_path() / "hosts" / "ondura-host";
  std::vector<double> starts;
  for (auto round : state) {
    (void)round;
    const auto run = RunChild({host.string(), "service", "--root", root.string(), "--ticks", "1"});
    if (run.exit_code != 0) return state.SkipWithError("the host did not run; build ondura-host");
    state.SetIterationTime(run.seconds);
    starts.push_back(run.seconds);
  }
  state.SetLabel("ms");
  TellValue(state, Median(starts) * 1e3);
  TellTarget(state, kStartTargetMilliseconds);
}

}  // namespace

void MakeServiceMachine(const std::filesystem::path& root, std::size_t users) {
  std::filesystem::create_directories(root / "C" / "Data");
  std::filesystem::create_directories(root / "C" / "Program Files" / "Ondura");
  const BenchMachine bench{root};
  WriteConfiguration(bench);
  WriteSharedState(bench);
  WriteUsers(bench, users);
}

void RegisterIdlePass(const std::filesystem::path& root, std::size_t users) {
  const std::string name = "idle pass, one of " + std::to_string(users) + " users";
  benchmark::RegisterBenchmark(name.c_str(), [root, users](auto& state) {
    IdlePass(state, root, users);
  })->UseManualTime();
}

void RegisterHostStart(const std::filesystem::path& root) {
  benchmark::RegisterBenchmark("host, start to the end of its first tick",
                               [root](auto& state) { HostStart(state, root); })
      ->Iterations(kStarts)
      ->UseManualTime();
}

}  // namespace ondura
