#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// All text is UTF-8.

// Without the blanks (character 32 alone) at both ends.
std::string_view Trim(std::string_view text);

// The parts between the separators; a text without one is one part, and so is the empty text.
std::vector<std::string> Split(std::string_view text, std::string_view separator);

std::string Join(const std::vector<std::string>& parts, std::string_view separator);

std::string ReplaceAll(std::string_view text, std::string_view from, std::string_view to);

// Letter case of Latin, Greek and Cyrillic; everything else stays. One character stays one character.
std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

// The same for one letter, for comparisons that make no text.
char32_t LowerOf(char32_t letter);

// The path without its folders, by both kinds of slash.
std::string_view FileNameOf(std::string_view path);

bool EqualsIgnoringCase(std::string_view left, std::string_view right);
bool StartsWithIgnoringCase(std::string_view text, std::string_view prefix);

// The number that the whole text, trimmed, is ("." as the decimal separator).
std::optional<double> ParseNumber(std::string_view text);

// The same for whole numbers; nothing when it does not fit.
std::optional<std::int64_t> ParseInteger(std::string_view text);
std::optional<std::int16_t> ParseInt16(std::string_view text);

// Whether a text is a yes: "true" in any letter case, or a number other than 0.
bool ReadsAsTrue(std::string_view text);

// The shortest text of up to 15 digits: "402", "-12008", "1.5".
std::string NumberText(double number);

// `number`, which is not negative, with zeros in front up to `width` digits.
std::string Padded(int number, int width);

// Appends a backslash where the text does not end in one.
std::string WithBackslash(std::string_view folder);

// Without its last character; the empty text stays empty.
std::string_view WithoutLast(std::string_view text);

}  // namespace ondura
