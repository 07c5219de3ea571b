#include <gmock/gmock.h>

#include "platform/portable/ini_text.h"
#include "platform/win32/win32_machine.h"
#include "win32_fixture.h"

namespace ondura {

namespace {

struct WriteCase {
  const char* story;
  const char* before;
  const char* section;
  const char* key;
  const char* value;
};

// What both writers put on disk byte for byte, so that a profile can go from one machine to another.
constexpr WriteCase kWrites[] = {
    {"a new file", "", "BackupStatus", "Status", "1"},
    {"a value in the place of another", "[S]\r\nA=1\r\nKey=old\r\nB=2\r\n", "S", "Key", "new"},
    {"a key behind the last of its section", "[S]\r\nA=1\r\n", "S", "Key", "new"},
    {"a section behind the last", "[T]\r\nKey=t\r\n", "S", "Key", "new"},
    {"the spelling that a key has", "[s]\r\nKEY=old\r\n", "S", "Key", "new"},
    {"a value without text", "[S]\r\nKey=old\r\n", "S", "Key", ""},
    {"quotes as they were given", "[S]\r\nKey=old\r\n", "S", "Key", "\"a b\""},
    {"characters that the cipher makes", "[Tolmera]\r\n", "Tolmera", "wugtpcog", "{qw\"hqwpf\"og#"},
    {"letters beyond ASCII", "[S]\r\n", "S", "Pfad", "C:\\Größe\\€"},
    {"a value with signs of the form", "[S]\r\n", "S", "Key", "a=b;[c]"},
};

class Win32ProfilesTest : public testing::TestWithParam<WriteCase> {
 protected:
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  const Machine& machine_ = owner_->machine();
  CodePageTable page_;
  TemporaryFolder folder_;
  std::string file_ = folder_.path() + "\\User.ini";

  [[nodiscard]] std::string ByPlatform(const WriteCase& c) const {
    machine_.files.Remove(file_, Removal::kForce);
    if (*c.before != '\0') machine_.files.Write(file_, c.before, IfPresent::kReplace);
    EXPECT_TRUE(machine_.profiles.WriteString({file_, c.section, c.key}, c.value));
    return machine_.files.Read(file_).value_or("none");
  }

  [[nodiscard]] std::string ByPortableWriter(const WriteCase& c) {
    IniText text{c.before, page_};
    text.Set(page_.Encode(c.section), page_.Encode(c.key), page_.Encode(c.value));
    return text.bytes();
  }
};

TEST_P(Win32ProfilesTest, BothWritersLeaveTheSameBytes) {
  EXPECT_EQ(ByPlatform(GetParam()), ByPortableWriter(GetParam())) << GetParam().story;
}

TEST_P(Win32ProfilesTest, EachReaderReadsTheOthersFile) {
  const WriteCase& c = GetParam();
  const IniText by_platform{ByPlatform(c), page_};
  const auto read = by_platform.Find(c.section, c.key);
  ASSERT_TRUE(read.has_value()) << c.story;
  machine_.files.Write(file_, ByPortableWriter(c), IfPresent::kReplace);
  EXPECT_EQ(machine_.profiles.ReadString({file_, c.section, c.key}), page_.Decode(*read)) << c.story;
}

INSTANTIATE_TEST_SUITE_P(Writes, Win32ProfilesTest, testing::ValuesIn(kWrites));

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
