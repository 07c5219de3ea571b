// Jobs that end early: by their user, by the clock, by an engine that fails, by the account.

#include <gmock/gmock.h>

#include "scenarios/house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr const char* kManualCancel =
    "All your files/folders could not be backed up as the scheduled job was manually canceled.\r\n";
constexpr const char* kCutOff =
    "The backup job has been stopped due to hard stop option set by you. The backup will resume at next "
    "scheduled time.\r\n";

void MakeDue(House& house) {
  house.AddUser("ann");
  ScheduleRecord record = House::Daily("11-14-2026 12:30:00");
  record.mailids = "ann@example.org";
  record.mailoption = "3";
  house.PutSchedule("ann", {record});
}

struct AbortCase {
  const char* story;
  const char* method;
  int command;  // during which the user asks for the abort
  const char* trace;
  std::vector<int> commands;
};

class AbortTest : public testing::TestWithParam<AbortCase> {};

TEST_P(AbortTest, LeavesByTheAbortPath) {
  const AbortCase& row = GetParam();
  House house;
  MakeDue(house);
  house.WriteMethod(row.method);
  house.OnCommand(row.command, [&](ProgramRun& run) {
    house.WriteProfile("BackupStatus", "Status", "5");
    run.NeverEnds();
  });
  house.Tick();
  EXPECT_EQ(house.Commands(), row.commands) << row.story;
  EXPECT_TRUE(house.TraceHas(row.trace)) << row.story;
  EXPECT_EQ(house.StatusAfterJob(), "3") << row.story;
  EXPECT_EQ(house.Status("DLLStatus"), "3") << row.story;
  EXPECT_EQ(house.Status("BackupFailureDays"), "0") << row.story;
  EXPECT_EQ(house.Text("SchStatus.txt"), kManualCancel) << row.story;
  EXPECT_EQ(house.LastMail().at(2), "4") << row.story;
  EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe")) << row.story;
  EXPECT_FALSE(house.machine.IsRunning("OnduraSDBManager.exe")) << row.story;
  EXPECT_EQ(house.machine.OpenHandles(), 0U) << row.story;
  EXPECT_EQ(house.NextTime(), "11-15-2026 12:30:00") << row.story;
}

INSTANTIATE_TEST_SUITE_P(User, AbortTest,
                         testing::Values(AbortCase{"while the port is asked for",
                                                   "0",
                                                   24,
                                                   "User aborted scheduled backup 28 in progress",
                                                   {24}},
                                         AbortCase{"while the server list is fetched",
                                                   "1",
                                                   28,
                                                   "User aborted scheduled backup 28 in progress",
                                                   {24, 28}}));

TEST(StoppedJobStory, AnAbortIsLoggedInASessionOfItsOwn) {
  House house;
  MakeDue(house);
  house.OnCommand(24, [&](ProgramRun&) { house.WriteProfile("BackupStatus", "Status", "5"); });
  house.Tick();
  ASSERT_EQ(house.SessionFiles().size(), 1U);
  const std::string path = house.SessionFiles().front();
  const std::string time = path.substr(path.find("Scheduled ") + 10, 19);
  EXPECT_EQ(house.Text("Session\\Scheduled " + time + ".txt"),
            " \r\nUsername: ann\r\nOperation: Scheduled\r\n" + time +
                "  You have aborted the scheduled backup job that was in progress.\r\n");
}

TEST(StoppedJobStory, AnAbortDuringTheWalkEndsTheEngineAndIsLoggedAsItsPlaceAsks) {
  for (const bool within_folder : {true, false}) {
    House house;
    MakeDue(house);
    house.PutText("atbkupfolderlist.txt", within_folder ? "C:\\Docs\r\n" : "C:\\Docs\\a.txt\r\n");
    house.OnCommand(51, [](ProgramRun& run) { run.NeverEnds(); });
    // The user asks for it at the first pump of the walk, when the list is already there.
    house.machine.OnPump([&] {
      if (house.machine.FileBytes(house.UserPath("TempCom\\CompareListInput1.txt"))) {
        house.WriteProfile("BackupStatus", "Status", "5");
      }
    });
    house.Tick();
    EXPECT_TRUE(house.TraceHas("ScheduleCancelled 1"));
    EXPECT_EQ(house.Text("SchStatus.txt"), kManualCancel);
    EXPECT_EQ(house.Status("StatusMessageIndicaton"), "1");
    EXPECT_EQ(house.Status("RetValue"), "402") << "the port number's answer";
    EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
    ASSERT_EQ(house.SessionFiles().size(), 1U);
    const std::string name = house.SessionFiles().front().substr(house.UserPath("Session").size() + 1);
    const std::string head = within_folder ? " \r\n" : " \r\nUsername: ann\r\nOperation: Scheduled\r\n";
    EXPECT_EQ(
        house.Text("Session\\" + name),
        head + name.substr(10, 19) + "  You have aborted the scheduled backup job that was in progress.\r\n");
  }
}

