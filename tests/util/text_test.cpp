#include "text/text.h"

#include <gmock/gmock.h>

#include <array>
#include <optional>
#include <string_view>

#include "text/utf16.h"

namespace ondura {
namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

TEST(Text, SplittingKeepsEveryEmptyPart) {
  EXPECT_THAT(Split("a;;b;", ";"), ElementsAre("a", "", "b", ""));
  EXPECT_THAT(Split("", ";"), ElementsAre(""));
  EXPECT_THAT(Split("a;b", ""), ElementsAre("a;b"));
  EXPECT_EQ(Join(Split("a;;b;", ";"), ";"), "a;;b;");
}

TEST(Text, TheLastCharacterGoesWhole) {
  for (const auto& [text, rest] :
       {std::pair{"ab", "a"}, {"a", ""}, {"", ""}, {"aé", "a"}, {"x€", "x"}, {"😀", ""}, {"aé\xA9", "aé"}}) {
    EXPECT_EQ(WithoutLast(text), rest);
  }
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

using Utf16Rows = std::vector<std::array<std::string, 3>>;  // a story, UTF-8 and UTF-16

TEST(Utf16, TextSurvivesTheWayThereAndBack) {
  const Utf16Rows rows{
      {"one byte, with a NUL", "A\0b"s, "A\0\0\0b\0"s},
      {"the ends of two bytes", "\xC2\x80\xDF\xBF", "\x80\0\xFF\x07"s},
      {"the ends of three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", "\x00\x08\xFF\xFF"s},
      {"beside the surrogates", "\xED\x9F\xBF\xEE\x80\x80", "\xFF\xD7\x00\xE0"s},
      {"a high surrogate at the end", "\xED\xA0\x80", "\x00\xD8"s},
      {"a high surrogate before a letter", "\xED\xA0\x80z", "\x00\xD8z\0"s},
      {"a low surrogate alone", "\xED\xBF\xBFz", "\xFF\xDFz\0"s},
      {"two high ones before a low one", "\xED\xA0\x80\xF0\x90\x80\x80", "\x00\xD8\x00\xD8\x00\xDC"s},
      {"the ends of four bytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", "\x00\xD8\x00\xDC\xFF\xDB\xFF\xDF"s}};
  for (const auto& [story, utf8, utf16] : rows) {
    EXPECT_EQ(ToUtf16(utf8), utf16) << story;
    EXPECT_EQ(FromUtf16(std::string{kUtf16Mark} + utf16), utf8) << story;
    EXPECT_EQ(Utf16Length(utf8), utf16.size() / 2) << story;
  }
}

TEST(Utf16, BytesThatAreNotUtf8BecomeOneReplacementEach) {
  const std::string mark = "\xFD\xFF";
  const Utf16Rows rows{{"a lone continuation before good text", "\x80z", mark + "z\0"s},
                       {"a character cut short", "a\xE2\x82", "a\0"s + mark + mark},
                       {"an overlong slash", "\xC0\xAF", mark + mark},
                       {"an overlong character of three bytes", "\xE0\x80\x80", mark + mark + mark},
                       {"beyond the last character", "\xF4\x90\x80\x80", mark + mark + mark + mark}};
  for (const auto& [story, utf8, utf16] : rows) {
    EXPECT_EQ(ToUtf16(utf8), utf16) << story;
    EXPECT_EQ(Utf16Length(utf8), utf16.size() / 2) << story;
  }
}

TEST(Utf16, HalvesOfUnitsAndMarksDoNotTakeTheirNeighboursAlong) {
  const Utf16Rows rows{{"an odd last byte", "A", "A\0b"s},
                       {"a mark in the middle", "A\xEF\xBB\xBF", "A\0\xFF\xFE"s}};
  for (const auto& [story, utf8, utf16] : rows) EXPECT_EQ(FromUtf16(utf16), utf8) << story;
  EXPECT_EQ(FromUtf16Units(kUtf16Mark), "\xEF\xBB\xBF") << "a name may begin with it";
  EXPECT_FALSE(DecodeUtf8("\xED\xA0\x80").valid) << "files of other programs hold no such thing";
}

}  // namespace
}  // namespace ondura
