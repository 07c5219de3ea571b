// Jobs that end early: by their user, by the clock, by an engine that fails, by the account.

#include "scenarios/House.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(StoppedJobStory, AnAbortLeavesAMailAndTheNextOccurrence) {
  MailingHouse house;
  house.WriteMethod("1");
  house.OnCommand(28, [&](ProgramRun& run) {
    house.Service().controller().EndProgress();
    run.NeverEnds();
  });
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 28));
  EXPECT_EQ(house.StatusAfterJob(), "3");
  EXPECT_EQ(house.LastMail().at(2), "4");
  EXPECT_EQ(house.NextTime(), House::kTomorrow);
}

TEST(StoppedJobStory, ACancelStopsOneJobAndNotTheNext) {
  MailingHouse house;
  int kills = 0;
  house.OnCommand(51, [&](ProgramRun& run) {
    run.NeverEnds();
    run.OnTerminated([&] { ++kills; });
    run.After(2h, [&] { house.WriteProfile("BackupStatus", "Cancel", "1"); });
  });
  house.Tick();
  EXPECT_GE(house.machine.Elapsed(), 2h);
  EXPECT_EQ(house.StatusAfterJob(), "0");
  EXPECT_EQ(house.LastMail().at(2), "4");
  house.Answer(51, 402);
  house.machine.AdvanceTo(ToLocalTime({2026, 11, 15, 12, 30, 0}));
  house.Tick();
  EXPECT_EQ(house.LastMail().at(2), "2");
  EXPECT_EQ(kills, 1);
  EXPECT_EQ(house.Status("Cancel"), "0");
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
  MailingHouse house;
  house.WriteProfile("QuotaStatus", "Used", "1024");
  house.WriteProfile("QuotaStatus", "Max", "1023");
  house.Tick();
  EXPECT_EQ(house.LastMail().at(5),
            "Your quota has exceeded the allocated limit. Please upgrade your account.");
  EXPECT_EQ(house.LastMail().at(2), "4");
  EXPECT_EQ(house.Status("StatusMessageIndicaton"), "2");
  EXPECT_EQ(house.Commands().back(), 16);
}

// Neither side of the guard may run while the other does: a second job would replace the state of the first.
TEST(StoppedJobStory, ACallForAJobOrAPassWhileOneRunsDoesNothing) {
  for (const bool pass_runs : {true, false}) {
    DueHouse house;
    Controller& controller = house.Service().controller();
    int calls = 0;
    bool in_call = false;
    house.machine.OnPump([&] {
      if (house.Commands().empty() || std::exchange(in_call, true)) return;
      ++calls;
      EXPECT_EQ(controller.Cont_SchBackup(), 4);
      controller.Cont_startschBackup();
      house.Tick();
      in_call = false;
    });
    pass_runs ? house.Tick() : static_cast<void>(controller.Cont_SchBackup());
    EXPECT_GE(calls, 1);
    EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  }
}

// The engine ends while the list is still being made, and for minutes nothing but the trace shows the job.
TEST(StoppedJobStory, ATwinThatStartsDuringALongWalkDoesNotRunTheJobAgain) {
  DueHouse house;
  for (int i = 0; i < 10; ++i) house.machine.PutFile("C:\\Docs\\" + std::to_string(i), "x");
  bool is_over = false;
  house.machine.OnPump([&] {
    if (!is_over && !house.Commands().empty() && house.Commands().back() == 51) house.machine.Advance(45s);
  });
  house.OnCommand(51, [&](ProgramRun&) {
    house.WriteResult(402);
    house.machine.After(4min, [&] { house.Twin().controller().Cont_startschBackup(); });
  });
  house.Tick();
  is_over = true;
  EXPECT_GE(house.machine.Elapsed(), 5min);
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_EQ(house.NextTime(), House::kTomorrow);
}

}  // namespace
}  // namespace ondura
