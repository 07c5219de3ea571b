#include "platform/portable/ini_profile_files.h"

namespace ondura {

namespace {

// A buffer of 256 or 2048 bytes, less the terminator.
constexpr std::size_t kShortLimitBytes = 255;
constexpr std::size_t kLongLimitBytes = 2047;

}  // namespace

std::string IniProfileFiles::ReadString(const IniKey& key) { return ReadCut(key, kShortLimitBytes); }

std::string IniProfileFiles::ReadLongString(const IniKey& key) { return ReadCut(key, kLongLimitBytes); }

std::string IniProfileFiles::ReadCut(const IniKey& key, std::size_t limit_bytes) {
  const auto text = Load(key.file);
  if (!text) return {};
  const auto value = text->Find(code_page_.Encode(key.section), code_page_.Encode(key.key));
  return value ? code_page_.Decode(value->substr(0, limit_bytes)) : std::string{};
}

int IniProfileFiles::ReadInt(const IniKey& key, int fallback) {
  const auto text = Load(key.file);
  if (!text) return fallback;
  const auto value = text->Find(code_page_.Encode(key.section), code_page_.Encode(key.key));
  return value && !value->empty() ? IniNumber(*value) : fallback;
}

bool IniProfileFiles::WriteString(const IniKey& key, std::string_view value) {
  const auto old = Load(key.file);
  if (!old && !MayReplace(key.file)) return false;
  IniText text{old ? old->bytes() : std::string{}, code_page_, IniUse::kOneKey};
  const bool changed =
      text.Set(code_page_.Encode(key.section), code_page_.Encode(key.key), code_page_.Encode(value));
  return !changed || Store(key.file, text);
}

}  // namespace ondura
