// Whole file jobs from the tick to the next occurrence, and what surrounds them: the start of the hosts,
// mail, the end of Windows.

#include "scenarios/House.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura {
namespace {

using testing::ElementsAre;

TEST(FileJobStory, ADueOccurrenceRunsOnceAndMovesOn) {
  DueHouse house;
  house.Tick();
  EXPECT_EQ(house.Bytes("scheduleData.txt"),
            "0\r\n1\b\bNightly\b\b11-15-2026 12:30:00\b\b12:30\b\b0\b\bevery day\b\b\b\b0\b\b0\b\b"
            "202611151230\b\b6\b\b1111111\r\n");
  EXPECT_EQ(house.Text("SchStatus.txt"), "View the log to know the status of the backup job.\r\n");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

TEST(FileJobStory, TheHeaderWordWaitsForAToolThatChangesTheSchedule) {
  constexpr const char* kLock = "Global\\OnduraEService machine files";
  DueHouse house;
  std::string word;
  house.machine.HoldMutex(kLock);
  // The pass itself waits for five seconds.
  house.machine.After(std::chrono::seconds{7}, [&] {
    house.PutSchedule("ann", {House::Daily()});
    house.machine.LetGoOfMutex(kLock);
  });
  house.During(24, [&] { word = house.Bytes("scheduleData.txt").substr(0, 1); });
  house.Tick();
  EXPECT_EQ(word, "1") << "the tool has put the word of an idle file back";
}

TEST(FileJobStory, ADriveThatRunsFullTakesTheLocalDatabaseAway) {
  for (const bool is_full : {false, true}) {
    DueHouse house;
    house.WriteMethod("1");
    house.machine.PutFile(house.UserPath("LDB\\OnduraLDB.Ond"), "");
    house.machine.disk().SetFreeBytes("C:\\", is_full ? 1073741823 : 2147483648);
    std::string left = "<none>";
    house.During(28, [&] { left = house.Bytes("LDB\\OnduraLDB.Ond"); });
    house.Tick();
    EXPECT_EQ(left, is_full ? "<none>" : "");
    EXPECT_EQ(house.Commands(), is_full ? std::vector({24, 51, 16}) : std::vector({24, 28, 30, 51, 16}));
    EXPECT_EQ(house.Bytes("LDB\\OnduraLDB.Ond"), "<none>");
    EXPECT_EQ(house.TraceHas(" Setting DB to 0 , dblFreeSpace : 10737"), is_full);
  }
}

TEST(FileJobStory, AListThatCannotBeWrittenOrAnnouncedEndsTheJobAndItsEngineAsFailed) {
  for (const auto& [fault, words] :
       {std::pair{"FileWriter.Append*CompareListInput1.txt", "  The compare list can't be written. "},
        {"ProfileFiles.WriteString*StatusCheckCount=1", "  The compare list can't be announced. "}}) {
    DueHouse house;
    bool engine_ended = false;
    house.OnCommand(51, [&](ProgramRun&) { engine_ended = true; });
    house.machine.Fail(fault);
    house.Tick();
    EXPECT_FALSE(engine_ended) << "the engine would wait, and call the part of the list all there is";
    EXPECT_TRUE(house.TraceHas(words));
    EXPECT_EQ(house.Status("BackupFailureDays"), "1");
    EXPECT_EQ(house.NextTime(), House::kTomorrow);
    ASSERT_EQ(house.SessionFiles().size(), 1U);
    EXPECT_THAT(FromUtf16(house.machine.FileBytes(house.SessionFiles().front()).value_or("")),
                testing::HasSubstr("The list of the files to back up could not be written."));
  }
}

TEST(FileJobStory, FiveMillionBytesAreALargeInputAndTheEnginesTraceIsKeptUpToItsCap) {
  constexpr std::size_t kCap = 5242880;
  for (const bool large : {false, true}) {
    DueHouse house;
    house.PutText("TotalDisplaySize.txt", large ? "5000000\r\n" : "4999999\r\n");
    house.machine.PutFile(house.UserPath("TraceFile.txt"), std::string(large ? kCap + 1 : kCap, 't'));
    house.Tick();
    EXPECT_EQ(house.Status("CompareListCount"), large ? "2" : "0");
    EXPECT_EQ(house.Bytes("TraceFile.txt") == "<none>", large);
  }
}

struct MailCase {
  std::string option, mailids;
  int result;
  std::vector<std::string> told;
  std::size_t fields;
};

TEST(BracketStory, MailGoesToTheAddressesThatTheOptionAsksFor) {
  for (const MailCase& row : {MailCase{"3", "a;b;;c", 402, {"a", "b"}, 11}, MailCase{"2", "a", 402, {}, 0},
                              MailCase{"2", "a;b", -414, {"a", "b"}, 10}, MailCase{"1", "a", -414, {}, 0}}) {
    ScheduleRecord record = House::Daily();
    record.mailids = row.mailids;
    record.mailoption = row.option;
    DueHouse house(record);
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

TEST(BracketStory, WindowsEndsWhenItIsAskedForAndNobodyCancelled) {
  for (const auto& [shutdown, result, exits] :
       {std::tuple{"1", 402, 1}, std::tuple{"1", -414, 0}, std::tuple{"0", 402, 0}}) {
    DueHouse house;
    house.WriteAccount("SHUTDOWN", shutdown);
    house.Answer(51, result);
    // The refresh of the quota leaves the result of the transfer as it is.
    house.OnCommand(16, [](ProgramRun&) {});
    house.Tick();
    EXPECT_EQ(house.machine.surroundings().windows_exits,
              std::vector<std::uint32_t>(static_cast<std::size_t>(exits), 12))
        << shutdown << " " << result;
  }
}

TEST(BracketStory, TheStartOfTheServiceCleansWhatACrashHasLeft) {
  DueHouse house(House::Daily(House::kTomorrow));
  const std::string idle = house.Bytes("scheduleData.txt");
  house.machine.PutFile(house.UserPath("scheduleData.txt"), "3" + idle.substr(1));
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
