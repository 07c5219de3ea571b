// What surrounds a job: the start of the hosts, mail, the end of Windows.

#include <gmock/gmock.h>

#include "scenarios/house.h"
#include "util/text.h"
#include "util/utf16.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr const char* kDue = "11-14-2026 12:30:00";

struct MailCase {
  const char* option;
  const char* mailids;
  int result;
  std::vector<std::string> told;
  std::size_t fields;
};

TEST(BracketStory, MailGoesToTheAddressesThatTheOptionAsksFor) {
  for (const MailCase& row : {MailCase{"3", "a;b;;c", 402, {"a", "b"}, 11}, MailCase{"2", "a", 402, {}, 0},
                              MailCase{"2", "a;b", -414, {"a", "b"}, 10}, MailCase{"1", "a", -414, {}, 0}}) {
    House house;
    house.AddUser("ann");
    ScheduleRecord record = House::Daily(kDue);
    record.mailids = row.mailids;
    record.mailoption = row.option;
    house.PutSchedule("ann", {record});
    house.Answer(51, row.result);
    house.Tick();
    std::vector<std::string> told;
    for (const LaunchRequest& launch : house.machine.Launches()) {
      if (launch.file == std::string{House::kInstall} + "OndruaEStartup.exe") {
        told.push_back(Split(launch.parameters, ";").front());
      }
    }
    EXPECT_EQ(told, row.told) << row.option << " " << row.result;
    EXPECT_EQ(house.LastMail().size(), row.fields) << row.option << " " << row.result;
  }
}

struct ExitCase {
  const char* shutdown;
  int result;
  bool exits;
};

TEST(BracketStory, WindowsEndsWhenItIsAskedForAndNobodyCancelled) {
  for (const ExitCase& row :
       {ExitCase{"1", 402, true}, ExitCase{"1", -414, false}, ExitCase{"0", 402, false}}) {
    House house;
    house.AddUser("ann");
    house.WriteAccount("SHUTDOWN", row.shutdown);
    house.PutSchedule("ann", {House::Daily(kDue)});
    house.Answer(51, row.result);
    // The refresh of the quota leaves the result of the transfer as it is.
    house.OnCommand(16, [](ProgramRun&) {});
    house.Tick();
    const auto& exits = house.machine.surroundings().windows_exits;
    EXPECT_EQ(exits, std::vector<std::uint32_t>(row.exits ? 1 : 0, 12)) << row.shutdown << " " << row.result;
  }
}

struct TickCase {
  const char* standard;
  const char* started;
  bool twin_runs;
  bool served;
  const char* trace;
};

TEST(BracketStory, TheTickServesWhereTheServiceIsInCharge) {
  for (const TickCase& row :
       {TickCase{"0", "0", true, true, "Calling from first Service exe service."},
        TickCase{"0", "1", true, true, " Calling from Service exe2."}, TickCase{"1", "0", true, false, ""},
        TickCase{"1", "0", false, true, " Calling from Service exe3."},
        TickCase{"1", "1", false, true, " Calling from Service exe4."},
        TickCase{"", "", false, true, " Calling from Service exe4."}}) {
    House house;
    house.AddUser("ann");
    house.PutSchedule("ann", {House::Daily(kDue)});
    house.Service();
    house.WriteShared("Standard", row.standard);
    house.WriteShared("Started", row.started);
    if (row.twin_runs) house.machine.PutProcess(House::kTwin);
    house.Tick();
    EXPECT_EQ(!house.Commands().empty(), row.served) << row.standard << row.started;
    EXPECT_EQ(house.Shared("Standard"), row.served ? "0" : "1") << row.standard << row.started;
    const auto bytes = house.machine.FileBytes(std::string{House::kData} + "ScheduleTraceFile.txt");
    EXPECT_NE(FromUtf16(bytes.value_or("")).find(row.trace), std::string::npos) << row.trace;
  }
}

TEST(BracketStory, TheStartOfTheServiceCleansWhatACrashHasLeft) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily("11-15-2026 12:30:00")});
  const std::string path = house.UserPath("scheduleData.txt");
  const std::string idle = house.Bytes("scheduleData.txt");
  house.machine.PutFile(path, "3" + idle.substr(1));
  house.WriteShared("Started", "1");
  house.WriteShared("Intbackup", "1");
  house.WriteProfile("BackupStatus", "Status", "5");
  house.Service();
  EXPECT_EQ(house.Bytes("scheduleData.txt"), idle);
  EXPECT_THAT((std::vector{house.Shared("Started"), house.Shared("Intbackup"), house.Status("Status")}),
              ElementsAre("0", "0", "0"));
}

}  // namespace
}  // namespace ondura
