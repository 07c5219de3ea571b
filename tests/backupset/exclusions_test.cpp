#include "backupset/Exclusions.h"

#include <random>

#include "backup_set_house.h"
#include "text/text.h"

namespace ondura {
namespace {

constexpr auto kFolder = ExclusionKind::kFolder;
constexpr auto kFile = ExclusionKind::kFile;

struct FindCase {
  const char* story;
  ExclusionKind kind;
  const char* list;  // entries of the kind
  const char *path, *found;
};

constexpr FindCase kFindCases[] = {
    {"no list", kFolder, "", "C:\\a\\", ""},
    {"a whole drive", kFolder, "C:\r\n", "C:\\x\\", "C:"},
    {"blank lines cover nothing", kFolder, "\r\n\r\n", "\\\\server\\", ""},
    {"a file", kFile, "C:\\a\\X.txt\r\n", "c:\\A\\x.TXT", "C:\\a\\X.txt"},
    {"the marked form is another name", kFile, "C:\\a\\x 1\r\n", "C:\\a\\x", ""}};

TEST(FindExclusion, AnswersTheFirstEntryThatCovers) {
  for (const FindCase& row : kFindCases) {
    SCOPED_TRACE(row.story);
    BackupSetHouse house;
    const bool folders = row.kind == ExclusionKind::kFolder;
    house.PutList(folders ? "atbkupExcludelist.txt" : "atbkupExcludeFilePath.txt", row.list);
    house.exclusions.Load();
    EXPECT_EQ(house.Shared("Registry", "Excluded"), "0");
    EXPECT_EQ(house.exclusions.FindExclusion(row.kind, row.path), row.found);
    EXPECT_EQ(house.Shared("Registry", "Excluded"), *row.found ? "1" : "0");
  }
}

// The rule as it reads: every entry in turn.
std::string WalkList(const std::vector<std::string>& entries, ExclusionKind kind, const std::string& path) {
  for (const auto& entry : entries) {
    const bool covers =
        kind == kFile ? EqualsIgnoringCase(path, entry) : StartsWithIgnoringCase(path, WithBackslash(entry));
    if (covers) return entry;
  }
  return "";
}

std::string RandomPath(std::mt19937& random) {
  const std::vector<std::string> names{"a", "A", "ab", "é", "É", "B"};
  std::string path = "C:";
  for (auto depth = random() % 4; depth > 0; --depth) path += "\\" + names[random() % names.size()];
  return path;
}

TEST(Exclusions, AgreeWithTheWalkOverTheListOnRandomPathsInBothForms) {
  std::mt19937 random{7};
  for (int round = 0; round < 300; ++round) {
    BackupSetHouse house;
    std::vector<std::string> entries(random() % 8);
    for (auto& entry : entries) entry = RandomPath(random) + (random() % 2 == 0 ? "\\" : "");
    const std::string text = Join(entries, "\r\n");
    house.PutList("atbkupExcludelist.txt", text);
    house.PutList("atbkupExcludeFilePath.txt", text);
    house.exclusions.Load();
    for (int look = 0; look < 20; ++look) {
      const std::string folder = RandomPath(random) + "\\";
      const std::string name = random() % 2 == 0 ? "A" : "b";
      const FolderKey key = house.exclusions.KeyOf(folder);
      FolderKey below;
      const std::string covering = WalkList(entries, kFolder, folder + name + "\\");
      EXPECT_EQ(house.exclusions.FindExclusion(kFolder, folder + name + "\\"), covering);
      EXPECT_EQ(house.exclusions.FindFolder(folder, key, name, below), covering);
      const std::string same = WalkList(entries, kFile, folder + name);
      EXPECT_EQ(house.exclusions.FindExclusion(kFile, folder + name), same);
      EXPECT_EQ(house.exclusions.FindFile(folder, key, name), same);
    }
  }
}

}  // namespace
}  // namespace ondura
