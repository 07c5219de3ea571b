#include "machines/portable/IniText.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace ondura {

namespace {

constexpr std::string_view kNewLine = "\r\n";

// The end mark of old text files counts too.
bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r') || c == '\x1A'; }

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::string_view Unquoted(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
  return quoted ? value.substr(1, value.size() - 2) : value;
}

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Takes the mark of a number's base from its front.
int TakeBase(std::string_view& number) {
  for (const auto& [mark, base] : {std::pair{"0x", 16}, {"0o", 8}, {"0b", 2}}) {
    if (!number.starts_with(mark)) continue;
    number.remove_prefix(2);
    return base;
  }
  return 10;
}

}  // namespace

IniText::IniText(std::string bytes, const CodePageTable& code_page, IniUse use)
    : bytes_(std::move(bytes)), code_page_(&code_page), use_(use) {
  Index();
}

void IniText::Index() {
  sections_.clear();
  entries_.clear();
  if (use_ == IniUse::kOneKey) return;
  for (std::size_t begin = 0; begin < bytes_.size();) {
    Line line = LineAt(begin);
    begin = line.next;
    if (line.section) {
      sections_.push_back({*line.section, line.next});
    } else if (!sections_.empty() && line.trimmed.begin < line.trimmed.end) {
      sections_.back().insert_at = line.next;
      if (line.entry) entries_.push_back({sections_.size() - 1, line.entry->key, line.entry->value});
    }
  }
}

IniText::Line IniText::LineAt(std::size_t begin) const {
  const std::size_t found = bytes_.find('\n', begin);
  const std::size_t end = found == std::string::npos ? bytes_.size() : found;
  Line line{Trimmed({begin, end}), found == std::string::npos ? end : found + 1, {}, {}};
  const std::string_view text = View(line.trimmed);
  if (text.empty()) return line;
  if (text.front() == '[') {
    const std::size_t close = text.rfind(']');
    if (close != std::string_view::npos) {
      line.section = Trimmed({line.trimmed.begin + 1, line.trimmed.begin + close});
      return line;
    }
  }
  const std::size_t equals = text.find('=');
  if (text.front() == ';' || equals == std::string_view::npos) return line;
  line.entry = Entry{0, Trimmed({line.trimmed.begin, line.trimmed.begin + equals}),
                     Trimmed({line.trimmed.begin + equals + 1, line.trimmed.end})};
  return line;
}

IniText::Range IniText::Trimmed(Range range) const {
  while (range.begin < range.end && IsBlank(bytes_[range.begin])) ++range.begin;
  while (range.end > range.begin && IsBlank(bytes_[range.end - 1])) --range.end;
  return range;
}

std::string_view IniText::View(Range range) const {
  return std::string_view{bytes_}.substr(range.begin, range.end - range.begin);
}

bool IniText::Same(Range range, std::string_view name) const {
  return std::ranges::equal(View(range), name, [this](char left, char right) {
    return left == right || code_page_->UpperByte(left) == code_page_->UpperByte(right);
  });
}

IniText::Place IniText::Locate(std::string_view section, std::string_view key) const {
  section = TrimBlanks(section);
  key = TrimBlanks(key);
  if (use_ == IniUse::kOneKey) return Scan(section, key);
  Place place;
  const auto in = std::ranges::find_if(sections_, [&](const Section& s) { return Same(s.name, section); });
  if (in == sections_.end()) return place;
  place.section = *in;
  const auto number = static_cast<std::size_t>(in - sections_.begin());
  const auto entry = std::ranges::find_if(
      entries_, [&](const Entry& each) { return each.section == number && Same(each.key, key); });
  if (entry != entries_.end()) place.entry = *entry;
  return place;
}

IniText::Place IniText::Scan(std::string_view section, std::string_view key) const {
  Place place;
  for (std::size_t begin = 0; begin < bytes_.size();) {
    if (!place.section) {
      const std::size_t bracket = bytes_.find('[', begin);
      if (bracket == std::string::npos) break;
      begin = bytes_.rfind('\n', bracket) + 1;  // of its line; the first line has no end before it
    }
    const Line line = LineAt(begin);
    begin = line.next;
    if (line.section) {
      if (place.section) break;
      if (Same(*line.section, section)) place.section = Section{*line.section, line.next};
    } else if (place.section && line.trimmed.begin < line.trimmed.end) {
      place.section->insert_at = line.next;
      if (!line.entry || !Same(line.entry->key, key)) continue;
      place.entry = line.entry;
      break;
    }
  }
  return place;
}

std::optional<std::string_view> IniText::Find(std::string_view section, std::string_view key) const {
  const auto entry = Locate(section, key).entry;
  if (!entry) return std::nullopt;
  return Unquoted(View(entry->value));
}

bool IniText::Set(std::string_view section, std::string_view key, std::string_view value) {
  const Place place = Locate(section, key);
  if (const auto& entry = place.entry) {
    if (View(entry->value) == TrimBlanks(value)) return false;
    const Range behind_key{entry->key.end, entry->value.end};
    bytes_.replace(behind_key.begin, behind_key.end - behind_key.begin, "=" + std::string{value});
  } else {
    const std::string line = std::string{TrimBlanks(key)} + "=" + std::string{value} + std::string{kNewLine};
    if (const auto& in = place.section) {
      const bool open_end = bytes_[in->insert_at - 1] != '\n';
      bytes_.insert(in->insert_at, (open_end ? std::string{kNewLine} : std::string{}) + line);
    } else {
      AppendSection(TrimBlanks(section), line);
    }
  }
  Index();
  return true;
}

void IniText::AppendSection(std::string_view section, std::string_view line) {
  if (!bytes_.empty() && bytes_.back() != '\n') bytes_ += kNewLine;
  bytes_.append("[").append(section).append("]").append(kNewLine).append(line);
}

int IniNumber(std::string_view value) {
  value = TrimBlanks(value);
  const bool negative = value.starts_with('-');
  if (negative || value.starts_with('+')) value.remove_prefix(1);
  const int base = TakeBase(value);
  std::uint32_t number = 0;
  for (const char c : value) {
    const int digit = DigitOf(c);
    if (digit < 0 || digit >= base) break;
    number = number * static_cast<std::uint32_t>(base) + static_cast<std::uint32_t>(digit);
  }
  return static_cast<int>(negative ? 0U - number : number);
}

}  // namespace ondura
