#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "machines/portable/CodePageTable.h"

namespace ondura {

// kManyKeys: the lines are told apart once, for all look-ups. kOneKey: each look-up reads from the start to
// what it looks for, which costs no memory beside the text.
enum class IniUse { kManyKeys, kOneKey };

// The text of one private profile file, as code page bytes.
//
// Section and key names match without regard to letter case and to blanks around them; where one occurs
// twice the first counts. A line that is neither section nor key is kept and never read.
class IniText {
 public:
  IniText(std::string bytes, const CodePageTable& code_page, IniUse use = IniUse::kManyKeys);

  // The value without the blanks around it and without one pair of quotes, single or double. Valid until
  // the next Set.
  [[nodiscard]] std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

  // Puts `value` in the place of the old one, or after the last key of its section, or under a new section
  // at the end. All other lines stay. False when the value was there already.
  bool Set(std::string_view section, std::string_view key, std::string_view value);

  [[nodiscard]] const std::string& bytes() const { return bytes_; }

 private:
  // Byte ranges within bytes_.
  struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
  };
  struct Section {
    Range name;
    std::size_t insert_at = 0;  // after its last line that is not blank
  };
  struct Entry {
    std::size_t section = 0;
    Range key;
    Range value;  // trimmed, with its quotes; ends where the line does
  };
  // A line of the file: the head of a section, or one of its lines, which may have a key.
  struct Line {
    Range trimmed;
    std::size_t next = 0;  // where the next line begins
    std::optional<Range> section;
    std::optional<Entry> entry;
  };
  // Where a key is and where its section is, as far as they are there.
  struct Place {
    std::optional<Section> section;
    std::optional<Entry> entry;
  };

  void Index();
  [[nodiscard]] Line LineAt(std::size_t begin) const;
  [[nodiscard]] Place Locate(std::string_view section, std::string_view key) const;
  [[nodiscard]] Place Scan(std::string_view section, std::string_view key) const;
  [[nodiscard]] Range Trimmed(Range range) const;
  [[nodiscard]] std::string_view View(Range range) const;
  [[nodiscard]] bool Same(Range range, std::string_view name) const;
  void AppendSection(std::string_view section, std::string_view line);

  std::string bytes_;
  const CodePageTable* code_page_;
  IniUse use_;
  std::vector<Section> sections_;
  std::vector<Entry> entries_;
};

// The number at the start of a value as GetPrivateProfileIntA reads it: an optional sign and digits, or after
// "0x", "0o" or "0b" those of the base 16, 8 or 2; 0 where there are none. It wraps at 32 bits.
int IniNumber(std::string_view value);

}  // namespace ondura