TEST(StoppedJobStory, TheHostsEndOfProgressStopsTheServerList) {
  House house;
  MakeDue(house);
  house.WriteMethod("1");
  house.OnCommand(28, [](ProgramRun& run) { run.NeverEnds(); });
  house.machine.OnPump([&] {
    if (house.Commands() == std::vector<int>{24, 28}) house.Service().controller().EndProgress();
  });
  house.Tick();
  EXPECT_EQ(house.StatusAfterJob(), "3");
  EXPECT_THAT(house.Commands(), ElementsAre(24, 28));
}

TEST(StoppedJobStory, CancelGivesTheEngineFourPassesBeforeItIsKilled) {
  for (const bool engine_obeys : {true, false}) {
    House house;
    MakeDue(house);
    std::string killed = "no";
    house.OnCommand(51, [&](ProgramRun& run) {
      house.WriteProfile("BackupStatus", "Cancel", "1");
      run.OnTerminated([&] { killed = "yes"; });
      if (engine_obeys) {
        run.After(6s, [&] { house.WriteResult(-414); });
        run.ExitAfter(6s + 1ms, 0);
      } else {
        run.NeverEnds();
      }
    });
    house.Tick();
    EXPECT_EQ(killed, engine_obeys ? "no" : "yes");
    EXPECT_EQ(house.Status("Cancel"), engine_obeys ? "1" : "0");
    EXPECT_EQ(house.StatusAfterJob(), engine_obeys ? "-414" : "0");
    EXPECT_EQ(house.LastMail().at(2), "4");
  }
}

struct CutOffCase {
  const char* story;
  const char* stop_time;
  bool engine_obeys;
  bool stopped;
};

class CutOffTest : public testing::TestWithParam<CutOffCase> {};

