#include "backupset/CompareList.h"

#include "backup_set_house.h"
#include "text/text.h"
#include "util/date_text.h"

namespace ondura {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kFirstPart = "TempCom\\CompareListInput1.txt";
constexpr std::string_view kStamps = "/11-14-2026 12:30:00/11-14-2026 13:30:00/11-14-2026 11:30:00\r\n";

struct Build : BackupSetHouse {
  explicit Build(std::int64_t lines_per_part = CompareList::kLinesPerPart)
      : list{machine.machine(), installation, transfer, exclusions, drives, stop, trace, lines_per_part} {}

  void PutFile(const std::string& path, std::string_view bytes = "12345") { machine.PutFile(path, bytes); }
  void PutFiles(int count) {
    for (int i = 0; i < count; ++i) PutFile("C:\\docs\\" + std::to_string(i));
  }
  WalkOutcome Walk(std::string path, ItemKind kind = ItemKind::kFolder) {
    return list.WalkItem({std::move(path), kind});
  }
  // The paths of a part's lines.
  std::vector<std::string> Paths(std::string_view part = kFirstPart) {
    std::vector<std::string> paths;
    for (const auto& line : LinesOf(List(part))) paths.push_back(line.substr(0, line.find('/')));
    return paths;
  }

  // A whole list, of all files below the folder.
  std::vector<std::string> Collect(const char* folder = "C:\\docs") {
    list.Begin();
    EXPECT_EQ(Walk(folder), WalkOutcome::kDone);
    list.Finish();
    return Paths();
  }

