#include "util/utf16.h"

#include <gtest/gtest.h>

#include <string>

namespace ondura {
namespace {

using namespace std::string_literals;

struct Utf16Row {
  std::string story, utf8, utf16;
};

TEST(Utf16, TextSurvivesTheWayThereAndBack) {
  const Utf16Row rows[] = {
      {"one byte, with a NUL", "A\0b"s, "A\0\0\0b\0"s},
      {"the ends of two bytes", "\xC2\x80\xDF\xBF", "\x80\0\xFF\x07"s},
      {"the ends of three bytes", "\xE0\xA0\x80\xEF\xBF\xBF", "\x00\x08\xFF\xFF"s},
      {"beside the surrogates", "\xED\x9F\xBF\xEE\x80\x80", "\xFF\xD7\x00\xE0"s},
      {"the ends of four bytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", "\x00\xD8\x00\xDC\xFF\xDB\xFF\xDF"s}};
  for (const Utf16Row& row : rows) {
    EXPECT_EQ(ToUtf16(row.utf8), row.utf16) << row.story;
    EXPECT_EQ(FromUtf16(std::string{kUtf16Mark} + row.utf16), row.utf8) << row.story;
    EXPECT_EQ(Utf16Length(row.utf8), row.utf16.size() / 2) << row.story;
  }
}

TEST(Utf16, BytesThatAreNotUtf8BecomeOneReplacementEach) {
  const std::string mark = "\xFD\xFF";
  const Utf16Row rows[] = {{"a lone continuation before good text", "\x80z", mark + "z\0"s},
                           {"a character cut short", "a\xE2\x82", "a\0"s + mark + mark},
                           {"an overlong slash", "\xC0\xAF", mark + mark},
                           {"an overlong character of three bytes", "\xE0\x80\x80", mark + mark + mark},
                           {"a surrogate", "\xED\xA0\x80", mark + mark + mark},
                           {"beyond the last character", "\xF4\x90\x80\x80", mark + mark + mark + mark}};
  for (const Utf16Row& row : rows) {
    EXPECT_EQ(ToUtf16(row.utf8), row.utf16) << row.story;
    EXPECT_EQ(Utf16Length(row.utf8), row.utf16.size() / 2) << row.story;
  }
}

TEST(Utf16, HalvesOfCharactersDoNotTakeTheirNeighboursAlong) {
  const Utf16Row rows[] = {
      {"an odd last byte", "A", "A\0b"s},
      {"a high surrogate at the end", "\xEF\xBF\xBD", "\x00\xD8"s},
      {"a high surrogate before a letter",
       "\xEF\xBF\xBD"
       "A",
       "\x00\xD8\x41\x00"s},
      {"a low surrogate alone",
       "\xEF\xBF\xBD"
       "A",
       "\x00\xDC\x41\x00"s},
      {"two high ones before a low one", "\xEF\xBF\xBD\xF0\x90\x80\x80", "\x00\xD8\x00\xD8\x00\xDC"s},
      {"a mark in the middle", "A\xEF\xBB\xBF", "A\0\xFF\xFE"s}};
  for (const Utf16Row& row : rows) EXPECT_EQ(FromUtf16(row.utf16), row.utf8) << row.story;
}

}  // namespace
}  // namespace ondura
