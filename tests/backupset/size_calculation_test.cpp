#include "backupset/SizeCalculation.h"

#include <map>

#include "backup_set_house.h"
#include "backupset/long_path.h"
#include "text/text.h"

namespace ondura {
namespace {

using testing::IsEmpty;

std::string Bytes(std::size_t count) { return std::string(count, 'x'); }

struct Sizes : BackupSetHouse {
  Sizes() {
    // C: keeps the lists themselves; what is measured lies on a fixed, a removable and a floppy drive.
    machine.disk().PutDrive("E:\\", DriveKind::kFixed, 10'000);
    machine.disk().PutDrive("F:\\", DriveKind::kRemovable, 10'000);
    machine.disk().PutDrive("A:\\", DriveKind::kFixed, 100);
    Put({{"E:\\d\\a", 10}, {"E:\\d\\s\\b", 20}, {"E:\\d\\s\\t\\c", 5}, {"E:\\dd\\z", 7}, {"E:\\one.txt", 3}});
    Put({{"F:\\m", 3}, {"F:\\f\\n", 4}, {"F:\\f\\g\\o", 5}, {"A:\\x", 50}});
    Put({{"E:\\d\\link", 90}});
    machine.disk().SetLeadsOffDrive("E:\\d\\link");
    machine.disk().SetShortPath("E:\\dd", "E:\\D~1");
    machine.disk().SetTotalBytes("E:\\", *machine.outside().drives.FreeBytes("E:\\") + 600);
  }

  void Put(const std::map<std::string, std::size_t>& files) {
    for (const auto& [path, size] : files) machine.PutFile(path, Bytes(size));
  }
  void PutLists(std::string_view items, std::string_view folders, std::string_view files = "") {
    PutList("atbkupfolderlist.txt", items);
    PutList("atbkupExcludelist.txt", folders);
    PutList("atbkupExcludeFilePath.txt", files);
  }
  SizeOutcome Calculate(const SizeJob& job = {}) { return calculation.CalculateTotalSize(job); }

  SizeCalculation calculation{machine.machine(), installation, stop};
};

struct SizeCase {
  const char* story;
  const char* items;
  const char* output;        // OutputSize.txt
  const char* totals;        // TotalDisplaySize.txt
  const char* folders = "";  // excluded
  const char* files = "";    // excluded
};

constexpr SizeCase kSizeCases[] = {
    {"an empty list", "", "", "0\r\n0\r\n"},
    {"a folder with and without its backslash", "E:\\d\\\r\nE:\\dd", "E:\\d\\\r\n35\r\nE:\\dd\r\n7\r\n",
     "42\r\n4\r\n"},
    {"a fixed drive in both forms holds what its volume has in use", "E:\r\nE:\\",
     "E:\r\n600\r\nE:\\\r\n600\r\n", "1200\r\n10\r\n"},
    {"another drive holds what its files add up to", "f:", "f:\r\n12\r\n", "12\r\n3\r\n"},
    {"a drive that is not ready", "Q:", "Q:\r\n0\r\n", "0\r\n0\r\n"},
    {"a file", "E:\\one.txt", "E:\\one.txt\r\n3\r\n", "3\r\n1\r\n"},
    {"a missing file counts, a missing folder does not", "E:\\no\r\nE:\\no\\",
     "E:\\no\r\n0\r\nE:\\no\\\r\n0\r\n", "0\r\n1\r\n"},
    {"a blank line is an item without a size", "\r\nE:\\one.txt", "\r\n0\r\nE:\\one.txt\r\n3\r\n",
     "3\r\n1\r\n"},
    {"a file below Root is passed over", "Root\\x\r\nE:\\one.txt", "E:\\one.txt\r\n3\r\n", "3\r\n1\r\n"},

    {"the item itself is excluded", "E:\\dd\r\nE:\\d", "E:\\dd\r\n7\r\nE:\\d\r\n35\r\n", "7\r\n1\r\n",
     "e:\\D\\"},
    {"a folder in the item", "E:\\d", "E:\\d\r\n35\r\n", "10\r\n1\r\n", "E:\\d\\s"},
    {"a longer name beside the item", "E:\\d", "E:\\d\r\n35\r\n", "35\r\n3\r\n", "E:\\dd"},
    {"a shorter name beside the item", "E:\\dd", "E:\\dd\r\n7\r\n", "7\r\n1\r\n", "E:\\d"},
    {"an item in an excluded folder loses all of that folder", "E:\\dd\r\nE:\\d\\s",
     "E:\\dd\r\n7\r\nE:\\d\\s\r\n25\r\n", "0\r\n0\r\n", "E:\\d"},
    {"a file in an excluded folder loses itself besides", "E:\r\nE:\\d\\a", "E:\r\n600\r\nE:\\d\\a\r\n10\r\n",
     "530\r\n0\r\n", "E:\\d"},
    {"of nested exclusions both sizes go and each file once", "E:\\d", "E:\\d\r\n35\r\n", "5\r\n1\r\n",
     "E:\\d\\s\r\nE:\\d\\s\\t"},
    {"an exclusion listed twice counts its files once", "E:\\d\\", "E:\\d\\\r\n35\r\n", "25\r\n2\r\n",
     "E:\\d\\s\\t\r\nE:\\D\\S\\T\\"},
    {"a file that stands among the folders", "E:\\one.txt", "E:\\one.txt\r\n3\r\n", "0\r\n0\r\n",
     "E:\\one.txt"},
    {"a whole drive", "E:\\", "E:\\\r\n600\r\n", "0\r\n0\r\n", "E:"},
    {"a short name", "E:\\dd", "E:\\dd\r\n7\r\n", "0\r\n0\r\n", "E:\\D~1"},
    {"what is not there, and a blank line", "E:\\d", "E:\\d\r\n35\r\n", "35\r\n3\r\n", "\r\nE:\\d\\no"},

    {"only marked files go, each once", "E:\\d", "E:\\d\r\n35\r\n", "25\r\n2\r\n", "",
     "E:\\d\\a,1\r\nE:\\d\\s\\b,0\r\nE:\\D\\A 1\r\nE:\\dd\\z,1\r\n1"},
    {"a file in a folder that goes anyhow", "E:\\d", "E:\\d\r\n35\r\n", "10\r\n1\r\n", "E:\\d\\s",
     "E:\\d\\s\\b,1"},
    {"a file that is the item, and one whose name begins so", "E:\\one.txt", "E:\\one.txt\r\n3\r\n",
     "0\r\n0\r\n", "", "E:\\one.txt,1\r\nE:\\one.txt.bak,1"}};

TEST(CalculateTotalSize, TellsEachItemAndTheTotalsWithoutWhatIsExcluded) {
  for (const SizeCase& row : kSizeCases) {
    SCOPED_TRACE(row.story);
    Sizes house;
    house.PutLists(row.items, row.folders, row.files);
    EXPECT_EQ(house.Calculate(), SizeOutcome::kDone);
    EXPECT_EQ(house.List("OutputSize.txt"), row.output);
    EXPECT_EQ(house.List("TotalDisplaySize.txt"), row.totals);
    EXPECT_EQ(house.List("atbkupExcludelistSize.txt"), "(no file)");
  }
}

TEST(CalculateTotalSize, AddsUpAllDrivesButTheFloppy) {
  Sizes house;
  house.machine.disk().RemoveDrive("C:\\");
  house.installation.VirtualPath = "F:\\";
  house.PutLists("My Computer", "E:\\d\r\nF:\\f");
  house.machine.disk().SetRefusing("F:\\Acmeann", true);
  house.Calculate();
  EXPECT_EQ(house.List("OutputSize.txt"), "My Computer\r\n612\r\n");
  EXPECT_EQ(house.List("TotalDisplaySize.txt"), "568\r\n3\r\n");
  EXPECT_THAT(house.machine.CallsMatching("Folders.List A:"), IsEmpty());
}

TEST(CalculateTotalSize, WalksAFolderThatCannotBeReadWhole) {
  Sizes house;
  house.machine.disk().SetRefusing("E:\\d\\s\\t", true);
  house.PutLists("E:\\d\r\nE:\\dd", "E:\\d\\s");
  house.PutList("atbkupExcludelistSize.txt", "of an earlier run\r\n");
  house.Calculate();
  EXPECT_EQ(house.List("atbkupExcludelistSize.txt"), "0\r\n");
  EXPECT_EQ(house.List("OutputSize.txt"), "E:\\d\r\n30\r\nE:\\dd\r\n7\r\n");
  EXPECT_EQ(house.List("TotalDisplaySize.txt"), "37\r\n2\r\n");
}

TEST(CalculateTotalSize, RewritesTheSizesOfTheExclusionsInTheirOrder) {
  Sizes house;
  house.PutLists("", "E:\\d\\s\\\r\nE:\r\n\r\nf:\\\r\nE:\\D~1\r\nE:\\no\r\n");
  house.PutList("atbkupExcludelistSize.txt", "");
  house.Calculate();
  EXPECT_EQ(house.List("atbkupExcludelistSize.txt"), "25\r\n600\r\n0\r\n12\r\n7\r\n0\r\n");
}

TEST(CalculateTotalSize, MeasuresTheDumpsOfAStageAlone) {
  for (const std::string_view recordno : {"2", "3", "4", "5", "1", ""}) {
    SCOPED_TRACE(recordno);
    Sizes house;
    house.PutLists("E:\\dd", "");
    house.machine.disk().SetRefusing("E:\\d\\s\\t", true);
    house.Calculate({JobKindOf(recordno), "E:\\d"});
    const bool is_stage = recordno > "1";
    EXPECT_EQ(house.List("TotalDisplaySize.txt"), is_stage ? "30\r\n2\r\n" : "7\r\n1\r\n");
    EXPECT_EQ(house.List("OutputSize.txt") == "(no file)", is_stage);
  }
}

TEST(CalculateTotalSize, StopsBehindALineAndLeavesTheOldOutput) {
  Sizes house;
  house.PutLists("E:\\d\r\nE:\\dd", "");
  house.PutList("OutputSize.txt", "old");
  house.SetProfile("BackupStatus", "Status", "5");
  EXPECT_EQ(house.Calculate(), SizeOutcome::kStopped);
  EXPECT_EQ(house.machine.CallsMatching("Folders.List E:\\d\\s\\t").size(), 1U);
  EXPECT_THAT(house.machine.CallsMatching("Folders.List E:\\dd"), IsEmpty());
  EXPECT_EQ(house.List("OutputSize.txt"), "old");
  EXPECT_EQ(house.List("TotalDisplaySize.txt"), "(no file)");
}

struct PauseCase {
  const char* story;
  int files;
  int folders;
  const char* items;
  const char* excluded;
  int waited_ms;
};

constexpr PauseCase kPauseCases[] = {
    {"ten entries are few", 10, 0, "E:\\p", "", 0},
    {"eleven are many", 11, 0, "E:\\p", "", 1},
    {"a walk of eleven folders", 0, 10, "E:\\p", "", 2},  // without a size it is walked twice
    {"one of twenty-two, with many entries", 1, 21, "E:\\p", "", 3},
    {"the count of an exclusion of two items", 11, 0, "E:\\p\\0\r\nE:\\p", "E:\\p", 2},
    {"eleven lines", 0, 0, "1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n8\r\n9\r\n0\r\n1\r\n2", "", 1}};

TEST(CalculateTotalSize, PausesOnLongWalksAndLists) {
  for (const PauseCase& row : kPauseCases) {
    SCOPED_TRACE(row.story);
    Sizes house;
    house.machine.PutFolder("E:\\p");
    for (int i = 0; i < row.files; ++i) house.machine.PutFile("E:\\p\\" + std::to_string(i), "x");
    for (int i = 0; i < row.folders; ++i) house.machine.PutFolder("E:\\p\\f" + std::to_string(i));
    house.PutLists(row.items, row.excluded);
    house.Calculate();
    EXPECT_EQ(house.machine.Elapsed().count(), row.waited_ms);
  }
}

// Many items with an exclusion beside each, or all in one folder that is excluded many times; and as many
// that are gone.
TEST(CalculateTotalSize, ReadsEachFolderOnceHoweverManyLinesThereAre) {
  for (const bool in_one_folder : {false, true}) {
    constexpr std::size_t kItems = 500;
    Sizes house;
    std::string items, folders, files;
    for (std::size_t i = 0; i < kItems; ++i) {
      const std::string item = "E:\\x\\" + std::to_string(i);
      house.Put({{item + "\\f", 1}, {item + "\\out\\g", 1}});
      items.append(item).append("\\f\r\n").append(item).append(".gone\r\n");
      folders.append(in_one_folder ? "E:\\X" : item + "\\out").append("\r\n");
      if (!in_one_folder) folders.append(item).append("\r\n");
      files += item + "\\f,1\r\n";
    }
    house.PutLists(items, folders, files);
    house.Calculate();
    EXPECT_EQ(house.machine.CallsMatching("Files.Read *atbkupExclude").size(), 2U);
    EXPECT_EQ(house.machine.CallsMatching("Folders.List").size(),
              in_one_folder ? 2 + 2 * kItems : 1 + 3 * kItems);
    EXPECT_LE(house.machine.Calls().size(), 24 * kItems);
    EXPECT_LE(house.machine.Elapsed().count(), static_cast<int>(kItems)) << "pauses";
  }
}

struct LongPathCase {
  const char* story;
  const char* path;
  const char* long_path;
  const char* rebuilt;  // where the machine can't know the long form
};

constexpr LongPathCase kLongPathCases[] = {
    {"nothing there", "E:\\NO~1\\x", "E:\\NO~1\\x", "E:\\NO~1\\x"},
    {"nothing short", "E:\\D\\A", "E:\\d\\a", "E:\\D\\A"},
    {"folder and file", "E:\\a b~1\\FILE~1.TXT", "E:\\a b c\\file one.txt", "E:\\a b c\\file one.txt"},
    {"a trailing backslash", "E:\\A B~1\\", "E:\\a b c", "E:\\a b c\\"},
    {"a share", "\\\\srv\\sh\\LONG~1\\f", "\\\\srv\\sh\\longer\\f", "\\\\srv\\sh\\longer\\f"},
    {"a sign that is no short name", "E:\\tilde~\\x", "E:\\tilde~\\x", "E:\\tilde~\\x"}};

TEST(GetLongPath, AsksTheMachineAndElseLooksForEachShortPart) {
  for (const LongPathCase& row : kLongPathCases) {
    SCOPED_TRACE(row.story);
    Sizes house;
    house.Put({{"E:\\a b c\\file one.txt", 1},
               {"E:\\a bee", 1},
               {"\\\\srv\\sh\\longer\\f", 1},
               {"E:\\tilde~\\x", 1}});
    house.machine.disk().SetShortPath("E:\\a b c", "E:\\A B~1");
    house.machine.disk().SetShortPath("E:\\a b c\\file one.txt", "E:\\A B~1\\FILE~1.TXT");
    house.machine.disk().SetShortPath("\\\\srv\\sh\\longer", "\\\\srv\\sh\\LONG~1");
    EXPECT_EQ(GetLongPath(house.machine.machine(), row.path), row.long_path);
    house.machine.Fail("Drives.LongPath");
    EXPECT_EQ(GetLongPath(house.machine.machine(), row.path), row.rebuilt);
  }
}

}  // namespace
}  // namespace ondura
