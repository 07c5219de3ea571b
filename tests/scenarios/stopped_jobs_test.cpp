// Jobs that end early: by their user, by the clock, by an engine that fails, by the account.

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
constexpr const char* kCutOffMail =
    "The scheduled job has been stopped due to the Cut Off time set in Scheduler Options. The backup will "
    "resume at the next scheduled time.";

// A job whose end is always mailed.
struct MailingHouse : DueHouse {
  MailingHouse() : DueHouse(Mailing()) {}
};

// The one session file of the job: its text, and the time in its name.
std::pair<std::string, std::string> Session(House& house) {
  if (house.SessionFiles().size() != 1) return {"<not one>", ""};
  const std::string name = house.SessionFiles().front().substr(house.UserPath("Session").size() + 1);
  return {house.Text("Session\\" + name), name.substr(10, 19)};
}

constexpr const char* kSessionHead = " \r\nUsername: ann\r\nOperation: Scheduled\r\n";
constexpr const char* kAborted = "  You have aborted the scheduled backup job that was in progress.\r\n";

TEST(StoppedJobStory, AnAbortOfACommandThatNeverEndsLeavesByTheAbortPath) {
  for (const auto& [method, command, by_host, commands] :
       {std::tuple{"0", 24, false, std::vector{24}}, std::tuple{"1", 28, false, std::vector{24, 28}},
        std::tuple{"1", 28, true, std::vector{24, 28}}}) {
    SCOPED_TRACE(std::to_string(command) + (by_host ? " by the host's end of progress" : " by the user"));
    MailingHouse house;
    house.WriteMethod(method);
    house.OnCommand(command, [&, ends_progress = by_host](ProgramRun& run) {
      if (ends_progress) house.Service().controller().EndProgress();
      if (!ends_progress) house.WriteProfile("BackupStatus", "Status", "5");
      run.NeverEnds();
    });
    house.Tick();
    EXPECT_EQ(house.Commands(), commands);
    EXPECT_TRUE(house.TraceHas("User aborted scheduled backup 28 in progress"));
    EXPECT_EQ(house.StatusAfterJob(), "3");
    EXPECT_EQ(house.Status("DLLStatus"), "3");
    EXPECT_EQ(house.Status("BackupFailureDays"), "0");
    EXPECT_EQ(house.Text("SchStatus.txt"), kManualCancel);
    const auto& [session, time] = Session(house);
    EXPECT_EQ(session, kSessionHead + time + kAborted);
    EXPECT_EQ(house.LastMail().at(2), "4");
    EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
    EXPECT_FALSE(house.machine.IsRunning("OnduraSDBManager.exe"));
    EXPECT_EQ(house.machine.OpenHandles(), 0U);
    EXPECT_EQ(house.NextTime(), House::kTomorrow);
  }
}

TEST(StoppedJobStory, AnAbortDuringTheWalkEndsTheEngineAndIsLoggedAsItsPlaceAsks) {
  for (const bool within_folder : {true, false}) {
    MailingHouse house;
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
    const auto& [session, time] = Session(house);
    EXPECT_EQ(session, (within_folder ? " \r\n" : kSessionHead) + time + kAborted);
  }
}

TEST(StoppedJobStory, AnEngineThatNeverEndsIsWaitedForAndCancelGivesItFourPassesBeforeItIsKilled) {
  for (const bool engine_obeys : {true, false}) {
    MailingHouse house;
    bool is_killed = false;
    house.OnCommand(51, [&](ProgramRun& run) {
      run.NeverEnds();
      run.OnTerminated([&] { is_killed = true; });
      run.After(72h, [&] { house.WriteProfile("BackupStatus", "Cancel", "1"); });
      if (!engine_obeys) return;
      run.After(72h + 6s, [&] { house.WriteResult(-414); });
      run.ExitAfter(72h + 6s + 1ms, 0);
    });
    house.Tick();
    EXPECT_GE(house.machine.Elapsed(), 72h);
    EXPECT_EQ(is_killed, !engine_obeys);
    EXPECT_FALSE(house.machine.IsRunning("OndClsClient.exe"));
    EXPECT_EQ(house.Status("Cancel"), engine_obeys ? "1" : "0");
    EXPECT_EQ(house.StatusAfterJob(), engine_obeys ? "-414" : "0");
    EXPECT_EQ(house.LastMail().at(2), "4");
  }
}

