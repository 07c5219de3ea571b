#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "machines/portable/CodePageTable.h"
#include "text/Tokenizer.h"
#include "text/separators.h"
#include "util/cBase64.h"

namespace ondura {
namespace {

using namespace std::string_literals;
using Rows = std::pair<std::string_view, std::string_view>[];

class Base64 : public testing::Test {
 protected:
  CodePageTable page_;
  cBase64 base64_{page_};
};

TEST_F(Base64, KeepsEveryCodePageByteAtEveryLength) {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    bytes += static_cast<char>(code);
    const std::string text = page_.ToUtf8(bytes);
    ASSERT_EQ(base64_.Decode(base64_.encode(text)), text) << code;
  }
}

TEST_F(Base64, EncodesCodePageBytesAsTheStandardSays) {
  for (const auto& [text, letters] : Rows{{"", ""},
                                          {"f", "Zg=="},
                                          {"fo", "Zm8="},
                                          {"foo", "Zm9v"},
                                          {"foob", "Zm9vYg=="},
                                          {"fooba", "Zm9vYmE="},
                                          {"foobar", "Zm9vYmFy"},
                                          {"ÿþÿ", "//7/"},
                                          {"漢", "Pw=="}}) {
    EXPECT_EQ(base64_.encode(text), letters);
    EXPECT_EQ(base64_.EncodedMessage(), letters);
  }
}

TEST_F(Base64, DecodesDamagedTextByItsTable) {
  using Row = std::tuple<const char*, std::string_view, std::string_view>;
  for (const auto& [story, letters, text] : {
           Row{"blanks are passed over", "Q Q = =", "A"},
           Row{"line ends and other strange bytes are passed over", "Zm\r\n9-v_Y\tg.==", "foob"},
           Row{"a text without letters is empty", "?!*", ""},
           Row{"padding alone is empty", "====", ""},
           Row{"letters and padding count with their high bit too", "ÑÑ½½", "A"},
           Row{"padding may be missing behind two letters", "Zm9vYg", "foob"},
           Row{"padding may be missing behind three letters", "Zm9vYmE", "fooba"},
           Row{"a single last letter gives its six bits as one byte", "Zm9vQ", "foo@"},
           Row{"texts that stand behind each other are all read", "Zg==Zm8=Zm9v", "ffofoo"},
       }) {
    EXPECT_EQ(base64_.Decode(letters), text) << story;
    EXPECT_EQ(base64_.DecodedMessage(), text) << story;
  }
}

TEST_F(Base64, ShiftsAndPowersStopAtTheirTable) {
  EXPECT_EQ(cBase64::Power2(31), 2147483648U);
  EXPECT_EQ(cBase64::Power2(32), std::nullopt);
  EXPECT_EQ(cBase64::Power2(-1), std::nullopt);
  EXPECT_EQ(cBase64::RShiftByte(0xF1, 4), 0x0F);
  EXPECT_EQ(cBase64::RShiftByte(0xF1, 32), 0);
}

TEST(Tokenizer, GivesEmptyTextBehindTheLastPartAndStartsAgainWithASeparator) {
  Tokenizer tokenizer;
  EXPECT_EQ(tokenizer.nextToken(), "");
  tokenizer.init("a;b; c;");
  for (const auto* part : {"a;b;", "c;", ""}) EXPECT_EQ(tokenizer.nextToken(), part);
  tokenizer.setSeparator(";");
  for (const auto* part : {"a", "b", " c", "", ""}) EXPECT_EQ(tokenizer.nextToken(), part);
  tokenizer.init("x y;");
  for (const auto* part : {"x", "y;", ""}) EXPECT_EQ(tokenizer.nextToken(), part);
}

TEST(Separators, TextsAreCutAtTheReturnFirstAndThenAtTheNul) {
  const std::pair<std::string, std::string_view> rows[] = {{"plain\n", "plain\n"}, {"\rgone", ""},
                                                           {"\0gone"s, ""},        {"a\0b\rc"s, "a"},
                                                           {"a \rb\0c"s, "a "},    {"", ""}};
  for (const auto& [text, cut] : rows) EXPECT_EQ(TrimAtTerminator(text), cut) << text;
}

TEST(Separators, AreFoundInThePresentDateOfEachLocale) {
  const std::pair<std::string_view, int> rows[] = {{"11-14-2026 16:39:08", 3},
                                                   {"1-4-2026 4:39:08 PM", 3},
                                                   {"11/14/2026 4:39:08 PM", 2},
                                                   {"14-11-2026 16.39.08", 1},
                                                   {"14.11.2026 16.39.08", 0},
                                                   {"2026-11-14 16:39:08", 2},
                                                   {"11-14-2026 16:39:8", 3},
                                                   {"11-14-2026 16:390", 3},
                                                   {"11-14-2026", 1},
                                                   {"", 0},
                                                   {"1", 0}};
  for (const auto& [present, code] : rows) EXPECT_EQ(DetectDateTimeSeparators(present), code) << present;
}

TEST(Separators, AreReplacedThroughoutTheText) {
  for (const auto& [text, normal] : Rows{{"11/14/2026", "11-14-2026"},
                                         {"1.4.2026", "1-4-2026"},
                                         {"1-4/2", "1-4/2"},
                                         {"1∕4∕2026", "1-4-2026"},
                                         {"2026/11/14", "-0-6/11/14"},
                                         {"1", "1"},
                                         {"12", "12"},
                                         {"", ""}}) {
    EXPECT_EQ(NormalizeDateSeparator(text), normal);
  }
  for (const auto& [text, normal] : Rows{{"16.39.08", "16:39:08"},
                                         {"16:39:08", "16:39:08"},
                                         {"16.39.8", "16:39:8"},
                                         {"16.390", "16:390"},
                                         {"16.3:8", "16.3:8"},
                                         {"08", "08"},
                                         {"", ""}}) {
    EXPECT_EQ(NormalizeTimeSeparator(text), normal);
  }
}

TEST(Separators, BlanksGoAtTheFirstBlankBeforeABackslashAlone) {
  for (const auto& [path, mended] : Rows{{R"(C:\a \b \c)", R"(C:\a\b \c)"},
                                         {R"( C:\a   \b )", R"(C:\a\b)"},
                                         {R"(C:\a b\ c )", R"(C:\a b\ c)"},
                                         {R"( \a)", R"(\a)"},
                                         {"   ", ""}}) {
    EXPECT_EQ(TrimSpaceFromPathOne(path), mended);
  }
}

}  // namespace
}  // namespace ondura
