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
  // "|" ends a line of a list.
  void PutLists(std::string_view items, std::string_view folders, std::string_view files = "") {
    PutList("atbkupfolderlist.txt", ReplaceAll(items, "|", "\r\n"));
    PutList("atbkupExcludelist.txt", ReplaceAll(folders, "|", "\r\n"));
    PutList("atbkupExcludeFilePath.txt", ReplaceAll(files, "|", "\r\n"));
  }
  void Refuse(const char* folder) { machine.disk().SetRefusing(folder, true); }
  SizeOutcome Calculate(const SizeJob& job = {}) { return calculation.CalculateTotalSize(job); }

  // The size of each item, "=", and the bytes and the files in all.
  std::string Answer() {
    const std::vector<std::string> lines = LinesOf(List("OutputSize.txt"));
    std::string answer = lines.size() == 1 ? lines[0] + " " : "";
    for (std::size_t size = 1; size < lines.size(); size += 2) answer += lines[size] + " ";
    return answer + "= " + Join(LinesOf(List("TotalDisplaySize.txt")), " ");
  }

  SizeCalculation calculation{machine.machine(), installation, stop};
};

struct SizeCase {
  const char *story, *items, *want;
  const char* folders = "";  // excluded
  const char* files = "";    // excluded
};

constexpr SizeCase kSizeCases[] = {
    {"an empty list", "", "= 0 0"},
    {"a folder with and without its backslash", "E:\\d\\|E:\\dd", "35 7 = 42 4"},
    {"a fixed drive in both forms holds what its volume has in use", "E:|E:\\", "600 600 = 1200 10"},
    {"another drive holds what its files add up to", "f:", "12 = 12 3"},
    {"a drive that is not ready", "Q:", "0 = 0 0"},
    {"a file", "E:\\one.txt", "3 = 3 1"},
    {"a missing file counts, a missing folder does not", "E:\\no|E:\\no\\", "0 0 = 0 1"},
    {"a blank line is an item without a size", "|E:\\one.txt", "0 3 = 3 1"},
    {"a file below Root is passed over", "Root\\x|E:\\one.txt", "3 = 3 1"},

    {"the item itself is excluded", "E:\\dd|E:\\d", "7 35 = 7 1", "e:\\D\\"},
    {"a folder in the item", "E:\\d", "35 = 10 1", "E:\\d\\s"},
    {"a longer name beside the item", "E:\\d", "35 = 35 3", "E:\\dd"},
    {"a shorter name beside the item", "E:\\dd", "7 = 7 1", "E:\\d"},
    {"an item in an excluded folder loses all of that folder", "E:\\dd|E:\\d\\s", "7 25 = 0 0", "E:\\d"},
    {"a file in an excluded folder loses itself besides", "E:|E:\\d\\a", "600 10 = 530 0", "E:\\d"},
    {"of nested exclusions both sizes go and each file once", "E:\\d", "35 = 5 1", "E:\\d\\s|E:\\d\\s\\t"},
    {"an exclusion listed twice counts its files once", "E:\\d\\", "35 = 25 2", "E:\\d\\s\\t|E:\\D\\S\\T\\"},
    {"a file among the folders", "E:\\one.txt", "3 = 0 0", "E:\\one.txt"},
    {"a whole drive", "E:\\", "600 = 0 0", "E:"},
    {"a short name", "E:\\dd", "7 = 0 0", "E:\\D~1"},
    {"what is not there, and a blank line", "E:\\d", "35 = 35 3", "|E:\\d\\no"},

    {"only marked files go, each once", "E:\\d", "35 = 25 2", "",
     "E:\\d\\a,1|E:\\d\\s\\b,0|E:\\D\\A 1|E:\\dd\\z,1|1"},
    {"a file in a folder that goes anyhow", "E:\\d", "35 = 10 1", "E:\\d\\s", "E:\\d\\s\\b,1"},
    {"a file that is the item, and one whose name begins so", "E:\\one.txt", "3 = 0 0", "",
     "E:\\one.txt,1|E:\\one.txt.bak,1"}};

TEST(CalculateTotalSize, TellsEachItemAndTheTotalsWithoutWhatIsExcluded) {
  for (const SizeCase& row : kSizeCases) {
    SCOPED_TRACE(row.story);
    Sizes house;
    house.PutLists(row.items, row.folders, row.files);
    EXPECT_EQ(house.Calculate(), SizeOutcome::kDone);
    EXPECT_EQ(house.Answer(), row.want);
    EXPECT_EQ(house.List("atbkupExcludelistSize.txt"), "(no file)");
  }
}

TEST(CalculateTotalSize, AddsUpAllDrivesButTheFloppy) {
  Sizes house;
  house.machine.disk().RemoveDrive("C:\\");
  house.installation.VirtualPath = "F:\\";
  house.PutLists("My Computer", "E:\\d|F:\\f");
  house.Refuse("F:\\Acmeann");
  house.Calculate();
  EXPECT_EQ(house.List("OutputSize.txt"), "My Computer\r\n612\r\n");
  EXPECT_EQ(house.List("TotalDisplaySize.txt"), "568\r\n3\r\n");
  EXPECT_THAT(house.machine.CallsMatching("Folders.List A:"), IsEmpty());
}

