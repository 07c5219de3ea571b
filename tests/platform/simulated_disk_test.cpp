#include "contract.h"
#include "support/CheckedMachine.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(SimulatedDisk, AnEntryThatVanishesDuringTheListingIsLeftOut) {
  CheckedMachine house;
  for (const char* path : {"C:\\d\\1", "C:\\d\\2", "C:\\d\\3", "C:\\dd"}) house.PutFile(path, "");
  house.disk().SetListOrder(ListOrder::kReversed);
  std::vector<std::string> names;
  house.machine().folders.List("C:\\d", [&](const FolderEntry& entry) {
    names.emplace_back(entry.name);
    house.disk().Erase("C:\\d\\2");
    return Visit::kContinue;
  });
  EXPECT_THAT(names, ElementsAre("3", "1"));
  EXPECT_THAT(house.FilesUnder("C:\\D"), ElementsAre("C:\\d\\1", "C:\\d\\3"));
}

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

TEST(SimulatedDisk, OtherDrivesAndNetworkPlacesAreThereWhileTheyAreConnected) {
  CheckedMachine house;
  house.PutFile("\\\\server\\share\\d\\x", "1");
  house.disk().PutDrive("e:\\", DriveKind::kRemovable, 5);
  const Machine& machine = house.machine();
  EXPECT_EQ(machine.files.Read("\\\\SERVER\\share\\\\d\\x"), "1");
  EXPECT_THAT(NamesIn(machine, "\\\\server\\share"), ElementsAre("d\\"));
  EXPECT_EQ(machine.drives.KindOf("\\\\server\\share"), DriveKind::kNetwork);
  EXPECT_THAT(machine.drives.Roots(), ElementsAre("C:\\", "E:\\"));
  EXPECT_FALSE(machine.files.Write("E:\\x", "123456", IfPresent::kReplace));
  EXPECT_TRUE(machine.files.Write("E:\\x", "12345", IfPresent::kReplace));
  for (const char* root : {"\\\\server\\share", "\\\\SERVER\\share\\", "C:", "C:\\", "E:\\."}) {
    EXPECT_FALSE(machine.folders.Remove(root, Removal::kForce)) << root;
  }
  EXPECT_TRUE(machine.files.Exists("\\\\server\\share\\d\\x") && machine.files.Exists("E:\\x"));
  house.disk().RemoveDrive("E:\\");
  EXPECT_THAT(machine.drives.Roots(), ElementsAre("C:\\"));
  EXPECT_FALSE(machine.files.Exists("E:\\x"));
}

TEST(SimulatedDisk, OnlyLegalNamesInFoldersThatAreThereCanBeMade) {
  CheckedMachine house;
  for (const char* path : {"", "x.txt", "C:\\", "C:\\a:b", "C:\\a?", "C:\\missing\\x", "Q:\\x", "C:\\a\tb"}) {
    EXPECT_FALSE(house.machine().files.Write(path, "x", IfPresent::kReplace)) << path;
  }
  EXPECT_THAT(house.FilesUnder("C:\\"), IsEmpty());
}

}  // namespace
}  // namespace ondura
