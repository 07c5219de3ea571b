#include <gmock/gmock.h>

#include "contract.h"

namespace ondura {

namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::UnorderedElementsAre;

std::vector<std::string> NamesIn(const Machine& machine, std::string_view folder) {
  std::vector<std::string> names;
  machine.folders.List(folder, [&](const FolderEntry& entry) {
    names.push_back(std::string{entry.name} + (entry.is_folder ? "\\" : ""));
    return Visit::kContinue;
  });
  return names;
}

TEST_P(PlatformContract, AFileIsFoundUnderEveryFormOfItsPath) {
  ASSERT_TRUE(machine_.folders.Make(R"(C:\Data)"));
  PutFile(R"(C:\Data\Report.txt)", "seven 7");
  for (const char* path : {R"(C:\Data\Report.txt)", R"(c:\data\REPORT.TXT)", R"(C:\\Data\\Report.txt)",
                           "C:/Data/Report.txt", R"(C:\Data\.\Report.txt)"}) {
    EXPECT_TRUE(machine_.files.Exists(path)) << path;
    EXPECT_THAT(machine_.files.Read(path), Optional(std::string{"seven 7"})) << path;
    EXPECT_THAT(machine_.files.Size(path), Optional(7U)) << path;
  }
}

TEST_P(PlatformContract, WritingUnderAnotherLetterCaseMakesNoSecondFile) {
  PutFile(R"(C:\Status.txt)", "old");
  PutFile(R"(C:\STATUS.TXT)", "new");
  EXPECT_TRUE(machine_.files.Append(R"(C:\status.txt)", "er", IfMissing::kCreate));
  EXPECT_THAT(NamesIn(machine_, "C:\\"), ElementsAre("Status.txt"));
  EXPECT_THAT(machine_.files.Read(R"(C:\Status.txt)"), Optional(std::string{"newer"}));
}

TEST_P(PlatformContract, LettersBeyondAsciiMatchInBothCases) {
  PutFile("C:\\Übersicht Ж.txt", "x");
  EXPECT_TRUE(machine_.files.Exists("C:\\übersicht ж.TXT"));
}

TEST_P(PlatformContract, NothingIsNoFileAndAFolderIsNone) {
  ASSERT_TRUE(machine_.folders.Make(R"(C:\Folder)"));
  for (const char* path :
       {R"(C:\missing)", R"(C:\missing\deeper)", R"(C:\Folder)", "", "missing", R"(Q:\x)"}) {
    EXPECT_FALSE(machine_.files.Exists(path)) << path;
    EXPECT_EQ(machine_.files.Size(path), std::nullopt) << path;
    EXPECT_EQ(machine_.files.Modified(path), std::nullopt) << path;
    EXPECT_EQ(machine_.files.Read(path), std::nullopt) << path;
    EXPECT_EQ(machine_.files.ReadPart(path, 0, 5), std::nullopt) << path;
    EXPECT_FALSE(machine_.files.Patch(path, 0, "x")) << path;
    EXPECT_FALSE(machine_.files.Append(path, "x", IfMissing::kFail)) << path;
    EXPECT_FALSE(machine_.files.Remove(path, Removal::kForce)) << path;
    EXPECT_FALSE(machine_.files.Copy(path, R"(C:\copy)")) << path;
  }
  EXPECT_FALSE(machine_.files.Write(R"(C:\missing\deeper)", "x", IfPresent::kReplace));
}

TEST_P(PlatformContract, AWriteReplacesOrRefusesAsItWasTold) {
  EXPECT_TRUE(machine_.files.Write(R"(C:\a)", "longer text", IfPresent::kFail));
  EXPECT_FALSE(machine_.files.Write(R"(C:\A)", "x", IfPresent::kFail));
  EXPECT_TRUE(machine_.files.Write(R"(C:\a)", "short", IfPresent::kReplace));
  EXPECT_THAT(other_.files.Read(R"(C:\a)"), Optional(std::string{"short"}));
}

TEST_P(PlatformContract, BytesSurviveWhateverTheyAre) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  PutFile(R"(C:\bytes)", bytes);
  EXPECT_THAT(machine_.files.Read(R"(C:\bytes)"), Optional(bytes));
  EXPECT_THAT(machine_.files.ReadHead(R"(C:\bytes)", 5), Optional(bytes.substr(0, 5)));
  for (const std::uint64_t offset : {0, 9, 253, 256}) {
    EXPECT_THAT(machine_.files.ReadPart(R"(C:\bytes)", offset, 5), Optional(bytes.substr(offset, 5)));
  }
  EXPECT_THAT(machine_.files.ReadPart(R"(C:\bytes)", 300, 5), Optional(std::string{}));
}