// A folder that can't be read whole has no size as an exclusion; as an item it has what could be read.
TEST(CalculateTotalSize, RewritesTheSizesOfTheExclusionsInTheirOrder) {
  Sizes house;
  house.Refuse("E:\\d\\s\\t");
  house.PutLists("E:\\d|E:\\one.txt", "E:\\dd\\||f:\\|E:\\D~1|E:\\d\\s|E:\\no|");
  house.PutList("atbkupExcludelistSize.txt", "of an earlier run\r\n");
  house.Calculate();
  EXPECT_EQ(Join(LinesOf(house.List("atbkupExcludelistSize.txt")), " "), "7 0 12 7 0 0");
  EXPECT_EQ(house.Answer(), "30 3 = 33 2");
}

TEST(CalculateTotalSize, MeasuresTheDumpsOfAStageAlone) {
  for (const std::string_view recordno : {"2", "3", "4", "5", "1", ""}) {
    Sizes house;
    house.PutLists("E:\\dd", "");
    house.Refuse("E:\\d\\s\\t");
    house.Calculate({JobKindOf(recordno), "E:\\d"});
    EXPECT_EQ(house.Answer(), recordno > "1" ? "(no file) = 30 2" : "7 = 7 1") << recordno;
  }
}

TEST(CalculateTotalSize, StopsBehindALineAndLeavesTheOldOutput) {
  Sizes house;
  house.PutLists("E:\\d|E:\\dd", "");
  house.PutList("OutputSize.txt", "old");
  house.SetProfile("BackupStatus", "Status", "5");
  EXPECT_EQ(house.Calculate(), SizeOutcome::kStopped);
  EXPECT_EQ(house.machine.CallsMatching("Folders.List E:\\d\\s\\t").size(), 1U);
  EXPECT_THAT(house.machine.CallsMatching("Folders.List E:\\dd"), IsEmpty());
  EXPECT_EQ(house.Answer(), "old = (no file)");
}

struct PauseCase {
  const char* story;
  int files, folders;
  const char *items, *excluded;
  int waited_ms;
};

constexpr PauseCase kPauseCases[] = {
    {"ten entries are few", 10, 0, "E:\\p", "", 0},
    {"eleven are many", 11, 0, "E:\\p", "", 1},
    {"a walk of eleven folders", 0, 10, "E:\\p", "", 2},  // without a size it is walked twice
    {"one of twenty-two, with many entries", 1, 21, "E:\\p", "", 3},
    {"the count of an exclusion of two items", 11, 0, "E:\\p\\0|E:\\p", "E:\\p", 2},
    {"eleven lines", 0, 0, "1|2|3|4|5|6|7|8|9|0|1|2", "", 1}};

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
      items += item + "\\f|" + item + ".gone|";
      folders += in_one_folder ? "E:\\X|" : item + "\\out|" + item + "|";
      files += item + "\\f,1|";
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

TEST(GetLongPath, AsksTheMachineAndElseLooksForEachShortPart) {
  Sizes house;
  house.Put({{"E:\\a b c\\file one.txt", 1}, {"E:\\a bee", 1}, {"E:\\tilde~\\x", 1}});
  house.Put({{"\\\\srv\\sh\\longer\\f", 1}});
  house.machine.disk().SetShortPath("E:\\a b c", "E:\\A B~1");
  house.machine.disk().SetShortPath("E:\\a b c\\file one.txt", "E:\\A B~1\\FILE~1.TXT");
  house.machine.disk().SetShortPath("\\\\srv\\sh\\longer", "\\\\srv\\sh\\LONG~1");
  struct Row {
    const char *story, *path, *long_path, *rebuilt;  // the last where the machine can't know the long form
  };
  for (const auto& [story, path, long_path, rebuilt] :
       {Row{"nothing there", "E:\\NO~1\\x", "E:\\NO~1\\x", "E:\\NO~1\\x"},
        {"nothing short", "E:\\D\\A", "E:\\d\\a", "E:\\D\\A"},
        {"folder and file", "E:\\a b~1\\FILE~1.TXT", "E:\\a b c\\file one.txt", "E:\\a b c\\file one.txt"},
        {"a trailing backslash", "E:\\A B~1\\", "E:\\a b c", "E:\\a b c\\"},
        {"a share", "\\\\srv\\sh\\LONG~1\\f", "\\\\srv\\sh\\longer\\f", "\\\\srv\\sh\\longer\\f"},
        {"a sign that is no short name", "E:\\tilde~\\x", "E:\\tilde~\\x", "E:\\tilde~\\x"}}) {
    EXPECT_EQ(GetLongPath(house.machine.machine(), path), long_path) << story;
    house.machine.Fail("Drives.LongPath");
    EXPECT_EQ(GetLongPath(house.machine.machine(), path), rebuilt) << story;
  }
}

}  // namespace
}  // namespace ondura
