#include "ScheduleFile.h"
#include "SelectionList.h"

#include "machines/simulated/SimulatedMachine.h"
#include "tools/ToolHouse.h"

namespace ondura::testing {
namespace {

using ::testing::HasSubstr;

// The line with its two-backspace separators written as "|".
std::string Separated(std::string line) {
  for (auto at = line.find('|'); at != std::string::npos; at = line.find('|', at + 2))
    line.replace(at, 1, "\b\b");
  return line;
}

// 2090-11-14 is a Tuesday.
TEST(ToolSchedule, WritesARecordThatTheServiceCanUse) {
  const AnnHouse house;
  for (const auto& [story, options, line] :
       {std::tuple{"a run that happens once is dropped when it is missed", "--at '2090-11-14 06:05'",
                   "1|files|11-14-2090 06:05:00|06:05|8|once||2|1|209011140605|4|0000000"},
        {"every day of the week", "--at '2090-11-14 23:59' --repeat daily",
         "1|files|11-14-2090 23:59:00|23:59|0|daily||2|1|209011142359|6|1111111"},
        {"days begin with the first of them behind the date",
         "--at '2090-11-14 12:30' --repeat weekly:sun,mon --kind sql",
         "2|sql|11-19-2090 12:30:00|12:30|0|weekly:sun,mon||2|1|209011191230|6|1100000"},
        {"a day of the list stays", "--at '2090-11-14 12:30' --repeat weekly:tue --kind system-state",
         "3|system-state|11-14-2090 12:30:00|12:30|0|weekly:tue||2|1|209011141230|6|0010000"},
        {"mail to two, always",
         "--at '2090-02-28 00:00' --repeat monthly --kind mailbox --name Post --mail-when always --mail "
         "a@x.org --mail b@x.org",
         "5|Post|02-28-2090 00:00:00|00:00|0|monthly|a@x.org;b@x.org|3|1|209002280000|5|0000000"}}) {
    const ToolResult result = house.Run(std::string{"schedule add ann "} + options);
    EXPECT_EQ(result.exit, 0) << story << ": " << result.err;
    EXPECT_EQ(house.OfAnn("scheduleData.txt"), "0\r\n" + Separated(line) + "\r\n") << story;
    house.Run("schedule remove ann --all");
  }
}

TEST(ToolScheduleFile, KeepsOtherRecordsByteForByteAndLeavesBrokenLinesOut) {
  const AnnHouse house;
  const std::string other = Separated("2|\xE9t\xE9|x|y|0|z||1|0|209001010000|9|1|odd tail") + "\r\n";
  house.PutForAnn("scheduleData.txt", "0\r\nnonsense\r\n" + other);
  const ToolResult result = house.Run("schedule add ann --at '2090-11-14 06:05'");
  EXPECT_THAT(result.err, HasSubstr("1 line(s)"));
  EXPECT_THAT(house.OfAnn("scheduleData.txt"), ::testing::StartsWith("0\r\n" + other + "1\b\bfiles\b\b"));
}

TEST(ToolScheduleFile, IsNotTouchedWhileAJobRuns) {
  const AnnHouse house;
  const std::string running =
      "3\r\n" + Separated("3|s|11-14-2090 06:05:00|t|0|u||1|0|209011140605|4|0") + "\r\n";
  house.PutForAnn("scheduleData.txt", running);
  for (const char* change : {"schedule add ann --at '2090-11-14 06:05'", "schedule remove ann --all"}) {
    const ToolResult result = house.Run(change);
    EXPECT_EQ(result.exit, 1);
    EXPECT_THAT(result.err, HasSubstr("a system-state job of ann is running"));
  }
  EXPECT_EQ(house.OfAnn("scheduleData.txt"), running);

  // A job that winds up has put the header back already, but will still write what it had read.
  house.PutForAnn("scheduleData.txt", "0\r\n");
  house.Run("set ann Started 1");
  house.Run("set ann Scheduled ann");
  EXPECT_EQ(house.Run("schedule add ann --at now").exit, 1);
}

TEST(ToolPause, WritesTheWordThatTheServiceReadsAndSaysWhenNothingChanges) {
  const AnnHouse house;
  EXPECT_THAT(house.Run("resume ann").out, HasSubstr("on already"));
  EXPECT_THAT(house.Run("pause ANN").out, HasSubstr("No schedule of ann runs"));
  EXPECT_EQ(house.Get("ScheduleDisable").out, "TRUE\n");
  EXPECT_THAT(house.Run("pause ann").out, HasSubstr("off already"));
  EXPECT_THAT(house.Run("resume ann").out, HasSubstr("run again"));
  EXPECT_EQ(house.Get("ScheduleDisable").out, "FALSE\n");
}

TEST(ToolScheduleFile, HoldsOneRecordAKindAndGoesWithItsLast) {
  const AnnHouse house;
  const std::string add = "schedule add ann --at '2090-11-14 06:05'";
  ASSERT_EQ(house.Run(add).exit, 0);
  EXPECT_EQ(house.Run(add).exit, 1);
  EXPECT_THAT(house.Run("schedule add ann --at '2091-01-01 10:00' --replace --repeat daily").err,
              HasSubstr("gone with its repeat 'once';"));
  EXPECT_EQ(house.Run("schedule list").out, "ann\n  1  2091-01-01 10:00  files  daily  mail: never  files\n");
  EXPECT_THAT(house.Run("schedule list --json").out, HasSubstr("\"user\": \"ann\""));
  EXPECT_EQ(house.Run("schedule list ann").out, "1  2091-01-01 10:00  files  daily  mail: never  files\n");
  EXPECT_THAT(house.Run("schedule list ann --json").out, HasSubstr("\"next\": \"2091-01-01 10:00\""));
  EXPECT_EQ(house.Run("schedule remove ann 1").exit, 0);
  EXPECT_EQ(house.OfAnn("scheduleData.txt"), "");
}

TEST(ToolScheduleFile, RefusesWhatTheFileOrItsReaderCantTake) {
  const AnnHouse house;
  EXPECT_THAT(house.Run("schedule add ann --at now --name '\xE5\xB9\xB4'").err, HasSubstr("code page"));
  EXPECT_THAT(house.Run("schedule remove ann 0").err, HasSubstr("1 to 32767"));
  EXPECT_EQ(house.Run("schedule list ann").err, "");
  EXPECT_THAT(house.Run("schedule add ann --at '2001-01-01 00:00'").err, HasSubstr("in the past"));
  EXPECT_EQ(house.Run("schedule add ann --at now --kind sql").err, "");
  house.PutForAnn("scheduleData.txt", "0\r\n" + Separated("1|s|x|t|0|u||1|0||4|0") + "\r\n");
  EXPECT_THAT(house.Run("schedule list ann").err,
              HasSubstr("1 line(s) of the schedule file of ann have no time"));
}

// On a machine whose disk can be full.
TEST(ToolScheduleFile, KeepsEveryRecordWhenItCantBeWrittenAndIsNotMissingWhenItCantBeRead) {
  const std::string path = "C:\\scheduleData.txt";
  const std::string bytes = "0\r\n" + Separated("2|s|x|y|0|z||1|0|209001010000|9|1") + "\r\n";
  for (const auto& trouble : std::vector<std::function<void(CallJournal&)>>{
           [](CallJournal& journal) { journal.Fail("Files.Write "); },
           [](CallJournal& journal) { journal.Tear("Files.Write "); }}) {
    SimulatedMachine machine;
    machine.PutFile(path, bytes);
    ScheduleFile file{machine.machine(), path};
    file.Add(file.Records().front());
    trouble(machine.journal());
    EXPECT_FALSE(file.Save());
    EXPECT_EQ(machine.FileBytes(path), bytes);
  }
  SimulatedMachine machine;
  EXPECT_FALSE((ScheduleFile{machine.machine(), path}.IsUnreadable()));
  machine.PutFile(path, bytes);
  machine.journal().Fail("Files.Read ");
  const ScheduleFile unread{machine.machine(), path};
  EXPECT_TRUE(unread.IsUnreadable());
  EXPECT_FALSE(unread.Save());
  machine.journal().Fail("Files.Read ");
  EXPECT_FALSE((SelectionList{machine.machine(), path}.Save()));
  EXPECT_EQ(machine.FileBytes(path), bytes);
}

}  // namespace
}  // namespace ondura::testing