TEST_P(PlatformContract, APatchLeavesTheRestOfTheFile) {
  PutFile(R"(C:\schedule)", "1\r\nrest");
  EXPECT_TRUE(machine_.files.Patch(R"(C:\schedule)", 0, "0"));
  EXPECT_TRUE(machine_.files.Patch(R"(C:\schedule)", 6, "t and more"));
  EXPECT_THAT(machine_.files.Read(R"(C:\schedule)"), Optional(std::string{"0\r\nrest and more"}));
}

TEST_P(PlatformContract, AWriterStartsOverAndAnAppenderGoesOn) {
  PutFile(R"(C:\list)", "old");
  {
    const auto writer = machine_.files.OpenWriter(R"(C:\list)", IfPresent::kReplace);
    ASSERT_NE(writer, nullptr);
    EXPECT_TRUE(writer->Append("a") && writer->Append("b"));
    EXPECT_THAT(other_.files.Read(R"(C:\list)"), Optional(std::string{"ab"})) << "readers see it grow";
  }
  const auto appender = machine_.files.OpenAppender(R"(C:\list)", IfMissing::kFail);
  ASSERT_NE(appender, nullptr);
  EXPECT_TRUE(appender->Append("c"));
  EXPECT_THAT(machine_.files.Read(R"(C:\list)"), Optional(std::string{"abc"}));
  EXPECT_EQ(machine_.files.OpenAppender(R"(C:\none)", IfMissing::kFail), nullptr);
  EXPECT_EQ(machine_.files.OpenWriter(R"(C:\none\none)", IfPresent::kReplace), nullptr);
}

TEST_P(PlatformContract, ACopyHasTheSameBytesAndTimeAndNeverEatsItsSource) {
  PutFile(R"(C:\from)", "content");
  PutFile(R"(C:\to)", "a longer old content");
  EXPECT_TRUE(machine_.files.Copy(R"(C:\from)", R"(C:\to)"));
  EXPECT_THAT(machine_.files.Read(R"(C:\to)"), Optional(std::string{"content"}));
  EXPECT_EQ(machine_.files.Modified(R"(C:\to)"), machine_.files.Modified(R"(C:\from)"));
  machine_.files.Copy(R"(C:\from)", R"(C:\FROM)");
  EXPECT_THAT(machine_.files.Read(R"(C:\from)"), Optional(std::string{"content"}));
}

TEST_P(PlatformContract, AFreshFileCarriesThePresentLocalTime) {
  const LocalTime before = machine_.clock.Now();
  PutFile(R"(C:\now)", "x");
  const auto modified = machine_.files.Modified(R"(C:\now)");
  ASSERT_TRUE(modified.has_value());
  EXPECT_GE(*modified, before - std::chrono::seconds{1});
  EXPECT_LE(*modified, machine_.clock.Now());
}

TEST_P(PlatformContract, AFolderIsMadeOnceAndUnderItsParentOnly) {
  EXPECT_TRUE(machine_.folders.Make(R"(C:\one)"));
  EXPECT_FALSE(machine_.folders.Make(R"(C:\ONE)"));
  EXPECT_FALSE(machine_.folders.Make(R"(C:\two\three)"));
  EXPECT_TRUE(machine_.folders.Make(R"(C:\one\three\)"));
  for (const char* path : {"C:", "C:\\", R"(c:\One)", R"(C:\one\)", R"(C:\ONE\three)"}) {
    EXPECT_TRUE(machine_.folders.Exists(path)) << path;
  }
  PutFile(R"(C:\file)", "");
  EXPECT_FALSE(machine_.folders.Exists(R"(C:\file)"));
  EXPECT_FALSE(machine_.folders.Exists(R"(C:\two)"));
}

