#include <gmock/gmock.h>

#include "contract.h"

namespace ondura {

namespace {

using testing::ElementsAre;
using testing::Optional;
using testing::UnorderedElementsAre;

TEST_P(PlatformContract, AFileIsFoundUnderEveryFormOfItsPath) {
  ASSERT_TRUE(machine_.folders.Make(At("Data")));
  PutFile(At(R"(Data\Report.txt)"), "seven 7");
  for (const std::string& path :
       {At(R"(Data\Report.txt)"), At(R"(data\REPORT.TXT)"), At(R"(\Data\\Report.txt)"),
        root_ + "/Data/Report.txt", At(R"(Data\.\Report.txt)")}) {
    EXPECT_TRUE(machine_.files.Exists(path)) << path;
    EXPECT_THAT(machine_.files.Read(path), Optional(std::string{"seven 7"})) << path;
    EXPECT_THAT(machine_.files.Size(path), Optional(7U)) << path;
  }
}

TEST_P(PlatformContract, WritingUnderAnotherLetterCaseMakesNoSecondFile) {
  PutFile(At("Status.txt"), "old");
  PutFile(At("STATUS.TXT"), "new");
  EXPECT_TRUE(machine_.files.Append(At("status.txt"), "er", IfMissing::kCreate));
  EXPECT_THAT(NamesIn(machine_, At("")), ElementsAre("Status.txt"));
  EXPECT_THAT(machine_.files.Read(At("Status.txt")), Optional(std::string{"newer"}));
  PutFile(At("Übersicht Ж.txt"), "x");
  EXPECT_TRUE(machine_.files.Exists(At("übersicht ж.TXT")));
}

TEST_P(PlatformContract, NothingIsNoFileAndAFolderIsNone) {
  ASSERT_TRUE(machine_.folders.Make(At("Folder")));
  for (const std::string& path : {At("missing"), At(R"(missing\deeper)"), At("Folder"), std::string{},
                                  std::string{"missing"}, std::string{R"(Q:\x)"}}) {
    EXPECT_FALSE(machine_.files.Exists(path)) << path;
    EXPECT_EQ(machine_.files.Size(path), std::nullopt) << path;
    EXPECT_EQ(machine_.files.Modified(path), std::nullopt) << path;
    EXPECT_EQ(machine_.files.Read(path), std::nullopt) << path;
    EXPECT_EQ(machine_.files.ReadPart(path, 0, 5), std::nullopt) << path;
    EXPECT_FALSE(machine_.files.Patch(path, 0, "x")) << path;
    EXPECT_FALSE(machine_.files.Append(path, "x", IfMissing::kFail)) << path;
    EXPECT_FALSE(machine_.files.Remove(path, Removal::kForce)) << path;
    EXPECT_FALSE(machine_.files.Copy(path, At("copy"))) << path;
  }
  EXPECT_FALSE(machine_.files.Write(At(R"(missing\deeper)"), "x", IfPresent::kReplace));
}

TEST_P(PlatformContract, AWriteReplacesOrRefusesAsItWasTold) {
  EXPECT_TRUE(machine_.files.Write(At("a"), "longer text", IfPresent::kFail));
  EXPECT_FALSE(machine_.files.Write(At("A"), "x", IfPresent::kFail));
  EXPECT_TRUE(machine_.files.Write(At("a"), "short", IfPresent::kReplace));
  EXPECT_THAT(other_.files.Read(At("a")), Optional(std::string{"short"}));
  // What an earlier process left when it was killed on its way to "a".
  PutFile(At(std::string{kNewContentPrefix} + "a"), "half of a long te");
  EXPECT_TRUE(machine_.files.Write(At("A"), "", IfPresent::kReplace));
  EXPECT_THAT(other_.files.Read(At("a")), Optional(std::string{}));
  EXPECT_TRUE(machine_.files.Write(At("a"), "new", IfPresent::kReplace));
  EXPECT_THAT(other_.files.Read(At("a")), Optional(std::string{"new"}));
  EXPECT_THAT(NamesIn(machine_, At("")), ElementsAre("a"));
}

TEST_P(PlatformContract, BytesSurviveWhateverTheyAre) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  PutFile(At("bytes"), bytes);
  EXPECT_THAT(machine_.files.Read(At("bytes")), Optional(bytes));
  EXPECT_THAT(machine_.files.ReadTrusted(At("bytes")), Optional(bytes)) << "the file of this account";
  EXPECT_EQ(machine_.files.ReadTrusted(At("none")), std::nullopt);
  EXPECT_THAT(machine_.files.ReadHead(At("bytes"), 5), Optional(bytes.substr(0, 5)));
  for (const std::uint64_t offset : {0, 9, 253, 256}) {
    EXPECT_THAT(machine_.files.ReadPart(At("bytes"), offset, 5), Optional(bytes.substr(offset, 5)));
  }
  EXPECT_THAT(machine_.files.ReadPart(At("bytes"), 300, 5), Optional(std::string{}));
}

TEST_P(PlatformContract, APatchLeavesTheRestOfTheFile) {
  PutFile(At("schedule"), "1\r\nrest");
  EXPECT_TRUE(machine_.files.Patch(At("schedule"), 0, "0"));
  EXPECT_TRUE(machine_.files.Patch(At("schedule"), 6, "t and more"));
  EXPECT_THAT(machine_.files.Read(At("schedule")), Optional(std::string{"0\r\nrest and more"}));
}

TEST_P(PlatformContract, AWriterStartsOverAndAnAppenderGoesOn) {
  PutFile(At("list"), "old");
  {
    const auto writer = machine_.files.OpenWriter(At("list"), IfPresent::kReplace);
    ASSERT_NE(writer, nullptr);
    EXPECT_TRUE(writer->Append("a") && writer->Append("b"));
    EXPECT_THAT(other_.files.Read(At("list")), Optional(std::string{"ab"})) << "readers see it grow";
  }
  const auto appender = machine_.files.OpenAppender(At("list"), IfMissing::kFail);
  ASSERT_NE(appender, nullptr);
  EXPECT_TRUE(appender->Append("c"));
  EXPECT_THAT(machine_.files.Read(At("list")), Optional(std::string{"abc"}));
  EXPECT_EQ(machine_.files.OpenAppender(At("none"), IfMissing::kFail), nullptr);
  EXPECT_EQ(machine_.files.OpenWriter(At(R"(none\none)"), IfPresent::kReplace), nullptr);
}

TEST_P(PlatformContract, ACopyHasTheSameBytesAndTimeAndNeverEatsItsSource) {
  PutFile(At("from"), "content");
  PutFile(At("to"), "a longer old content");
  EXPECT_TRUE(machine_.files.Copy(At("from"), At("to")));
  EXPECT_THAT(machine_.files.Read(At("to")), Optional(std::string{"content"}));
  EXPECT_EQ(machine_.files.Modified(At("to")), machine_.files.Modified(At("from")));
  machine_.files.Copy(At("from"), At("FROM"));
  EXPECT_THAT(machine_.files.Read(At("from")), Optional(std::string{"content"}));
}

TEST_P(PlatformContract, AFreshFileCarriesThePresentLocalTime) {
  const LocalTime before = machine_.clock.Now();
  PutFile(At("now"), "x");
  const auto modified = machine_.files.Modified(At("now"));
  ASSERT_TRUE(modified.has_value());
  EXPECT_GE(*modified, before - std::chrono::seconds{1});
  EXPECT_LE(*modified, machine_.clock.Now());
}

TEST_P(PlatformContract, AFolderIsMadeOnceAndUnderItsParentOnly) {
  EXPECT_TRUE(machine_.folders.Make(At("one")));
  EXPECT_FALSE(machine_.folders.Make(At("ONE")));
  EXPECT_FALSE(machine_.folders.Make(At(R"(two\three)")));
  EXPECT_TRUE(machine_.folders.Make(At(R"(one\three\)")));
  for (const std::string& path : {drive_, drive_ + "\\", At("One"), At(R"(one\)"), At(R"(ONE\three)")}) {
    EXPECT_TRUE(machine_.folders.Exists(path)) << path;
  }
  PutFile(At("file"), "");
  EXPECT_FALSE(machine_.folders.Exists(At("file")));
  EXPECT_FALSE(machine_.folders.Exists(At("two")));
}

TEST_P(PlatformContract, AListingShowsEachEntryOnceWithSizeAndTime) {
  for (const char* folder : {"d", "dd", R"(d\sub)", R"(d\sub\deep)"}) machine_.folders.Make(At(folder));
  PutFile(At(R"(d\a.txt)"), "12345");
  for (const char* file : {"d\\Zażółć.txt", R"(d\sub-1)", R"(d\sub\deep\x)", R"(dd\no)"})
    PutFile(At(file), "");
  EXPECT_THAT(NamesIn(machine_, At(R"(D\)")), UnorderedElementsAre("sub\\", "sub-1", "a.txt", "Zażółć.txt"));
  machine_.folders.List(At("d"), [&](const FolderEntry& entry) {
    EXPECT_EQ(entry.size_bytes, entry.name == "a.txt" ? 5U : 0U);
    if (entry.name == "a.txt") {
      EXPECT_EQ(entry.modified, machine_.files.Modified(At(R"(d\a.txt)")));
    }
    return Visit::kContinue;
  });
  int visits = 0;
  EXPECT_TRUE(machine_.folders.List(At("d"), [&](const FolderEntry&) { return ++visits, Visit::kStop; }));
  EXPECT_EQ(visits, 1);
  EXPECT_FALSE(machine_.folders.List(At("none"), [](const FolderEntry&) { return Visit::kContinue; }));
}

TEST_P(PlatformContract, ALinkToAFolderIsNotShownInItsFolderAndIsAWayThere) {
  machine_.folders.Make(At("d"));
  PutFile(At(R"(d\a)"), "x");
  if (!tested_->PutFolderLink(At(R"(d\round)"), At("d"))) return;
  EXPECT_THAT(NamesIn(machine_, At("d")), ElementsAre("a"));
  EXPECT_THAT(NamesIn(machine_, At(R"(d\round)")), ElementsAre("a"));
  EXPECT_THAT(machine_.files.Read(At(R"(d\round\a)")), Optional(std::string{"x"}));
}

TEST_P(PlatformContract, ALongPathWorksLikeAnyOther) {
  const std::string level = "\\a folder with a rather long name";
  std::string deep = root_;
  while (deep.size() < tested_->long_path()) {
    deep += level;
    ASSERT_TRUE(machine_.folders.Make(deep)) << deep.size();
  }
  // The form without a limit knows neither slashes nor doubled separators nor dots on Windows.
  const std::string file = deep + "\\\\./File.txt";
  PutFile(file, "deep");
  EXPECT_TRUE(machine_.files.Append(file, "er", IfMissing::kFail));
  EXPECT_TRUE(machine_.files.Patch(deep + "/FILE.txt", 0, "D"));
  EXPECT_TRUE(machine_.files.Copy(file, deep + "\\copy"));
  EXPECT_THAT(machine_.files.Read(deep + "\\COPY"), Optional(std::string{"Deeper"}));
  EXPECT_TRUE(machine_.files.Remove(deep + "\\copy", Removal::kPlain));
  EXPECT_THAT(NamesIn(machine_, deep + "\\"), ElementsAre("File.txt"));
  EXPECT_EQ(machine_.drives.LongPath(deep + "/FILE.txt"), deep + "\\File.txt");
  EXPECT_TRUE(machine_.watches.Watch(file)->MayHaveChanged());
  EXPECT_TRUE(machine_.folders.Remove(root_ + level, Removal::kForce));
}

TEST_P(PlatformContract, NothingIsFoundByAWildcard) {
  machine_.folders.Make(At("one"));
  for (const char* name : {"on?", "o*", "?ne"}) {
    EXPECT_EQ(machine_.drives.LongPath(At(name)), "") << name;
    EXPECT_EQ(machine_.drives.ShortPath(At(name)), "") << name;
    EXPECT_THAT(NamesIn(machine_, At(name)), ElementsAre()) << name;
  }
}

TEST_P(PlatformContract, FilesMadeOneAfterTheOtherAreFoundInAnyLetterCaseByEverybody) {
  for (int i = 0; i < 30; ++i) {
    const std::string number = std::to_string(i);
    PutFile(At("own" + number), "1");
    EXPECT_TRUE(other_.files.Write(At("foreign" + number), "2", IfPresent::kFail));
    EXPECT_FALSE(machine_.files.Write(At("OWN" + number), "x", IfPresent::kFail));
  }
  machine_.clock.Sleep(std::chrono::milliseconds{250});
  for (int i = 0; i < 30; ++i) EXPECT_TRUE(machine_.files.Exists(At("FOREIGN" + std::to_string(i)))) << i;
}

TEST_P(PlatformContract, RemovingAFolderTakesAllItHoldsAndNothingElse) {
  machine_.folders.Make(At("d"));
  machine_.folders.Make(At(R"(d\sub)"));
  PutFile(At(R"(d\sub\a)"), "x");
  PutFile(At("stays"), "x");
  EXPECT_TRUE(machine_.folders.Remove(At("D"), Removal::kForce));
  EXPECT_FALSE(machine_.folders.Remove(At("d"), Removal::kForce));
  EXPECT_FALSE(machine_.folders.Remove(At("stays"), Removal::kForce)) << "a file is no folder";
  EXPECT_THAT(NamesIn(machine_, At("")), ElementsAre("stays"));
}

TEST_P(PlatformContract, OnlyForceRemovesWhatIsProtected) {
  machine_.folders.Make(At("d"));
  for (const std::string& path : {At("kept"), At(R"(d\kept)")}) {
    PutFile(path, "x");
    tested_->Protect(path);
    EXPECT_FALSE(machine_.files.Remove(path, Removal::kPlain));
  }
  EXPECT_FALSE(machine_.folders.Remove(At("d"), Removal::kPlain));
  EXPECT_THAT(NamesIn(machine_, At("")), UnorderedElementsAre("d\\", "kept"));
  EXPECT_TRUE(machine_.files.Remove(At("KEPT"), Removal::kForce));
  EXPECT_TRUE(machine_.folders.Remove(At("d"), Removal::kForce));
}

TEST_P(PlatformContract, DrivesAndLongPathsTellTheMachinesOwnNames) {
  machine_.folders.Make(At("Program Files"));
  PutFile(At(R"(Program Files\Readme.txt)"), "x");
  const std::string own = drive_ + "\\";
  EXPECT_THAT(machine_.drives.Roots(), testing::Contains(own));
  EXPECT_EQ(machine_.drives.KindOf(own), DriveKind::kFixed);
  EXPECT_EQ(machine_.drives.KindOf("Q:\\"), DriveKind::kUnknown);
  EXPECT_GT(machine_.drives.FreeBytes(At("Program Files")).value_or(0), 0U);
  EXPECT_EQ(machine_.drives.FreeBytes(R"(Q:\none)"), std::nullopt);
  EXPECT_GE(machine_.drives.TotalBytes(own), machine_.drives.FreeBytes(own));
  EXPECT_EQ(machine_.drives.TotalBytes(At("Program Files")), machine_.drives.TotalBytes(own));
  EXPECT_EQ(machine_.drives.TotalBytes("Q:\\"), std::nullopt);
  EXPECT_EQ(machine_.drives.LongPath(At(R"(PROGRAM FILES\readme.TXT)")), At(R"(Program Files\Readme.txt)"));
  EXPECT_EQ(machine_.drives.LongPath(At("none")), "");
  EXPECT_EQ(machine_.drives.ShortPath(At("none")), "");
}

}  // namespace

}  // namespace ondura
