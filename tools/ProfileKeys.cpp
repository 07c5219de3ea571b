#include "ProfileKeys.h"

#include "profile/profile_paths.h"
#include "text/text.h"
#include "util/cBase64.h"

namespace ondura {

namespace {

// Ini values are read through a buffer of 256 bytes.
constexpr std::size_t kLimitBytes = 255;

constexpr std::string_view kBlanks = " \t\n\v\f\r\x1A";
constexpr std::string_view kQuotes = "\"'";

// A reader of ini files drops one pair of quotes around a value and the blanks at its ends: what begins and
// ends with either gets one further pair, which goes instead.
std::string Protected(std::string_view value) {
  if (value.empty()) return {};
  const bool has_quotes =
      value.size() > 1 && value.front() == value.back() && kQuotes.find(value.front()) != kQuotes.npos;
  const bool has_blank =
      kBlanks.find(value.front()) != kBlanks.npos || kBlanks.find(value.back()) != kBlanks.npos;
  return has_quotes || has_blank ? '"' + std::string{value} + '"' : std::string{value};
}

bool IsShifted(KeyForm form) { return form == KeyForm::kShifted || form == KeyForm::kShiftedValue; }

}  // namespace

std::string ProfileKeys::Read(const ProfileKey& key) const {
  std::string stored = machine_.profiles.ReadString({FileOf(key), key.section, StoredName(key)});
  if (IsShifted(key.form)) return ciphers_.ShiftDecode(stored);
  if (key.form == KeyForm::kBase64) return cBase64(machine_.code_page).Decode(stored);
  return stored;
}

bool ProfileKeys::IsStoredInOneLine(const ProfileKey& key, std::string_view value) const {
  return StoredValue(key, value).find_first_of("\r\n") == std::string::npos;
}

bool ProfileKeys::Write(const ProfileKey& key, std::string_view value) const {
  return machine_.profiles.WriteString({FileOf(key), key.section, StoredName(key)}, StoredValue(key, value));
}

std::string ProfileKeys::WhyNotHeld(const ProfileKey& key, std::string_view value) const {
  const std::string bytes = machine_.code_page.FromUtf8(value);
  if (machine_.code_page.ToUtf8(bytes) != value) {
    return "it holds characters outside the machine's code page";
  }
  const std::string stored = StoredValue(key, value);
  if (machine_.code_page.FromUtf8(stored).size() > kLimitBytes) {
    return "its stored form is longer than " + std::to_string(kLimitBytes) + " bytes";
  }
  if (Read(key) != value) return "its form can't hold every character of it";
  return {};
}

std::string ProfileKeys::FileOf(const ProfileKey& key) const {
  if (key.store == KeyStore::kSharedState) return SharedStatePath(installation_);
  return UserProfilePath(installation_, installation_.CurrentUser);
}

std::string ProfileKeys::StoredName(const ProfileKey& key) const {
  return key.form == KeyForm::kShifted ? ciphers_.ShiftEncode(key.name) : std::string{key.name};
}

std::string ProfileKeys::StoredValue(const ProfileKey& key, std::string_view value) const {
  if (IsShifted(key.form)) return Protected(ciphers_.ShiftEncode(value));
  if (key.form == KeyForm::kBase64) return cBase64(machine_.code_page).encode(value);
  return Protected(value);
}

}  // namespace ondura
