#include "util/text.h"

#include <gmock/gmock.h>

#include <optional>
#include <string_view>

namespace ondura {
namespace {

using ::testing::ElementsAre;

TEST(Text, SplittingKeepsEveryEmptyPart) {
  EXPECT_THAT(Split("a;;b;", ";"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(Split("", ";"), ElementsAre(""));
  EXPECT_THAT(Split("a;b", ""), ElementsAre("a;b"));
  EXPECT_EQ(Join(Split("a;;b;", ";"), ";"), "a;;b;");
}

TEST(Text, ReplacementsAreNotReadAgain) {
  EXPECT_EQ(ReplaceAll("aaa", "a", "aa"), "aaaaaa");
  EXPECT_EQ(ReplaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(ReplaceAll("abc", "", "x"), "abc");
}

TEST(Text, LetterCaseChangesInEveryAlphabetOfFileNames) {
  const std::pair<std::string_view, std::string_view> rows[] = {{"AZ@[", "az@["},
                                                                {"ÀÖØÞŸ", "àöøþÿ"},
                                                                {"ĀĮŐŽŶ", "āįőžŷ"},
                                                                {"ȘȚǍ", "șțǎ"},
                                                                {"ΆΈΉΊΌΎΏΑΡΣΫ", "άέήίόύώαρσϋ"},
                                                                {"ЀЏАЯѠҊӁӐ", "ѐџаяѡҋӂӑ"},
                                                                {"ԱՖ", "աֆ"},
                                                                {"ḀẠỸＡＺ", "ḁạỹａｚ"}};
  for (const auto& [upper, lower] : rows) {
    EXPECT_EQ(ToLower(upper), lower);
    EXPECT_EQ(ToUpper(lower), upper);
    EXPECT_TRUE(EqualsIgnoringCase(upper, lower)) << lower;
  }
  for (const std::string_view unchanged : {"×÷ßıİ漢😀19_", "\xFF\xC3", "\xE2\x82"}) {
    EXPECT_EQ(ToUpper(unchanged), unchanged);
    EXPECT_EQ(ToLower(unchanged), unchanged);
  }
  EXPECT_FALSE(StartsWithIgnoringCase("C:", "c:\\"));
}

TEST(Text, NumbersAreTheWholeTextWithoutItsBlanks) {
  const std::pair<std::string_view, std::optional<double>> rows[] = {
      {"402", 402}, {" -409 ", -409}, {"+1.5", 1.5}, {"-.5", -.5}, {"", {}},      {"12a", {}},  {"1 2", {}},
      {"+-5", {}},  {"nan", {}},      {"inf", {}},   {"1,5", {}},  {"1e999", {}}, {"0x10", {}}, {"\t1", {}}};
  for (const auto& [text, number] : rows) EXPECT_EQ(ParseNumber(text), number) << text;
  EXPECT_EQ(ParseInteger(" +9223372036854775807 "), INT64_MAX);
  for (const auto* none : {"9223372036854775808", "1.0", "+-5", ""})
    EXPECT_EQ(ParseInteger(none), std::nullopt);
  EXPECT_EQ(ParseInt16("-32768"), INT16_MIN);
  for (const auto* none : {"32768", "-32769", "65537"}) EXPECT_EQ(ParseInt16(none), std::nullopt);
}

TEST(Text, NumbersAreWrittenInTheirShortestForm) {
  const std::pair<double, std::string_view> rows[] = {{-12008, "-12008"},
                                                      {1.5, "1.5"},
                                                      {-0.0, "0"},
                                                      {0.1 + 0.2, "0.3"},
                                                      {123456789012345, "123456789012345"}};
  for (const auto& [number, text] : rows) EXPECT_EQ(NumberText(number), text);
  EXPECT_EQ(Padded(7, 2), "07");
  EXPECT_EQ(Padded(123, 2), "123");
}

}  // namespace
}  // namespace ondura
