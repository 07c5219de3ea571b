#include "util/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {
namespace {

using ::testing::ElementsAre;

TEST(Text, TrimTakesBlanksAlone) {
  EXPECT_EQ(Trim("  a b  "), "a b");
  EXPECT_EQ(Trim("\ta\r\n"), "\ta\r\n");
  EXPECT_EQ(Trim("   "), "");
}

TEST(Text, SplitKeepsEveryEmptyPartAndJoinUndoesIt) {
  EXPECT_THAT(Split("a;;b;", ";"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(Split("", ";"), ElementsAre(""));
  EXPECT_THAT(Split("a;b", ""), ElementsAre("a;b"));
  EXPECT_THAT(Split("a::::b", "::"), ElementsAre("a", "", "b"));
  EXPECT_EQ(Join(Split("a;;b;", ";"), ";"), "a;;b;");
}

TEST(Text, ReplaceAllDoesNotReadItsOwnReplacement) {
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(ReplaceAll("", "a", "x"), "");
}

TEST(Text, LetterCaseChangesInEveryAlphabetOfFileNames) {
  struct Row {
    std::string_view upper;
    std::string_view lower;
  };
  const Row rows[] = {
      {"AZ@[", "az@["},
      {"ÀÖØÞŸ", "àöøþÿ"},
      {"ĀĮŐŽŶ", "āįőžŷ"},
      {"ȘȚǍ", "șțǎ"},
      {"ΆΈΉΊΌΎΏΑΡΣΫ", "άέήίόύώαρσϋ"},
      {"ЀЏАЯѠҊӁӐ", "ѐџаяѡҋӂӑ"},
      {"ԱՖ", "աֆ"},
      {"ḀẠỸ", "ḁạỹ"},
      {"ＡＺ", "ａｚ"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ToLower(row.upper), row.lower);
    EXPECT_EQ(ToUpper(row.lower), row.upper);
    EXPECT_TRUE(EqualsIgnoringCase(row.upper, row.lower)) << row.lower;
  }
  for (const std::string_view unchanged : {"×÷ßıİ漢😀19_", "\xFF\xC3", "\xE2\x82"}) {
    EXPECT_EQ(ToUpper(unchanged), unchanged);
    EXPECT_EQ(ToLower(unchanged), unchanged);
  }
  EXPECT_TRUE(StartsWithIgnoringCase("C:\\Daten", "c:\\dA"));
  EXPECT_FALSE(StartsWithIgnoringCase("C:", "c:\\"));
}

TEST(Text, NumbersAreTheWholeText) {
  const std::pair<std::string_view, std::optional<double>> rows[] = {
      {"402", 402},          {" -409 ", -409},       {"+1.5", 1.5},         {"-.5", -.5},
      {"", std::nullopt},    {"12a", std::nullopt},  {"1 2", std::nullopt}, {"+-5", std::nullopt},
      {"nan", std::nullopt}, {"inf", std::nullopt},  {"1,5", std::nullopt}, {"1e999", std::nullopt},
      {"++1", std::nullopt}, {"0x10", std::nullopt}, {"1e3", 1000},         {"\t1", std::nullopt},
  };
  for (const auto& [text, number] : rows) EXPECT_EQ(ParseNumber(text), number) << text;
}

TEST(Text, IntegersThatDoNotFitAreNone) {
  EXPECT_EQ(ParseInteger(" +9223372036854775807 "), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(ParseInteger("9223372036854775808"), std::nullopt);
  EXPECT_EQ(ParseInteger("1.0"), std::nullopt);
  EXPECT_EQ(ParseInt16("-32768"), std::numeric_limits<std::int16_t>::min());
  EXPECT_EQ(ParseInt16("32767"), std::numeric_limits<std::int16_t>::max());
  EXPECT_EQ(ParseInt16("32768"), std::nullopt);
  EXPECT_EQ(ParseInt16("-32769"), std::nullopt);
}

TEST(Text, NumberTextIsTheShortestForm) {
  const std::pair<double, std::string_view> rows[] = {
      {402, "402"},
      {-12008, "-12008"},
      {1.5, "1.5"},
      {-0.0, "0"},
      {0.1 + 0.2, "0.3"},
      {1.0 / 3, "0.333333333333333"},
      {123456789012345, "123456789012345"},
  };
  for (const auto& [number, text] : rows) EXPECT_EQ(NumberText(number), text);
}

TEST(Text, PathAndNumberPiecesHoldAtTheirEdges) {
  EXPECT_EQ(Padded(7, 2), "07");
  EXPECT_EQ(Padded(123, 2), "123");
  EXPECT_EQ(Padded(0, 4), "0000");
  EXPECT_EQ(WithBackslash("C:\\x"), "C:\\x\\");
  EXPECT_EQ(WithBackslash("C:\\"), "C:\\");
  EXPECT_EQ(WithBackslash(""), "\\");
  EXPECT_EQ(WithoutLast("ab"), "a");
  EXPECT_EQ(WithoutLast(""), "");
}

}  // namespace
}  // namespace ondura