TEST_P(CutOffTest, EndsTheTransferWithinItsTenMinutes) {
  const CutOffCase& row = GetParam();
  House house;
  MakeDue(house);
  house.WriteRegistry("StopSchedule", "1");
  house.WriteRegistry("StopScheduleTime", row.stop_time);
  bool saw_ten = false;
  bool killed = false;
  house.OnCommand(51, [&](ProgramRun& run) {
    run.OnTerminated([&] { killed = true; });
    run.Every(500ms, [&] {
      saw_ten = saw_ten || house.Status("Status") == "10";
      if (saw_ten && row.engine_obeys) run.Exit(0);
    });
    run.ExitAfter(3h, 0);
  });
  house.Tick();
  EXPECT_EQ(saw_ten, row.stopped) << row.story;
  EXPECT_EQ(killed, row.stopped && !row.engine_obeys) << row.story;
  EXPECT_EQ(house.Text("SchStatus.txt") == kCutOff, row.stopped) << row.story;
  EXPECT_EQ(house.StatusAfterJob(), row.stopped ? "402" : "0") << row.story;
  if (row.stopped) {
    EXPECT_EQ(
        house.LastMail().at(5),
        "The scheduled job has been stopped due to the Cut Off time set in Scheduler Options. The backup "
        "will resume at the next scheduled time.")
        << row.story;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Transfer, CutOffTest,
    testing::Values(CutOffCase{"at the minute", "11-14-2026 12:45:00", true, true},
                    CutOffCase{"an engine that does not obey is killed", "11-14-2026 12:45:00", false, true},
                    CutOffCase{"begun within the ten minutes", "11-14-2026 12:30:00", true, true},
                    CutOffCase{"the ten minutes are over", "11-14-2026 12:29:00", true, false},
                    CutOffCase{"a one-digit hour never comes", "11-14-2026 9:45:00", true, false},
                    CutOffCase{"no time at all", "", true, false}));

TEST(StoppedJobStory, AnEngineThatDiesLeavesTheResetResult) {
  House house;
  MakeDue(house);
  house.OnCommand(51, [](ProgramRun& run) { run.Exit(3); });
  house.Tick();
  EXPECT_EQ(house.StatusAfterJob(), "0");
  EXPECT_EQ(house.NextTime(), "11-15-2026 12:30:00");
}

TEST(StoppedJobStory, AnEngineThatNeverEndsIsWaitedForUntilTheUserCancels) {
  House house;
  MakeDue(house);
  house.OnCommand(51, [&](ProgramRun& run) {
    run.NeverEnds();
    house.machine.After(72h, [&] { house.WriteProfile("BackupStatus", "Cancel", "1"); });
  });
  house.Tick();
  EXPECT_GE(house.machine.Elapsed(), 72h);
  EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
}

TEST(StoppedJobStory, AnEngineThatCanNotBeStartedEndsByThePassesOfThePortNumber) {
  House house;
  MakeDue(house);
  house.machine.RemoveProgram(House::kEngine);
  house.WriteProfile("BackupStatus", "Cancel", "1");
  house.Tick();
  EXPECT_TRUE(house.TraceHas("Getting Port info : -416"));
  EXPECT_GE(house.machine.Elapsed(), 390s);
}

TEST(StoppedJobStory, AnEngineThatIsGoneBeforeTheSizeRefreshIsGivenUpOnAnAbort) {
  House house;
  MakeDue(house);
  house.OnCommand(51, [&](ProgramRun&) {
    house.WriteResult(402);
    house.machine.RemoveProgram(House::kEngine);
    house.machine.After(2h, [&] { house.WriteProfile("BackupStatus", "Status", "5"); });
  });
  house.Tick();
  EXPECT_EQ(house.NextTime(), "11-15-2026 12:30:00");
}

TEST(StoppedJobStory, WithoutAnEncryptionPasswordNothingRuns) {
  House house;
  MakeDue(house);
  house.WriteAccount("encpassword", "NOENC");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  ASSERT_EQ(house.SessionFiles().size(), 1U);
  EXPECT_EQ(house.machine.FileBytes(house.SessionFiles().front())->size() % 2, 0U);
  EXPECT_EQ(house.Text("SchStatus.txt"), "");
  EXPECT_EQ(house.LastMail().at(2), "4");
  EXPECT_EQ(house.Status("BackupFailureDays"), "0");
}

TEST(StoppedJobStory, TheSupportMarkerTakesTheMachineOutOfTheSchedule) {
  House house;
  MakeDue(house);
  house.machine.PutFile("C:\\SupportUtility\\Support.txt", "");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.Bytes("scheduleData.txt"), "<none>");
  EXPECT_TRUE(house.LastMail().empty());
}

struct QuotaCase {
  const char* used;
  const char* max;
  bool stopped;
};

TEST(StoppedJobStory, MoreThanTheQuotaStopsTheJobBeforeTheTransfer) {
  for (const QuotaCase& row : {QuotaCase{"1024", "1023", true}, QuotaCase{"1024", "1024", false},
                               QuotaCase{"999999999999", "1", false}}) {
    House house;
    MakeDue(house);
    house.WriteProfile("QuotaStatus", "Used", row.used);
    house.WriteProfile("QuotaStatus", "Max", row.max);
    house.Tick();
    if (!row.stopped) {
      EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16)) << row.max;
      continue;
    }
    EXPECT_EQ(house.LastMail().at(5),
              "Your quota has exceeded the allocated limit. Please upgrade your account.");
    EXPECT_EQ(house.LastMail().at(2), "4");
    EXPECT_EQ(house.Text("SchStatus.txt"),
              " Your data could not be backed up as you have utilized the allocated quota. Upgrade and try "
              "again.\r\n");
    EXPECT_EQ(house.Status("StatusMessageIndicaton"), "2");
    // The size refresh is started and not waited for.
    EXPECT_EQ(house.Commands().back(), 16);
  }
}

}  // namespace
}  // namespace ondura
