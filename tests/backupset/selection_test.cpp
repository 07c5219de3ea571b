#include "backupset/Selection.h"

#include "backup_set_house.h"

namespace ondura {
namespace {

SelectedItem Folder(std::string path) { return {std::move(path), ItemKind::kFolder}; }
SelectedItem File(std::string path) { return {std::move(path), ItemKind::kFile}; }

struct ItemCase {
  const char *story, *list;
  std::vector<SelectedItem> items;
};

const ItemCase kItemCases[] = {
    {"no text, no item", "", {}},
    {"blank lines are skipped", "\r\n  \r\n", {}},
    {"one backslash is cut", "C:\\docs\\\r\n", {Folder("C:\\docs")}},
    {"a folder without backslash, without line end", "C:\\docs", {Folder("C:\\docs")}},
    {"a file, and one that is gone",
     "C:\\docs\\a.txt\r\nC:\\docs\\b.txt\r\n",
     {File("C:\\docs\\a.txt"), File("C:\\docs\\b.txt")}},
    {"a drive by its root", "C:\\\r\n", {Folder("C:")}},
    {"the keywords without a folder of their own", "My Documents\r\nFavorites\r\n", {File(""), File("")}},
    {"every drive, in both forms of the keyword",
     "My Computer\r\nMy Compute\r\n",
     {Folder("C:"), Folder("D:"), Folder("C:"), Folder("D:")}},
    {"keywords in another case are paths", "my computer\r\n", {File("my computer")}}};

TEST(Selection, ReadsTheItemsOfItsList) {
  for (const ItemCase& row : kItemCases) {
    SCOPED_TRACE(row.story);
    BackupSetHouse house;
    house.machine.disk().PutDrive("D:\\", DriveKind::kNetwork, 1);
    house.machine.PutFile("C:\\docs\\a.txt", "a");
    house.PutList("atbkupfolderlist.txt", row.list);
    Selection selection{house.machine.machine(), house.installation, house.trace};
    EXPECT_EQ(selection.ReadItems(), row.items);
    EXPECT_EQ(house.List("ScheduleTraceFile.txt"), "11-14-2026 12:30:00  [Backup set]:\r\n");
  }
}

struct HasCase {
  const char* story;
  const char* automatic;  // null for no file
  const char* list;
  bool has;
};

constexpr HasCase kHasCases[] = {{"nothing chosen", nullptr, nullptr, false},
                                 {"the flag anywhere in line 1", "mode=1\r\n", nullptr, true},
                                 {"a 1 on line 2 is an ending", "0\r\n.mp1\r\n", nullptr, false},
                                 {"a list", nullptr, "C:\\docs\r\n", true},
                                 {"a list that is empty", nullptr, "", false},
                                 {"a list whose first line is empty", nullptr, "\r\nC:\\docs\r\n", false}};

TEST(Selection, HasBeenMadeWhenEitherFileSaysSo) {
  for (const HasCase& row : kHasCases) {
    SCOPED_TRACE(row.story);
    BackupSetHouse house;
    if (row.automatic) house.machine.PutFile(house.UserFile("AutoFileSelection.txt"), row.automatic);
    if (row.list) house.PutList("atbkupfolderlist.txt", row.list);
    Selection selection{house.machine.machine(), house.installation, house.trace};
    EXPECT_EQ(selection.HasBackupSelection(), row.has);
  }
}

TEST(TotalDisplaySize, GrowsBothLinesAndStartsFromDamageAtZero) {
  BackupSetHouse house;
  TotalDisplaySize total{house.machine.machine(), house.installation};
  total.Add({7'000'000'000, 3});
  total.Add({1, 2});
  EXPECT_EQ(house.List("TotalDisplaySize.txt"), "7000000001\r\n5\r\n");
  house.PutList("TotalDisplaySize.txt", "x\r\n");
  total.Add({4, 1});
  EXPECT_EQ(house.List("TotalDisplaySize.txt"), "4\r\n1\r\n");
}

}  // namespace
}  // namespace ondura