TEST_P(PlatformContract, AListingShowsEachEntryOnceWithSizeAndTime) {
  machine_.folders.Make(R"(C:\d)");
  machine_.folders.Make(R"(C:\d\sub)");
  PutFile(R"(C:\d\a.txt)", "12345");
  PutFile("C:\\d\\Zażółć.txt", "");
  EXPECT_THAT(NamesIn(machine_, R"(c:\D\)"), UnorderedElementsAre("sub\\", "a.txt", "Zażółć.txt"));
  machine_.folders.List(R"(C:\d)", [&](const FolderEntry& entry) {
    EXPECT_EQ(entry.size_bytes, entry.name == "a.txt" ? 5U : 0U);
    if (entry.name == "a.txt") {
      EXPECT_EQ(entry.modified, machine_.files.Modified(R"(C:\d\a.txt)"));
    }
    return Visit::kContinue;
  });
  int visits = 0;
  EXPECT_TRUE(machine_.folders.List(R"(C:\d)", [&](const FolderEntry&) { return ++visits, Visit::kStop; }));
  EXPECT_EQ(visits, 1);
  EXPECT_FALSE(machine_.folders.List(R"(C:\none)", [](const FolderEntry&) { return Visit::kContinue; }));
}

TEST_P(PlatformContract, RemovingAFolderTakesAllItHoldsAndNothingElse) {
  machine_.folders.Make(R"(C:\d)");
  machine_.folders.Make(R"(C:\d\sub)");
  PutFile(R"(C:\d\sub\a)", "x");
  PutFile(R"(C:\stays)", "x");
  EXPECT_TRUE(machine_.folders.Remove(R"(C:\D)", Removal::kForce));
  EXPECT_FALSE(machine_.folders.Remove(R"(C:\d)", Removal::kForce));
  EXPECT_FALSE(machine_.folders.Remove(R"(C:\stays)", Removal::kForce)) << "a file is no folder";
  EXPECT_THAT(NamesIn(machine_, "C:\\"), ElementsAre("stays"));
}

TEST_P(PlatformContract, DrivesAndLongPathsTellTheMachinesOwnNames) {
  machine_.folders.Make(R"(C:\Program Files)");
  PutFile(R"(C:\Program Files\Readme.txt)", "x");
  EXPECT_THAT(machine_.drives.Roots(), ElementsAre("C:\\"));
  EXPECT_EQ(machine_.drives.KindOf("C:\\"), DriveKind::kFixed);
  EXPECT_EQ(machine_.drives.KindOf("Q:\\"), DriveKind::kUnknown);
  EXPECT_GT(machine_.drives.FreeBytes(R"(C:\Program Files)").value_or(0), 0U);
  EXPECT_EQ(machine_.drives.FreeBytes(R"(Q:\none)"), std::nullopt);
  EXPECT_GE(machine_.drives.TotalBytes("C:\\"), machine_.drives.FreeBytes("C:\\"));
  EXPECT_EQ(machine_.drives.TotalBytes(R"(C:\Program Files)"), machine_.drives.TotalBytes("C:\\"));
  EXPECT_EQ(machine_.drives.TotalBytes("Q:\\"), std::nullopt);
  EXPECT_EQ(machine_.drives.LongPath(R"(C:\PROGRAM FILES\readme.TXT)"), R"(C:\Program Files\Readme.txt)");
  EXPECT_EQ(machine_.drives.LongPath(R"(C:\none)"), "");
  EXPECT_EQ(machine_.drives.ShortPath(R"(C:\none)"), "");
}

}  // namespace

}  // namespace ondura