using CutOffCase = std::tuple<std::string, std::string, bool, bool>;

TEST(StoppedJobStory, TheCutOffEndsTheTransferWithinItsTenMinutes) {
  for (const auto& [story, stop_time, engine_obeys, stopped] :
       {CutOffCase{"at the minute", "11-14-2026 12:45:00", true, true},
        CutOffCase{"an engine that does not obey is killed", "11-14-2026 12:45:00", false, true},
        CutOffCase{"begun within the ten minutes", "11-14-2026 12:30:00", true, true},
        CutOffCase{"the ten minutes are over", "11-14-2026 12:29:00", true, false},
        CutOffCase{"a one-digit hour never comes", "11-14-2026 9:45:00", true, false},
        CutOffCase{"no time at all", "", true, false}}) {
    SCOPED_TRACE(story);
    MailingHouse house;
    house.WriteRegistry("StopSchedule", "1");
    house.WriteRegistry("StopScheduleTime", stop_time);
    bool saw_ten = false;
    bool killed = false;
    const bool obeys = engine_obeys;
    house.OnCommand(51, [&](ProgramRun& run) {
      run.OnTerminated([&] { killed = true; });
      run.Every(500ms, [&] {
        saw_ten = saw_ten || house.Status("Status") == "10";
        if (saw_ten && obeys) run.Exit(0);
      });
      run.ExitAfter(3h, 0);
    });
    house.Tick();
    EXPECT_EQ(saw_ten, stopped);
    EXPECT_EQ(killed, stopped && !engine_obeys);
    EXPECT_EQ(house.Text("SchStatus.txt") == kCutOff, stopped);
    EXPECT_EQ(house.StatusAfterJob(), stopped ? "402" : "0");
    EXPECT_EQ(house.LastMail().at(5), stopped ? kCutOffMail : "");
  }
}

TEST(StoppedJobStory, AnEngineThatCanNotBeStartedEndsByThePassesOfThePortNumber) {
  MailingHouse house;
  house.machine.RemoveProgram(House::kEngine);
  house.machine.After(400s, [&] { house.WriteProfile("BackupStatus", "Cancel", "1"); });
  house.Tick();
  EXPECT_TRUE(house.TraceHas("Getting Port info : -416"));
  EXPECT_GE(house.machine.Elapsed(), 390s);
}

TEST(StoppedJobStory, AnEngineThatIsGoneBeforeTheSizeRefreshIsGivenUpOnAnAbort) {
  MailingHouse house;
  house.During(51, [&] {
    house.machine.RemoveProgram(House::kEngine);
    house.machine.After(2h, [&] { house.WriteProfile("BackupStatus", "Status", "5"); });
  });
  house.Tick();
  EXPECT_EQ(house.NextTime(), House::kTomorrow);
}

TEST(StoppedJobStory, WithoutAnEncryptionPasswordNothingRuns) {
  MailingHouse house;
  house.WriteAccount("encpassword", "NOENC");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.machine.FileBytes(house.SessionFiles().front())->size() % 2, 0U);
  EXPECT_EQ(house.Text("SchStatus.txt"), "");
  EXPECT_EQ(house.LastMail().at(2), "4");
  EXPECT_EQ(house.Status("BackupFailureDays"), "0");
}

TEST(StoppedJobStory, TheSupportMarkerTakesTheMachineOutOfTheSchedule) {
  MailingHouse house;
  house.machine.PutFile("C:\\SupportUtility\\Support.txt", "");
  house.Tick();
  EXPECT_TRUE(house.Commands().empty());
  EXPECT_EQ(house.Bytes("scheduleData.txt"), "<none>");
  EXPECT_TRUE(house.LastMail().empty());
}

TEST(StoppedJobStory, MoreThanTheQuotaStopsTheJobBeforeTheTransfer) {
  for (const auto& [used, max, stopped] :
       {std::tuple{"1024", "1023", true}, std::tuple{"1024", "1024", false},
        std::tuple{"999999999999", "1", false}}) {
    MailingHouse house;
    house.WriteProfile("QuotaStatus", "Used", used);
    house.WriteProfile("QuotaStatus", "Max", max);
    house.Tick();
    if (!stopped) {
      EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16)) << max;
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
