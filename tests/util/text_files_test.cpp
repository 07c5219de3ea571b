#include "util/TextFiles.h"

#include <string>
#include <string_view>

#include "support/CheckedMachine.h"

namespace ondura {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view kPath = "C:\\data\\x.txt";

class TextFilesTest : public ::testing::Test {
 protected:
  TextFilesTest() { house_.PutFolder("C:\\data"); }

  CheckedMachine house_;
  TextFiles files_{house_.machine().files, house_.machine().code_page};
};

TEST(LinesOf, TakesBothLineEndsAndALastLineWithoutOne) {
  EXPECT_THAT(LinesOf(""), IsEmpty());
  EXPECT_THAT(LinesOf("a\r\nb\nc\rd"), ElementsAre("a", "b", "c\rd"));
  EXPECT_THAT(LinesOf("a\n\r\n"), ElementsAre("a", ""));
}

TEST_F(TextFilesTest, EachEncodingHasItsBytesOnDisk) {
  EXPECT_TRUE(files_.Write(kPath, "Ä€\r\n", Encoding::kCodePage));
  EXPECT_EQ(house_.FileBytes(kPath), "\xC4\x80\r\n");
  EXPECT_EQ(files_.Read(kPath, Encoding::kCodePage), "Ä€\r\n");
  EXPECT_TRUE(files_.Write(kPath, "Ä\n", Encoding::kUtf16));
  EXPECT_EQ(house_.FileBytes(kPath), "\xFF\xFE\xC4\0\n\0"s);
  EXPECT_THAT(*files_.ReadLines(kPath, Encoding::kUtf16), ElementsAre("Ä"));
}

TEST_F(TextFilesTest, AppendingPutsOneMarkAtTheStartAndMakesNoFileUnasked) {
  EXPECT_FALSE(files_.Append(kPath, "a", Encoding::kUtf16, IfMissing::kFail));
  EXPECT_EQ(house_.FileBytes(kPath), std::nullopt);
  EXPECT_TRUE(files_.Append(kPath, "a", Encoding::kUtf16, IfMissing::kCreate));
  EXPECT_TRUE(files_.Append(kPath, "b", Encoding::kUtf16, IfMissing::kCreate));
  EXPECT_EQ(house_.FileBytes(kPath), "\xFF\xFE\x61\0b\0"s);
}

TEST_F(TextFilesTest, AnAppendThatFailsDoesNotEmptyTheFile) {
  house_.PutFile(kPath, "kept\r\n");
  house_.Fail("Files.Append");
  EXPECT_FALSE(files_.Append(kPath, "lost", Encoding::kCodePage, IfMissing::kCreate));
  EXPECT_EQ(house_.FileBytes(kPath), "kept\r\n");
}

TEST_F(TextFilesTest, TheFirstLineComesWithoutTheRestOfAHugeFile) {
  EXPECT_EQ(files_.ReadFirstLine(kPath, Encoding::kUtf16), std::nullopt);
  const std::pair<std::string, std::string> rows[] = {
      {"\xFF\xFE", ""}, {"\xFF\xFE\x31\0"s, "1"}, {"\xFF\xFE\x31\0\r\0\n\0\x32\0"s, "1"}, {"", ""}};
  for (const auto& [bytes, line] : rows) {
    house_.PutFile(kPath, bytes);
    EXPECT_EQ(files_.ReadFirstLine(kPath, Encoding::kUtf16), line);
  }
  house_.PutFile(kPath, std::string(100'000, 'x'));
  EXPECT_EQ(files_.ReadFirstLine(kPath, Encoding::kCodePage), std::string(4096, 'x'));
  EXPECT_THAT(house_.CallsMatching("Files.Read C:"), IsEmpty());
}

TEST_F(TextFilesTest, AFileOfMoreLinesThanAnyOfOursIsNotSplit) {
  house_.PutFile(kPath, std::string(3'000'000, '\n'));
  EXPECT_EQ(files_.ReadLines(kPath, Encoding::kCodePage), std::nullopt);
}

}  // namespace
}  // namespace ondura
