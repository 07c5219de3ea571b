// Whole file jobs from the tick to the next occurrence.

#include <gmock/gmock.h>

#include "scenarios/house.h"

namespace ondura {
namespace {

using testing::ElementsAre;

TEST(FileJobStory, ADueOccurrenceRunsOnceAndMovesOn) {
  House house;
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily("11-14-2026 12:30:00")});
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
  EXPECT_EQ(house.Bytes("scheduleData.txt"),
            "0\r\n1\b\bNightly\b\b11-15-2026 12:30:00\b\b12:30\b\b0\b\bevery day\b\b\b\b0\b\b0\b\b"
            "202611151230\b\b6\b\b1111111\r\n");
  EXPECT_EQ(house.Text("SchStatus.txt"), "View the log to know the status of the backup job.\r\n");
  EXPECT_EQ(house.Status("Status"), "4");
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
}

void MakeDue(House& house, std::string_view method) {
  house.AddUser("ann");
  house.PutSchedule("ann", {House::Daily("11-14-2026 12:30:00")});
  house.WriteMethod(method);
}

TEST(FileJobStory, ADriveThatRunsFullTakesTheLocalDatabaseAway) {
  for (const std::uint64_t free_bytes : {2147483648U, 1073741823U}) {
    House house;
    MakeDue(house, "1");
    const std::string database = house.UserPath("LDB\\OnduraLDB.Ond");
    std::optional<std::string> left;
    house.machine.PutFile(database, "");
    house.machine.disk().SetFreeBytes("C:\\", free_bytes);
    house.OnCommand(28, [&](ProgramRun&) {
      left = house.machine.FileBytes(database);
      house.WriteResult(402);
    });
    house.Tick();
    if (free_bytes > 1073741823) {
      EXPECT_THAT(house.Commands(), ElementsAre(24, 28, 30, 51, 16));
      EXPECT_EQ(left, "");
    } else {
      EXPECT_THAT(house.Commands(), ElementsAre(24, 51, 16));
      EXPECT_EQ(house.machine.FileBytes(database), std::nullopt);
      EXPECT_TRUE(house.TraceHas(" Setting DB to 0 , dblFreeSpace : 10737"));
    }
  }
}

TEST(FileJobStory, AMethodThatChangesLateStillHasItsFiles) {
  House house;
  MakeDue(house, "");
  house.OnCommand(30, [&](ProgramRun&) { house.WriteMethod("0"); });
  house.Tick();
  EXPECT_THAT(house.Commands(), ElementsAre(24, 28, 30, 51, 16));
  EXPECT_EQ(house.Text("TempCom\\CompareListInput1.txt").substr(0, 14), "C:\\Docs\\a.txt/");
}

TEST(FileJobStory, FiveMillionBytesAreALargeInputAndTheEnginesTraceIsKeptUpToItsCap) {
  constexpr std::size_t kCap = 5242880;
  for (const bool large : {false, true}) {
    House house;
    MakeDue(house, "0");
    house.PutText("TotalDisplaySize.txt", large ? "5000000\r\n" : "4999999\r\n");
    house.machine.PutFile(house.UserPath("TraceFile.txt"), std::string(large ? kCap + 1 : kCap, 't'));
    house.machine.PutFile(house.UserPath("MappedDriveInput.txt"), "");
    house.Tick();
    EXPECT_EQ(house.Status("CompareListCount"), large ? "2" : "0");
    EXPECT_EQ(house.Bytes("TraceFile.txt") == "<none>", large);
    EXPECT_EQ(house.Bytes("MappedDriveInput.txt"), "<none>");
  }
}

TEST(FileJobStory, AWrongPasswordIsShownInABoxOnlyForTheServerList) {
  for (const int command : {24, 28}) {
    House house;
    MakeDue(house, "1");
    house.Answer(command, -403);
    house.Tick();
    const auto& messages = house.machine.surroundings().messages;
    ASSERT_EQ(messages.size(), command == 28 ? 1U : 0U);
    if (command == 24) continue;
    EXPECT_EQ(messages.front(),
              (ShownMessage{"Logout from the account (ann) and then login with your new Password and attempt "
                            "the operation again.",
                            "Ondura failure", MessageIcon::kStop}));
  }
}

}  // namespace
}  // namespace ondura
