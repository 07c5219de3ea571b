#include "backupset/selection.h"

#include "backup_set_house.h"

namespace ondura {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Values;

SelectedItem Folder(std::string path) { return {std::move(path), ItemKind::kFolder}; }
SelectedItem File(std::string path) { return {std::move(path), ItemKind::kFile}; }

struct ItemCase {
  const char* story;
  const char* list;
  std::vector<SelectedItem> items;
};

class SelectionItems : public testing::TestWithParam<ItemCase> {};

TEST_P(SelectionItems, FollowTheList) {
  BackupSetHouse house;
  house.machine.disk().PutDrive("D:\\", DriveKind::kNetwork, 1);
  house.machine.PutFile("C:\\docs\\a.txt", "a");
  house.PutList("atbkupfolderlist.txt", GetParam().list);
  Selection selection{house.machine.machine(), house.installation, house.helpers, house.trace};
  EXPECT_THAT(selection.ReadItems(), ElementsAreArray(GetParam().items)) << GetParam().story;
  EXPECT_EQ(house.List("ScheduleTraceFile.txt"), "11-14-2026 12:30:00  [Backup set]:\r\n");
}

INSTANTIATE_TEST_SUITE_P(
    Selection, SelectionItems,
    Values(ItemCase{"no text, no item", "", {}}, ItemCase{"blank lines are skipped", "\r\n  \r\n", {}},
           ItemCase{"one backslash is cut", "C:\\docs\\\r\n", {Folder("C:\\docs")}},
           ItemCase{"a folder without backslash, without line end", "C:\\docs", {Folder("C:\\docs")}},
           ItemCase{"a file, and one that is gone",
                    "C:\\docs\\a.txt\r\nC:\\docs\\b.txt\r\n",
                    {File("C:\\docs\\a.txt"), File("C:\\docs\\b.txt")}},
           ItemCase{"a drive by its root", "C:\\\r\n", {Folder("C:")}},
           ItemCase{"the keywords without a folder of their own",
                    "My Documents\r\nFavorites\r\n",
                    {File(""), File("")}},
           ItemCase{"every drive, in both forms of the keyword",
                    "My Computer\r\nMy Compute\r\n",
                    {Folder("C:"), Folder("D:"), Folder("C:"), Folder("D:")}},
           ItemCase{"keywords in another case are paths", "my computer\r\n", {File("my computer")}}));

struct HasCase {
  const char* story;
  const char* automatic;  // null for no file
  const char* list;
  bool has;
};

class HasSelection : public testing::TestWithParam<HasCase> {};

TEST_P(HasSelection, AsksBothFiles) {
  BackupSetHouse house;
  if (GetParam().automatic)
    house.machine.PutFile(house.UserFile("AutoFileSelection.txt"), GetParam().automatic);
  if (GetParam().list) house.PutList("atbkupfolderlist.txt", GetParam().list);
  Selection selection{house.machine.machine(), house.installation, house.helpers, house.trace};
  EXPECT_EQ(selection.HasBackupSelection(), GetParam().has) << GetParam().story;
}

INSTANTIATE_TEST_SUITE_P(Selection, HasSelection,
                         Values(HasCase{"nothing chosen", nullptr, nullptr, false},
                                HasCase{"the flag anywhere in line 1", "mode=1\r\n", nullptr, true},
                                HasCase{"a 1 on line 2 is an ending", "0\r\n.mp1\r\n", nullptr, false},
                                HasCase{"a list", nullptr, "C:\\docs\r\n", true},
                                HasCase{"a list that is empty", nullptr, "", false},
                                HasCase{"a list whose first line is empty", nullptr, "\r\nC:\\docs\r\n",
                                        false}));

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
