#include "machines/portable/IniProfileFiles.h"

#include <numeric>

namespace ondura {

namespace {

// A buffer of 256 or 2048 bytes, less the terminator.
constexpr std::size_t kShortLimitBytes = 255;
constexpr std::size_t kLongLimitBytes = 2047;

// A character of four bytes is two units, any other is one.
std::size_t Utf16Units(std::string_view utf8) {
  const auto units = [](std::size_t sum, char byte) {
    const auto bits = static_cast<unsigned char>(byte);
    return sum + ((bits & 0xC0U) == 0x80U ? 0U : 1U) + (bits >= 0xF0U ? 1U : 0U);
  };
  return std::accumulate(utf8.begin(), utf8.end(), std::size_t{0}, units);
}

bool IsTakenWhole(const IniKey& key) {
  return Utf16Units(key.file) <= kLongestProfilePath && key.section.size() <= kLongestProfileText &&
         key.key.size() <= kLongestProfileText;
}

}  // namespace

std::string IniProfileFiles::ReadString(const IniKey& key) { return ReadCut(key, kShortLimitBytes); }

std::string IniProfileFiles::ReadLongString(const IniKey& key) { return ReadCut(key, kLongLimitBytes); }

std::string IniProfileFiles::ReadCut(const IniKey& key, std::size_t limit_bytes) {
  const auto text = IsTakenWhole(key) ? Load(key.file) : nullptr;
  if (!text) return {};
  const auto value = text->Find(code_page_.Encode(key.section), code_page_.Encode(key.key));
  return value ? code_page_.Decode(value->substr(0, limit_bytes)) : std::string{};
}

int IniProfileFiles::ReadInt(const IniKey& key, int fallback) {
  const auto text = IsTakenWhole(key) ? Load(key.file) : nullptr;
  if (!text) return fallback;
  const auto value = text->Find(code_page_.Encode(key.section), code_page_.Encode(key.key));
  return value && !value->empty() ? IniNumber(*value) : fallback;
}

bool IniProfileFiles::WriteString(const IniKey& key, std::string_view value) {
  if (!IsTakenWhole(key) || value.size() > kLongestProfileText) return false;
  const auto old = Load(key.file);
  if (!old && !MayReplace(key.file)) return false;
  IniText text{old ? old->bytes() : std::string{}, code_page_, IniUse::kOneKey};
  const bool changed =
      text.Set(code_page_.Encode(key.section), code_page_.Encode(key.key), code_page_.Encode(value));
  return !changed || Store(key.file, text);
}

}  // namespace ondura