  MappedDrives drives{machine.machine().drives, transfer};
  CompareList list;
};

TEST(CompareList, WritesPathSizeAndThreeStampsForEachFileBelowTheItem) {
  Build build;
  build.PutFile("C:\\docs\\sub\\b.txt", "");
  build.PutFile("C:\\docs\\Käse 𝄞.txt");
  build.PutFile("C:\\docs\\t\xED\xA0\x80");  // half of a pair, which Windows allows in a name
  build.machine.disk().SetModified("C:\\docs\\sub\\b.txt", ToLocalTime({2027, 1, 1, 0, 5, 9}));
  build.PutFile("C:\\data\\Acmeann\\CompareListInput.txt");
  build.PutFile("C:\\data\\Acmeann\\TempCom\\CompareListInput7.txt");
  build.PutList("SkippedFiles.txt", "C:\\of\\an\\earlier\\run\r\n");
  build.Collect();
  EXPECT_EQ(build.List(kFirstPart),
            "C:\\docs\\Käse 𝄞.txt/5" + std::string{kStamps} + "C:\\docs\\t\xED\xA0\x80/5" +
                std::string{kStamps} +
                "C:\\docs\\sub\\b.txt/0/01-01-2027 00:05:09/01-01-2027 01:05:09/12-31-2026 23:05:09\r\n");
  EXPECT_THAT(build.machine.FilesUnder(build.UserFile("TempCom")), ElementsAre(build.UserFile(kFirstPart)));
  EXPECT_EQ(build.List("CompareListInput.txt"), "(no file)");
  EXPECT_EQ(build.List("SkippedFiles.txt"), "") << "a job that ended early may have left its own";
  EXPECT_EQ(build.List("TotalDisplaySize.txt"), "0\r\n3\r\n");
}

TEST(CompareList, ReadsBreadthFirstAndRepairsABlankBeforeABackslashInTheFolderText) {
  Build build;
  build.PutFile("C:\\docs\\a \\deep\\1");
  build.PutFile("C:\\docs\\b\\2");
  EXPECT_THAT(build.Collect(), ElementsAre("C:\\docs\\b\\2", "C:\\docs\\a\\deep\\1"));
}

TEST(CompareList, SkipsPathsOfMoreThan256UnitsInBothFilesAndFilesWithoutAStamp) {
  Build build;
  const std::string folder = "C:\\docs\\";
  const std::string fits = folder + std::string(244, 'x') + "𝄞é.";
  const std::string too_long = fits + "y";
  ASSERT_EQ(Utf16Length(fits), 256U);
  build.PutFile(fits);
  build.PutFile(too_long);
  build.PutFile(folder + "z");
  build.machine.disk().SetModified(folder + "z", ToLocalTime({9999, 12, 31, 23, 30, 0}));
  EXPECT_THAT(build.Collect(), ElementsAre(fits, too_long));
  EXPECT_EQ(build.List("SkippedFiles.txt"), too_long + "\r\n" + folder + "z\r\n");
  EXPECT_EQ(build.list.skipped(), 2);
}

struct PartCase {
  const char* story;
  int files, waited_ms;
  const char* endings;  // null without an automatic selection
  const char* lines;    // of each part, as digits
  const char *status_check_count, *total;
};

constexpr PartCase kPartCases[] = {{"an empty folder", 0, 0, nullptr, "0", "", "0\r\n0\r\n"},
                                   {"a full part needs no second one", 3, 0, nullptr, "3", "", "0\r\n3\r\n"},
                                   {"one line more opens it", 4, 2000, nullptr, "31", "1", "0\r\n1\r\n"},
                                   {"each part is announced", 8, 4000, nullptr, "332", "2", "0\r\n2\r\n"},
                                   {"with endings the size counts earlier parts again", 7, 2002,
                                    "1\r\n1\r\n3\r\n5\r\n4\r\n", "31", "1", "35\r\n4\r\n"},
                                   {"no endings behind the flag take all", 2, 0, "0", "2", "", "0\r\n2\r\n"}};

TEST(CompareList, OpensAnotherPartForTheLineThatDoesNotFit) {
  for (const PartCase& row : kPartCases) {
    SCOPED_TRACE(row.story);
    Build build{3};
    build.PutFiles(row.files);
    if (row.endings) build.PutFile("C:\\data\\Acmeann\\AutoFileSelection.txt", row.endings);
    build.list.Begin();
    EXPECT_EQ(build.list.HasAutomaticSelection(), row.endings != nullptr);
    build.Walk("C:\\docs");
    build.list.Finish();
    std::string lines;
    for (std::int64_t part = 1; part <= build.list.parts(); ++part) {
      lines +=
          std::to_string(build.Paths("TempCom\\CompareListInput" + std::to_string(part) + ".txt").size());
    }
    EXPECT_EQ(lines, row.lines);
    EXPECT_EQ(build.Profile("BackupStatus", "StatusCheckCount"), row.status_check_count);
    EXPECT_EQ(build.Profile("BackupStatus", "CompareListCount"), lines.size() > 1 ? "1" : "");
    EXPECT_EQ(build.List("TotalDisplaySize.txt"), row.total);
    EXPECT_EQ(build.machine.Elapsed().count(), row.waited_ms);
  }
}

TEST(CompareList, TakesOnlyNamesWithAnEndingAndOnlyFromFixedDrives) {
  Build build;
  build.machine.disk().PutDrive("d:\\", DriveKind::kFixed, 1);
  build.machine.disk().PutDrive("E:\\", DriveKind::kNetwork, 1);
  for (const char* path : {"d:\\a.doc", "d:\\b.DOC", "d:\\c.doc.bak", "E:\\e.doc"}) build.PutFile(path);
  build.PutFile("C:\\data\\Acmeann\\AutoFileSelection.txt", "1\r\n.doc\r\n.bak\r\n");
  build.list.Begin();
  ASSERT_TRUE(build.list.HasAutomaticSelection());
  EXPECT_EQ(build.list.WalkFixedDrives(), WalkOutcome::kDone);
  build.list.Finish();
  EXPECT_THAT(build.Paths(), ElementsAre("D:\\a.doc", "D:\\c.doc.bak"));
  EXPECT_EQ(build.list.size_bytes(), 10);
}

TEST(CompareList, LeavesOutWhatIsExcludedAndNotesEachEntryOnce) {
  Build build;
  for (const char* name : {"keep", "drop", "tmp\\1", "tmp2\\2"})
    build.PutFile("C:\\docs\\" + std::string{name});
  build.PutList("atbkupExcludelist.txt", "c:\\docs\\TMP\r\n");
  build.PutList("atbkupExcludeFilePath.txt", "C:\\DOCS\\drop\r\n");
  build.exclusions.Load();
  build.list.Begin();
  build.Walk("C:\\docs");
  build.Walk("C:\\docs\\drop", ItemKind::kFile);
  build.Walk("C:\\docs\\tmp\\1", ItemKind::kFile);
  build.list.Finish();
  EXPECT_THAT(build.Paths(), ElementsAre("C:\\docs\\keep", "C:\\docs\\tmp2\\2", "C:\\docs\\tmp\\1"));
  EXPECT_THAT(build.exclusions.Applied(), ElementsAre("C:\\DOCS\\drop", "c:\\docs\\TMP"));
  EXPECT_EQ(build.List("TotalDisplaySize.txt"), "0\r\n3\r\n");
}

struct StopCase {
  const char* story;
  int stop_at_pump;
  bool by_flag;
  const char* endings;
  std::size_t lines;
};

constexpr StopCase kStopCases[] = {{"behind the first file", 1, false, "1", 1},
                                   {"behind the third file, by the host", 3, true, "1", 3},
                                   {"behind the folder", 5, false, "1", 4},
                                   {"behind the last file of all", 6, true, "1", 5},
                                   {"with endings behind the folder alone", 1, false, "1\r\n\r\n", 4}};

TEST(CompareList, StopsBehindTheEntryAndKeepsItsLines) {
  for (const StopCase& row : kStopCases) {
    SCOPED_TRACE(row.story);
    Build build;
    build.PutFiles(4);
    build.PutFile("C:\\docs\\sub\\x");
    build.PutFile("C:\\data\\Acmeann\\AutoFileSelection.txt", row.endings);
    build.list.Begin();
    build.list.HasAutomaticSelection();
    int pumps = 0;
    build.machine.OnPump([&] {
      if (++pumps != row.stop_at_pump) return;
      build.stop_flag = row.by_flag;
      if (!row.by_flag) build.SetProfile("BackupStatus", "Status", "5");
    });
    EXPECT_EQ(build.Walk("C:\\docs"), WalkOutcome::kStopped);
    EXPECT_EQ(build.Paths().size(), row.lines);
    EXPECT_EQ(build.List("TotalDisplaySize.txt"), "(no file)");
  }
}

TEST(CompareList, ReachesTheFileInBlocksWhileItGrows) {
  Build build;
  build.PutFiles(2000);
  std::size_t most_waiting = 0;
  std::size_t written = 0;
  build.machine.OnPump([&] {
    written += (9 + 2 + kStamps.size()) * 2;
    const std::size_t there = build.machine.FileBytes(build.UserFile(kFirstPart))->size();
    most_waiting = std::max(most_waiting, written - std::min(written, there));
  });
  build.Collect();
  EXPECT_GT(most_waiting, 32U * 1024);
  EXPECT_LE(most_waiting, 64U * 1024);
}

TEST(CompareList, LetsTheEngineReadWhatHasWaitedForASecondThoughNoLineComes) {
  Build build;
  for (const char* path : {"C:\\docs\\1", "C:\\docs\\2", "C:\\docs\\none\\none"}) build.PutFile(path);
  std::vector<std::size_t> lines;
  build.list.Begin();
  build.machine.OnPump([&] {
    lines.push_back(build.Paths().size());
    build.machine.Advance(std::chrono::milliseconds{600});
  });
  build.Walk("C:\\docs");
  EXPECT_THAT(lines, ElementsAre(1, 1, 2, 2));
  build.machine.Advance(std::chrono::milliseconds{2000});
  build.Walk("C:\\docs\\1", ItemKind::kFile);
  EXPECT_EQ(lines.back(), 4U) << "a file that was chosen alone";
}

struct FailureCase {
  const char *story, *fault, *path;
  int lines_per_part;
  std::size_t lines;
};

constexpr FailureCase kFailureCases[] = {
    {"it can't be opened", "Files.OpenAppender", "CompareListInput1.txt", 9, 0},
    {"the disk is full in its middle", "FileWriter.Append", "CompareListInput1.txt", 9, 0},
    {"its second part can't be opened", "Files.OpenAppender", "CompareListInput2.txt", 2, 2}};

TEST(CompareList, StopsAtTheFirstWriteThatFailsAndSaysSoOnce) {
  for (const FailureCase& row : kFailureCases) {
    SCOPED_TRACE(row.story);
    Build build{row.lines_per_part};
    build.PutFiles(5);
    build.machine.Fail(std::string{row.fault} + "*" + row.path);
    build.list.Begin();
    EXPECT_EQ(build.Walk("C:\\docs"), WalkOutcome::kFailed);
    build.list.Finish();
    EXPECT_TRUE(build.list.failed());
    EXPECT_EQ(build.Paths().size(), row.lines);
    EXPECT_EQ(build.List("TotalDisplaySize.txt"), "(no file)");
    const std::string trace = build.List("ScheduleTraceFile.txt");
    EXPECT_EQ(Split(trace, "The compare list can't be written").size(), 2U) << trace;
  }
}

TEST(CompareList, LeavesOutWhatItCannotReadAndNamesIt) {
  Build build;
  build.PutFile("C:\\docs\\shut\\1");
  build.PutFile("C:\\docs\\link");
  build.machine.disk().SetLeadsOffDrive("C:\\docs\\link");
  build.machine.disk().SetRefusing("C:\\docs\\shut", true);
  build.list.Begin();
  build.Walk("C:\\docs");
  build.Walk("C:\\gone", ItemKind::kFile);
  build.Walk("", ItemKind::kFile);
  build.list.Finish();
  EXPECT_THAT(build.Paths(), IsEmpty());
  EXPECT_THAT(
      Split(build.List("ScheduleTraceFile.txt"), "Left out, because "),
      ElementsAre(testing::_, testing::StartsWith("it is a link that leads off its drive : C:\\docs\\link"),
                  testing::StartsWith("the folder can't be listed : C:\\docs\\shut\\"),
                  testing::StartsWith("the file can't be read : C:\\gone")));
}

TEST(StatusStopCheck, ReadsTheProfileOnlyWhenItChangesAndSeesAWriteAtOnce) {
  BackupSetHouse house;
  house.SetProfile("BackupStatus", "Status", "1");
  for (int i = 0; i < 50; ++i) EXPECT_FALSE(house.stop.Stopped());
  const auto reads = [&] { return house.machine.CallsMatching("ProfileFiles.ReadString").size(); };
  const auto reads_before = reads();
  EXPECT_LE(reads_before, 2U);
  house.SetProfile("BackupStatus", "Status", "5");
  EXPECT_TRUE(house.stop.Stopped());
  EXPECT_EQ(reads(), reads_before + 1);
  house.installation.CurrentUser = "bob";
  EXPECT_FALSE(house.stop.Stopped());
}

TEST(StampText, AgreesWithThePictureOnDaysThatShareAPlace) {
  StampText stamps;
  for (std::int16_t mode = 0; mode < 4; ++mode) {
    stamps.SetMode(mode);
    for (std::int64_t hours = -5'000'000; hours < 5'000'000; hours += 6'143) {
      const LocalTime time = LocalTime{std::chrono::hours{hours}} + std::chrono::seconds{hours % 3'600};
      std::u16string text(StampText::kUnits, u'?');
      EXPECT_EQ(stamps.Write(time, text.data()), text.data() + text.size());
      ASSERT_EQ(std::string(text.begin(), text.end()), FormatDate("mm-dd-yyyy HH:MM:SS", time));
    }
  }
  EXPECT_TRUE(StampText::IsStampable(ToLocalTime({9999, 12, 31, 22, 59, 59})));
  EXPECT_FALSE(StampText::IsStampable(ToLocalTime({9999, 12, 31, 23, 0, 0})));
  EXPECT_FALSE(StampText::IsStampable(ToLocalTime({100, 1, 1, 0, 59, 59})));
}

}  // namespace
}  // namespace ondura
