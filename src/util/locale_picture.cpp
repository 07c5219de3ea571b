#include "util/locale_picture.h"

#include <array>
#include <charconv>
#include <span>
#include <vector>

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::array<std::string_view, 7> kWeekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                    "Thursday", "Friday", "Saturday"};
constexpr std::array<std::string_view, 2> kHalves{"AM", "PM"};

// Years of two digits lie between 1930 and 2029.
constexpr int kFirstShortYear = 1930;

struct Item {
  char letter = 0;        // 0 for literal text
  std::size_t count = 0;  // of the letter
  std::string_view literal;
};

char FieldLetter(char character, PictureKind kind) {
  const std::string_view wanted = kind == PictureKind::kDate ? "dDmMyY" : "hHmMsStT";
  if (wanted.find(character) == std::string_view::npos) return 0;
  if (character == 'H') return 'H';
  if (kind == PictureKind::kDate && (character == 'm' || character == 'M')) return 'M';
  return ToLower(std::string_view{&character, 1}).front();
}

std::size_t RunLength(std::string_view text) {
  const auto end = text.find_first_not_of(text.front());
  return end == std::string_view::npos ? text.size() : end;
}

std::vector<Item> ItemsOf(const LocalePicture& picture) {
  std::vector<Item> items;
  std::string_view rest = picture.text;
  while (!rest.empty()) {
    Item item;
    std::size_t used = 1;
    item.letter = FieldLetter(rest.front(), picture.kind);
    if (item.letter != 0) {
      item.count = used = RunLength(rest);
    } else if (rest.front() == '\'') {
      const auto end = rest.find('\'', 1);
      item.literal = rest.substr(1, end == std::string_view::npos ? end : end - 1);
      used = end == std::string_view::npos ? rest.size() : end + 1;
    } else {
      item.literal = rest.substr(0, 1);
    }
    items.push_back(item);
    rest.remove_prefix(used);
  }
  return items;
}

int WeekdayOf(const TimeFields& fields) {
  const auto day = floor<std::chrono::days>(ToLocalTime(fields));
  return static_cast<int>(std::chrono::weekday{day}.c_encoding());
}

std::string NameOrNumber(const Item& item, int number, std::string_view name) {
  if (item.count <= 2) return Padded(number, static_cast<int>(item.count));
  return std::string{item.count == 3 ? name.substr(0, 3) : name};
}

std::string WriteItem(const Item& item, const TimeFields& fields) {
  constexpr int kHalfDay = 12;
  const int width = item.count >= 2 ? 2 : 1;
  switch (item.letter) {
    case 'd':
      return NameOrNumber(item, fields.day, kWeekdays[static_cast<std::size_t>(WeekdayOf(fields))]);
    case 'M':
      return NameOrNumber(item, fields.month, kMonthNames[static_cast<std::size_t>(fields.month - 1)]);
    case 'y':
      return item.count <= 2 ? Padded(fields.year % 100, width) : Padded(fields.year, 4);
    case 'h':
      return Padded((fields.hour + kHalfDay - 1) % kHalfDay + 1, width);
    case 'H':
      return Padded(fields.hour, width);
    case 'm':
      return Padded(fields.minute, width);
    case 's':
      return Padded(fields.second, width);
    case 't':
      return std::string{kHalves[fields.hour < kHalfDay ? 0 : 1].substr(0, static_cast<std::size_t>(width))};
    default:
      return std::string{item.literal};
  }
}

// Reads a number of one to `most_digits` digits.
bool TakeDigits(std::string_view& text, std::size_t most_digits, int& number) {
  if (text.empty() || text.front() < '0' || text.front() > '9') return false;
  const char* last = text.data() + std::min(text.size(), most_digits);
  const char* end = std::from_chars(text.data(), last, number).ptr;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

bool TakeYear(std::string_view& text, std::size_t count, int& year) {
  if (count > 2) return TakeDigits(text, 4, year);
  if (!TakeDigits(text, 2, year)) return false;
  year += kFirstShortYear - kFirstShortYear % 100;
  if (year < kFirstShortYear) year += 100;
  return true;
}

// Reads one of the names, cut to `length`, and says which.
std::optional<int> TakeName(std::string_view& text, std::span<const std::string_view> names,
                            std::size_t length) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string_view name = names[i].substr(0, length);
    if (!StartsWithIgnoringCase(text.substr(0, name.size()), name)) continue;
    text.remove_prefix(name.size());
    return static_cast<int>(i);
  }
  return std::nullopt;
}

std::size_t NameLength(const Item& item) { return item.count == 3 ? 3 : std::string_view::npos; }

bool TakeMonth(const Item& item, std::string_view& text, int& month) {
  if (item.count <= 2) return TakeDigits(text, 2, month);
  const auto index = TakeName(text, kMonthNames, NameLength(item));
  month = index.value_or(-1) + 1;
  return index.has_value();
}

bool TakeLiteral(std::string_view& text, std::string_view literal) {
  if (!text.starts_with(literal)) return false;
  text.remove_prefix(literal.size());
  return true;
}

bool TakeItem(const Item& item, std::string_view& text, TimeFields& fields, std::optional<int>& half) {
  switch (item.letter) {
    case 'd':
      if (item.count > 2) return TakeName(text, kWeekdays, NameLength(item)).has_value();
      return TakeDigits(text, 2, fields.day);
    case 'M':
      return TakeMonth(item, text, fields.month);
    case 'y':
      return TakeYear(text, item.count, fields.year);
    case 'h':
    case 'H':
      return TakeDigits(text, 2, fields.hour);
    case 'm':
      return TakeDigits(text, 2, fields.minute);
    case 's':
      return TakeDigits(text, 2, fields.second);
    case 't':
      half = TakeName(text, kHalves, std::min<std::size_t>(item.count, 2));
      return half.has_value();
    default:
      return TakeLiteral(text, item.literal);
  }
}

}  // namespace

std::string WriteByPicture(const LocalePicture& picture, const TimeFields& fields) {
  std::string result;
  for (const Item& item : ItemsOf(picture)) result += WriteItem(item, fields);
  return result;
}

bool TakeByPicture(const LocalePicture& picture, std::string_view& text, TimeFields& fields) {
  std::optional<int> half;
  for (const Item& item : ItemsOf(picture)) {
    if (!TakeItem(item, text, fields, half)) return false;
  }
  if (!half) return true;
  if (fields.hour < 1 || fields.hour > 12) return false;
  fields.hour = fields.hour % 12 + *half * 12;
  return true;
}

}  // namespace ondura
