#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/code_page_table.h"
#include "util/Tokenizer.h"
#include "util/cBase64.h"
#include "util/separators.h"

namespace ondura {
namespace {

using ::testing::ElementsAre;

std::string EveryByte() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
  return bytes;
}

TEST(Base64, KeepsEveryCodePageByteAtEveryLength) {
  CodePageTable page;
  cBase64 base64{page};
  std::string bytes = EveryByte();
  while (!bytes.empty()) {
    const std::string text = page.ToUtf8(bytes);
    ASSERT_EQ(base64.Decode(base64.encode(text)), text) << bytes.size();
    bytes.pop_back();
  }
}

TEST(Base64, EncodesTheVectorsOfTheStandardAndKeepsTheLastResult) {
  CodePageTable page;
  cBase64 base64{page};
  const std::pair<std::string_view, std::string_view> rows[] = {
      {"", ""},
      {"f", "Zg=="},
      {"fo", "Zm8="},
      {"foo", "Zm9v"},
      {"foob", "Zm9vYg=="},
      {"fooba", "Zm9vYmE="},
      {"foobar", "Zm9vYmFy"},
      {"\xC3\xBF\xC3\xBE\xC3\xBF", "//7/"},  // the code page bytes, not those of UTF-8
      {"\xE6\xBC\xA2", "Pw=="},              // a character that the code page lacks is a question mark
  };
  for (const auto& [text, letters] : rows) {
    EXPECT_EQ(base64.encode(text), letters);
    EXPECT_EQ(base64.EncodedMessage(), letters);
  }
}

TEST(Base64, DecodesDamagedTextByItsTable) {
  struct Row {
    const char* story;
    std::string_view letters;
    std::string_view text;
  };
  const Row rows[] = {
      {"nothing gives nothing", "", ""},
      {"two letters and padding give one byte", "QQ==", "A"},
      {"blanks are passed over", "Q Q = =", "A"},
      {"line ends and other strange bytes are passed over", "Zm\r\n9-v_Y\tg.==", "foob"},
      {"no letter at all", "?!*", ""},
      {"padding alone", "====", ""},
      {"a letter with the high bit counts as its letter", "\xC3\x91\xC3\x91==", "A"},  // code 209
      {"padding with the high bit counts as padding", "QQ\xC2\xBD\xC2\xBD", "A"},      // code 189
      {"a missing padding is not missed", "Zm9vYg", "foob"},
      {"a last group of three gives two bytes", "Zm9vYmE", "fooba"},
      {"a single last letter gives its six bits as one byte", "Zm9vQ", "foo@"},
      {"texts that stand behind each other are all read", "Zg==Zm8=Zm9v", "ffofoo"},
  };
  CodePageTable page;
  cBase64 base64{page};
  for (const Row& row : rows) {
    EXPECT_EQ(base64.Decode(row.letters), row.text) << row.story;
    EXPECT_EQ(base64.DecodedMessage(), row.text) << row.story;
  }
}

TEST(Base64, ShiftsAndPowersStopAtTheirTable) {
  EXPECT_EQ(cBase64::Power2(0), 1U);
  EXPECT_EQ(cBase64::Power2(31), 2147483648U);
  EXPECT_EQ(cBase64::Power2(32), std::nullopt);
  EXPECT_EQ(cBase64::Power2(-1), std::nullopt);
  EXPECT_EQ(cBase64::RShiftByte(0xF1, 4), 0x0F);
  EXPECT_EQ(cBase64::RShiftByte(0xF1, 31), 0);
  EXPECT_EQ(cBase64::RShiftByte(0xF1, 32), 0);
}

std::vector<std::string> Tokens(Tokenizer& tokenizer, int count) {
  std::vector<std::string> tokens;
  for (int i = 0; i < count; ++i) tokens.push_back(tokenizer.nextToken());
  return tokens;
}

TEST(Tokenizer, GivesEmptyTextBehindTheLastPartAndStartsAgainWithASeparator) {
  Tokenizer tokenizer;
  EXPECT_EQ(tokenizer.nextToken(), "");
  tokenizer.init("a;b; c");
  EXPECT_THAT(Tokens(tokenizer, 3), ElementsAre("a;b;", "c", ""));
  tokenizer.setSeparator(";");
  EXPECT_THAT(Tokens(tokenizer, 4), ElementsAre("a", "b", " c", ""));
  tokenizer.init("x y;");  // the blank is back
  EXPECT_THAT(Tokens(tokenizer, 3), ElementsAre("x", "y;", ""));
  tokenizer.setSeparator("y");
  EXPECT_THAT(Tokens(tokenizer, 3), ElementsAre("x ", ";", ""));
}

TEST(TrimAtTerminator, CutsAtTheReturnFirstAndThenAtTheNul) {
  using std::string_literals::operator""s;
  const std::pair<std::string, std::string> rows[] = {
      {"plain", "plain"}, {"\rgone", ""},    {"\0gone"s, ""}, {"a\nb", "a\nb"},   {"a\rb\rc", "a"},
      {"a\0b\rc"s, "a"},  {"a\rb\0c"s, "a"}, {"", ""},        {" a \r\n", " a "},
  };
  for (const auto& [text, cut] : rows) EXPECT_EQ(TrimAtTerminator(text), cut) << text;
}

TEST(Separators, AreFoundInThePresentDateOfEachLocale) {
  const std::pair<std::string_view, int> rows[] = {
      {"11-14-2026 16:39:08", 3},
      {"1-4-2026 4:39:08 PM", 3},
      {"11/14/2026 4:39:08 PM", 2},
      {"14-11-2026 16.39.08", 1},
      {"14.11.2026 16.39.08", 0},
      {"2026-11-14 16:39:08", 2},
      {"11-14-2026 16:39:8", 3},
      {"11-14-2026 16:390", 3},
      {"11-14-2026 1:639", 3},
      {"11-14-2026", 1},
      {"", 0},
      {"1", 0},
  };
  for (const auto& [present, code] : rows) EXPECT_EQ(DetectDateTimeSeparators(present), code) << present;
}

TEST(Separators, AreReplacedThroughoutTheText) {
  const std::pair<std::string_view, std::string_view> dates[] = {
      {"11/14/2026", "11-14-2026"},
      {"1.4.2026", "1-4-2026"},
      {"11-14-2026", "11-14-2026"},
      {"1\xE2\x88\x95"
       "4\xE2\x88\x95"
       "2026",
       "1-4-2026"},                  // a separator of three bytes
      {"2026/11/14", "-0-6/11/14"},  // no separator where it is looked for
      {"1", "1"},
      {"", ""},
  };
  for (const auto& [text, normal] : dates) EXPECT_EQ(NormalizeDateSeparator(text), normal) << text;
  const std::pair<std::string_view, std::string_view> times[] = {
      {"16.39.08", "16:39:08"},
      {"16:39:08", "16:39:08"},
      {"16.39.8", "16:39:8"},
      {"16.390", "16:390"},
      {"1.639", "1:639"},
      {"08", "08"},
      {"", ""},
  };
  for (const auto& [text, normal] : times) EXPECT_EQ(NormalizeTimeSeparator(text), normal) << text;
}

TEST(TrimSpaceFromPathOne, MendsTheFirstPlaceAlone) {
  const std::pair<std::string_view, std::string_view> rows[] = {
      {R"(C:\a \b \c)", R"(C:\a\b \c)"},
      {R"( C:\a   \b )", R"(C:\a\b)"},
      {R"(C:\a b\c)", R"(C:\a b\c)"},
      {R"( \a)", R"(\a)"},
      {"  plain  ", "plain"},
      {R"(C:\a\ b)", R"(C:\a\ b)"},
      {"   ", ""},
      {R"(C:\a \)", R"(C:\a\)"},
  };
  for (const auto& [path, mended] : rows) EXPECT_EQ(TrimSpaceFromPathOne(path), mended) << path;
}

}  // namespace
}  // namespace ondura
