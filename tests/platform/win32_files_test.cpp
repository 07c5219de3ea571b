#include <gmock/gmock.h>

#include "TemporaryFolder.h"
#include "contract.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

using testing::Contains;
using testing::EndsWith;
using testing::Not;
using testing::Optional;

class Win32FilesTest : public testing::Test {
 protected:
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  const Machine& machine_ = owner_->machine();
  TemporaryFolder folder_;
  std::string root_ = folder_.path() + "\\";

  void Put(std::string_view path, std::string_view bytes) const {
    ASSERT_TRUE(machine_.files.Write(path, bytes, IfPresent::kReplace)) << path;
  }
};

struct LinkCase {
  const char* story;
  FoundFolder found;
  bool is_link;
};

constexpr DWORD kFolderPoint = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
constexpr DWORD kCloudTag = 0x9000'001A;

constexpr LinkCase kLinkCases[] = {
    {"a folder", {FILE_ATTRIBUTE_DIRECTORY, IO_REPARSE_TAG_SYMLINK, false}, false},
    {"a link to a file", {FILE_ATTRIBUTE_REPARSE_POINT, IO_REPARSE_TAG_SYMLINK, false}, false},
    {"a link to a folder", {kFolderPoint, IO_REPARSE_TAG_SYMLINK, false}, true},
    {"a junction", {kFolderPoint, IO_REPARSE_TAG_MOUNT_POINT, false}, true},
    {"a mounted volume", {kFolderPoint, IO_REPARSE_TAG_MOUNT_POINT, true}, false},
    {"a folder of a cloud drive", {kFolderPoint, kCloudTag, false}, false},
    {"a link whose tag is not told", {kFolderPoint, 0, false}, true}};

TEST(Win32Paths, JunctionsAndLinksAreNoFoldersToWalkAndVolumesAre) {
  for (const LinkCase& row : kLinkCases) EXPECT_EQ(IsLinkToFolder(row.found), row.is_link) << row.story;
}

TEST(Win32Paths, NamesKeepEveryUnitThereAndBack) {
  for (const std::wstring name :
       {L"\xD800x", L"x\xDFFF", L"\xDC00\xD800", L"\xFEFFmark", L"\x65E5\xD83D\xDE00"}) {
    EXPECT_EQ(ToWide(FromWide(name)), name);
  }
}

TEST_F(Win32FilesTest, NamesThatTheCodePageLacksAreTheirOwnInLongAndShortForm) {
  const std::string own = root_ + "日本";
  machine_.folders.Make(root_ + "ab");
  machine_.folders.Make(own);
  Put(own + "\\Файл", "x");
  EXPECT_EQ(machine_.drives.LongPath(own + "\\файл"), own + "\\Файл");
  EXPECT_TRUE(machine_.files.Exists(machine_.drives.ShortPath(own + "\\Файл")));
  EXPECT_TRUE(machine_.drives.FreeBytes(own).has_value());
}

TEST_F(Win32FilesTest, TheRootOfADriveOrShareIsOneHoweverItIsWritten) {
  for (const wchar_t* root : {LR"(C:\)", LR"(C:\x\..)", LR"(\\?\C:\)", LR"(\\server\share)",
                              LR"(\\server\share\)", LR"(\\server\share\x\..)", LR"(\\?\UNC\server\share)",
                              LR"(\\?\unc\server\share)", L"//server/share"}) {
    EXPECT_TRUE(IsRoot(root)) << FromWide(root);
  }
  for (const wchar_t* folder :
       {LR"(C:\x)", LR"(\\?\C:\x)", LR"(\\server\share\x)", LR"(\\?\UNC\server\share\x)"}) {
    EXPECT_FALSE(IsRoot(folder)) << FromWide(folder);
  }
}

TEST_F(Win32FilesTest, ADriveAloneIsItsRootAndNotTheFolderLastUsedThere) {
  wchar_t before[MAX_PATH] = {};
  GetCurrentDirectoryW(MAX_PATH, before);
  SetCurrentDirectoryW(WidePath(folder_.path()).c_str());
  Put(root_ + "here.txt", "x");
  const std::string drive = folder_.path().substr(0, 2);
  EXPECT_THAT(NamesIn(machine_, drive), Not(Contains("here.txt")));
  EXPECT_TRUE(machine_.folders.Exists(drive));
  EXPECT_EQ(WidePath(drive), ToWide(drive + "\\"));
  SetCurrentDirectoryW(before);
}

TEST_F(Win32FilesTest, AFileThatAnotherKeepsToItselfReadsAsNothing) {
  const std::string file = root_ + "locked.txt";
  Put(file, "x");
  const UniqueHandle alone{
      CreateFileW(WidePath(file).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr)};
  ASSERT_TRUE(alone.valid());
  EXPECT_TRUE(machine_.files.Exists(file));
  EXPECT_EQ(machine_.files.Read(file), std::nullopt);
  EXPECT_FALSE(machine_.files.Append(file, "y", IfMissing::kCreate));
  EXPECT_FALSE(machine_.files.Remove(file, Removal::kForce));
}

TEST_F(Win32FilesTest, AFileThatAnotherWritesIsNotReadAlone) {
  const std::string file = root_ + "list.txt";
  Put(file, "x");
  EXPECT_THAT(machine_.files.ReadAlone(file), Optional(std::string{"x"}));
  const auto writer = machine_.files.OpenAppender(file, IfMissing::kFail);
  EXPECT_EQ(machine_.files.ReadAlone(file), std::nullopt);
  EXPECT_THAT(machine_.files.Read(file), Optional(std::string{"x"}));
}

TEST_F(Win32FilesTest, ShortAndLongFormsLeadToOneAnotherAndTheSystemHasItsFolder) {
  machine_.folders.Make(root_ + "Long Folder Name");
  const std::string file = root_ + "Long Folder Name\\Some Longer File.text";
  Put(file, "x");
  const std::string short_form = machine_.drives.ShortPath(file);
  EXPECT_TRUE(machine_.files.Exists(short_form)) << short_form;
  EXPECT_EQ(machine_.drives.LongPath(short_form), file);
  EXPECT_THAT(machine_.drives.SystemFolder(), EndsWith("\\system32"));
}

}  // namespace

}  // namespace ondura
