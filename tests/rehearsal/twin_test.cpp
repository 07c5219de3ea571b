// Hosts as real processes on a machine in a folder.

#include <gtest/gtest.h>

#include <algorithm>

#include "HostProcess.h"
#include "Rehearsal.h"

namespace ondura::rehearsal {
namespace {

bool Runs(Rehearsal& house, std::string_view base_name) {
  return std::ranges::any_of(house.machine().processes.List(ProcessSource::kModules),
                             [&](const ProcessEntry& entry) { return entry.base_name == base_name; });
}

bool Awaits(const std::function<bool()>& is_so) {
  for (int look = 0; look < 400 && !is_so(); ++look)
    std::this_thread::sleep_for(std::chrono::milliseconds{50});
  return is_so();
}

TEST(TwinTest, IsAProgramOfItsMachineUnderTheConfiguredName) {
  Rehearsal house;
  HostProcess twin(house.HostRoot(), "background", "100000");
  EXPECT_TRUE(Awaits([&] { return Runs(house, "OnduraBackground.exe"); }))
      << "the service would take over from a twin that lives";
  EXPECT_EQ(HostProcess(house.HostRoot(), "background", "1").Finish(), 3) << "one twin at a time";
  EXPECT_EQ(twin.Stop(), 0);
  EXPECT_FALSE(Runs(house, "OnduraBackground.exe"));
}

TEST(TwinTest, AServiceThatIsKilledLeavesItsPlaceToTheNext) {
  Rehearsal house;
  {
    const HostProcess killed(house.HostRoot(), "service", "100000");
    while (house.transfer().Trf_ReadUserNameProfile("Started").empty()) {
      std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    EXPECT_EQ(HostProcess(house.HostRoot(), "service", "1").Finish(), 3);
  }
  EXPECT_EQ(HostProcess(house.HostRoot(), "service", "1").Finish(), 0);
}

TEST(HostTest, TakesItsEngineAlongWhenItIsKilled) {
  JobRehearsal house;
  house.machine().profiles.WriteString(
      {std::string{kInstall} + "Deployment.ini", "Demo", "MillisecondsPerFile"}, "100000000");
  house.MakeDue("1");
  {
    HostProcess service(house.HostRoot(), "service", "1");
    ASSERT_TRUE(Awaits([&] { return house.Result() == "0" && Runs(house, kEngine); }));
    ASSERT_TRUE(Awaits([&] { return house.machine().files.Exists(house.UserFile("ExcludedFiles.txt")); }))
        << "in command 51";
    EXPECT_TRUE(Runs(house, kEngine));
  }
  EXPECT_TRUE(Awaits([&] { return !Runs(house, kEngine); }));
}

}  // namespace
}  // namespace ondura::rehearsal
