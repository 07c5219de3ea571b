#include "contract.h"
#include "support/CheckedMachine.h"

namespace ondura {
namespace {

TEST(SimulatedDisk, AFullDiskLosesTheWriteAsItIsTold) {
  for (const auto& [story, behaviour, free_bytes, left] :
       {std::tuple{"just fits", FullDisk::kKeepsNothing, 4U, "abcdef"},
        {"one byte short", FullDisk::kKeepsNothing, 3U, "ab"},
        {"one byte short, torn", FullDisk::kTearsWrites, 3U, "abcd"},
        {"no room even for half", FullDisk::kTearsWrites, 1U, "ab"}}) {
    CheckedMachine house;
    house.PutFile("C:\\x", "ab");
    house.disk().SetFreeBytes("C:\\", free_bytes);
    house.disk().SetFullDisk(behaviour);
    EXPECT_EQ(house.machine().files.Append("C:\\x", "cdef", IfMissing::kFail), free_bytes == 4) << story;
    EXPECT_EQ(house.FileBytes("C:\\x"), left) << story;
    const std::string replaced(free_bytes + std::string_view{left}.size() + 1, 'z');
    EXPECT_FALSE(house.machine().files.Write("C:\\x", replaced, IfPresent::kReplace)) << story;
    EXPECT_EQ(house.FileBytes("C:\\x"), left) << story;
  }
}

TEST(SimulatedDisk, RoomComesBackWithWhatIsRemovedOrReplaced) {
  CheckedMachine house;
  house.PutFile("C:\\d\\x", "12345678");
  house.disk().SetFreeBytes("C:\\", 0);
  Files& files = house.machine().files;
  EXPECT_TRUE(files.Write("C:\\d\\x", "1234", IfPresent::kReplace));
  EXPECT_EQ(house.machine().drives.FreeBytes("C:\\d"), 4U);
  EXPECT_TRUE(house.machine().folders.Remove("C:\\d", Removal::kPlain));
  EXPECT_EQ(house.machine().drives.FreeBytes("C:\\"), 8U);
}

TEST(SimulatedDisk, WhatRefusesAccessIsThereButCannotBeUsed) {
  CheckedMachine house;
  house.PutFile("C:\\d\\locked.ini", "[a]\r\nb=c\r\n");
  house.disk().SetRefusing("C:\\d\\locked.ini", true);
  const Machine& machine = house.machine();
  EXPECT_TRUE(machine.files.Exists("C:\\d\\locked.ini"));
  EXPECT_EQ(machine.files.Read("C:\\d\\locked.ini"), std::nullopt);
  EXPECT_FALSE(machine.files.Append("C:\\d\\locked.ini", "x", IfMissing::kCreate));
  EXPECT_FALSE(machine.files.Remove("C:\\d\\locked.ini", Removal::kForce));
  EXPECT_FALSE(machine.profiles.WriteString({"C:\\d\\locked.ini", "a", "b"}, "d"));
  EXPECT_FALSE(machine.folders.Remove("C:\\d", Removal::kForce)) << "part of it stayed";
  EXPECT_FALSE(machine.folders.Remove("C:\\", Removal::kForce)) << "a drive stays";
  EXPECT_EQ(house.FileBytes("C:\\d\\locked.ini"), "[a]\r\nb=c\r\n");
  house.disk().SetRefusing("C:\\d", true);
  EXPECT_FALSE(machine.folders.List("C:\\d", [](const FolderEntry&) { return Visit::kContinue; }));
  house.disk().SetRefusing("C:\\d", false);
  house.PutFile("C:\\d\\read-only", "1");
  house.disk().SetReadOnly("C:\\d\\read-only", true);
  EXPECT_FALSE(machine.files.Write("C:\\d\\read-only", "2", IfPresent::kReplace));
  EXPECT_FALSE(machine.files.Patch("C:\\d\\read-only", 0, "2"));
}

}  // namespace
}  // namespace ondura
