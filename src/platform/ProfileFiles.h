#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ondura {

struct IniKey {
  std::string_view file;
  std::string_view section;
  std::string_view key;
};

// The longest path of a file in UTF-16 units, and the longest section, key or value in bytes. What is longer
// reads as missing and isn't written.
inline constexpr std::size_t kLongestProfilePath = 259;
inline constexpr std::size_t kLongestProfileText = 32766;

// Private profile (ini) files, shared with other processes and locked by nobody.
//
// Sections and keys match without regard to letter case; blanks around the "=" and one pair of quotes
// around the value are not part of it. Text is UTF-8 here and the system code page on disk. On Windows:
// GetPrivateProfileStringA, GetPrivateProfileIntA and WritePrivateProfileStringA.
class ProfileFiles {
 public:
  virtual ~ProfileFiles() = default;

  // The value of `key`, cut to 255 bytes, or empty where file, section or key is missing.
  virtual std::string ReadString(const IniKey& key) = 0;

  // The same through a buffer of 2048: cut to 2047 bytes.
  virtual std::string ReadLongString(const IniKey& key) = 0;

  // The number at the start of the value, also in the form "0x1F" (0 where it has none), or `fallback` where
  // the key is missing or its value is empty.
  virtual int ReadInt(const IniKey& key, int fallback) = 0;

  // Replaces or adds the one value; the rest of the file keeps its lines. A value that is there already
  // leaves the file untouched. Makes a missing file but no folder. False if it was not written.
  virtual bool WriteString(const IniKey& key, std::string_view value) = 0;
};

}  // namespace ondura
