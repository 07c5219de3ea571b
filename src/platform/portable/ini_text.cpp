#include "platform/portable/ini_text.h"

#include <algorithm>
#include <cstdint>

namespace ondura {

namespace {

constexpr std::string_view kNewLine = "\r\n";

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

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

}  // namespace

IniText::IniText(std::string bytes, const CodePageTable& code_page)
    : bytes_(std::move(bytes)), code_page_(&code_page) {
  Index();
}

void IniText::Index() {
  sections_.clear();
  entries_.clear();
  for (std::size_t begin = 0; begin < bytes_.size();) {
    const std::size_t found = bytes_.find('\n', begin);
    const std::size_t end = found == std::string::npos ? bytes_.size() : found;
    const std::size_t next_line = found == std::string::npos ? bytes_.size() : found + 1;
    IndexLine({begin, end}, next_line);
    begin = next_line;
  }
}

void IniText::IndexLine(Range line, std::size_t next_line) {
  const Range trimmed = Trimmed(line);
  const std::string_view text = View(trimmed);
  if (text.empty()) return;
  if (text.front() == '[') {
    const std::size_t close = text.rfind(']');
    if (close != std::string_view::npos) {
      sections_.push_back({Trimmed({trimmed.begin + 1, trimmed.begin + close}), next_line});
      return;
    }
  }
  if (sections_.empty()) return;
  sections_.back().insert_at = next_line;
  const std::size_t equals = text.find('=');
  if (text.front() == ';' || equals == std::string_view::npos) return;
  entries_.push_back({sections_.size() - 1, Trimmed({trimmed.begin, trimmed.begin + equals}),
                      Trimmed({trimmed.begin + equals + 1, trimmed.end})});
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

const IniText::Section* IniText::FindSection(std::string_view name) const {
  const auto found = std::ranges::find_if(sections_, [&](const Section& s) { return Same(s.name, name); });
  return found == sections_.end() ? nullptr : &*found;
}

const IniText::Entry* IniText::FindEntry(std::string_view section, std::string_view key) const {
  const Section* const in = FindSection(TrimBlanks(section));
  if (in == nullptr) return nullptr;
  const std::string_view wanted = TrimBlanks(key);
  const auto number = static_cast<std::size_t>(in - sections_.data());
  const auto found = std::ranges::find_if(
      entries_, [&](const Entry& entry) { return entry.section == number && Same(entry.key, wanted); });
  return found == entries_.end() ? nullptr : &*found;
}

std::optional<std::string_view> IniText::Find(std::string_view section, std::string_view key) const {
  const Entry* const entry = FindEntry(section, key);
  if (entry == nullptr) return std::nullopt;
  return Unquoted(View(entry->value));
}

bool IniText::Set(std::string_view section, std::string_view key, std::string_view value) {
  if (const Entry* const entry = FindEntry(section, key)) {
    if (View(entry->value) == TrimBlanks(value)) return false;
    const Range behind_key{entry->key.end, entry->value.end};
    bytes_.replace(behind_key.begin, behind_key.end - behind_key.begin, "=" + std::string{value});
  } else {
    const std::string line = std::string{TrimBlanks(key)} + "=" + std::string{value} + std::string{kNewLine};
    if (const Section* const in = FindSection(TrimBlanks(section))) {
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
  std::uint32_t number = 0;
  for (const char c : value) {
    if (c < '0' || c > '9') break;
    number = number * 10 + static_cast<std::uint32_t>(c - '0');
  }
  return static_cast<int>(negative ? 0U - number : number);
}

}  // namespace ondura
