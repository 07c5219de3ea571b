#include <gmock/gmock.h>

#include "platform/portable/ini_text.h"
#include "platform/win32/win32_machine.h"
#include "win32_fixture.h"

namespace ondura {
namespace {

// What both writers put on disk byte for byte, so that a profile can go from one machine to another.
TEST(Win32Profiles, BothWritersLeaveTheSameBytesAndBothReadersReadThemAlike) {
  const auto owner = MakeWin32Machine();
  const Machine& machine = owner->machine();
  const CodePageTable page;
  const TemporaryFolder folder;
  const std::string file = folder.path() + "\\User.ini";
  for (const auto& [story, before, section, key, value] :
       {std::tuple{"a new file", "", "BackupStatus", "Status", "1"},
        {"a value in the place of another", "[S]\r\nA=1\r\nKey=old\r\nB=2\r\n", "S", "Key", "new"},
        {"a key behind the last of its section", "[S]\r\nA=1\r\n", "S", "Key", "new"},
        {"a section behind the last", "[T]\r\nKey=t\r\n", "S", "Key", "new"},
        {"the spelling that a key has", "[s]\r\nKEY=old\r\n", "S", "Key", "new"},
        {"a value without text", "[S]\r\nKey=old\r\n", "S", "Key", ""},
        {"quotes as they were given", "[S]\r\nKey=old\r\n", "S", "Key", "\"a b\""},
        {"characters that the cipher makes", "[Tolmera]\r\n", "Tolmera", "wugtpcog", "{qw\"hqwpf\"og#"},
        {"letters beyond ASCII", "[S]\r\n", "S", "Pfad", "C:\\Größe\\€"},
        {"a value with signs of the form", "[S]\r\n", "S", "Key", "a=b;[c]"}}) {
    machine.files.Remove(file, Removal::kForce);
    if (*before != '\0') machine.files.Write(file, before, IfPresent::kReplace);
    EXPECT_TRUE(machine.profiles.WriteString({file, section, key}, value)) << story;
    IniText text{before, page};
    text.Set(page.Encode(section), page.Encode(key), page.Encode(value));
    EXPECT_EQ(machine.files.Read(file), text.bytes()) << story;
    const IniText written{text.bytes(), page};
    const auto read = written.Find(section, key);
    ASSERT_TRUE(read.has_value()) << story;
    EXPECT_EQ(machine.profiles.ReadString({file, section, key}), page.Decode(*read)) << story;
  }
}

TEST(Win32Profiles, NumbersAreReadAlikeByBothReaders) {
  const auto owner = MakeWin32Machine();
  const TemporaryFolder folder;
  const std::string file = folder.path() + "\\Numbers.ini";
  for (const char* value : {"0", "-414", "402 ", "65536", "4294967295", "-", "12abc", "x"}) {
    owner->machine().files.Write(file, std::string{"[S]\r\nN="} + value + "\r\n", IfPresent::kReplace);
    EXPECT_EQ(owner->machine().profiles.ReadInt({file, "S", "N"}, -10), IniNumber(value)) << value;
  }
}

}  // namespace
}  // namespace ondura
