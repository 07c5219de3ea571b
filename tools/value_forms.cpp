#include "value_forms.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "Failure.h"
#include "engine/status_word.h"
#include "text/text.h"

namespace ondura {

namespace {

// The words of a switch as its readers know them: the component takes everything but its word for off as on,
// or the other way round, and says nothing.
struct Switch {
  std::string_view key;
  std::string_view on;
  std::string_view off;
};

constexpr std::array kSwitches = {
    Switch{profile_keys::kScheduleDisable.name, "TRUE", "FALSE"},
    Switch{profile_keys::kShutdown.name, "1", "0"},
    Switch{profile_keys::kAutoConnect.name, "1", "0"},
    Switch{profile_keys::kCancel.name, "1", "0"},
    Switch{profile_keys::kPaused.name, "1", "0"},
    Switch{profile_keys::kDesktopNotification.name, "1", "0"},
    Switch{profile_keys::kStartMissed.name, "1", "0"},
    Switch{profile_keys::kLocalDatabase.name, "1", "0"},
};

constexpr std::array<std::string_view, 5> kOnWords = {"1", "true", "yes", "on", "y"};
constexpr std::array<std::string_view, 5> kOffWords = {"0", "false", "no", "off", "n"};

struct Range {
  std::string_view key;
  std::int64_t least;
  std::int64_t most;
};

constexpr std::array kRanges = {
    Range{profile_keys::kPort.name, 1, 65535},
    Range{profile_keys::kProxyPort.name, 1, 65535},
    Range{profile_keys::kQuotaMax.name, 0, INT64_MAX},
    Range{profile_keys::kQuotaUsed.name, 0, INT64_MAX},
    Range{profile_keys::kBackupFailureDays.name, 0, INT16_MAX},
};

[[noreturn]] void Refuse(std::string_view key, const std::string& value, const std::string& allowed) {
  throw Failure(Exit::kUsage,
                std::string{key} + " can't be '" + value + "'; it is " + allowed + ", or '' for none");
}

std::string SwitchValue(const Switch& row, const std::string& value) {
  const std::string word = ToLower(value);
  if (std::ranges::find(kOnWords, word) != kOnWords.end()) return std::string{row.on};
  if (std::ranges::find(kOffWords, word) != kOffWords.end()) return std::string{row.off};
  Refuse(row.key, value,
         std::string{row.on} + " (also yes, on) or " + std::string{row.off} + " (also no, off)");
}

bool IsWholeNumber(const std::string& value) {
  return value.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::string FittingValue(const ProfileKey& key, const std::string& value) {
  if (value.empty()) return value;
  const auto on_off = std::ranges::find(kSwitches, key.name, &Switch::key);
  if (on_off != kSwitches.end()) return SwitchValue(*on_off, value);
  const auto range = std::ranges::find(kRanges, key.name, &Range::key);
  if (range != kRanges.end()) {
    const auto number = IsWholeNumber(value) ? ParseInteger(value) : std::nullopt;
    if (!number || *number < range->least || *number > range->most) {
      Refuse(key.name, value,
             "a whole number from " + std::to_string(range->least) + " to " + std::to_string(range->most));
    }
  }
  if (key.name == profile_keys::kStatus.name && !StatusWordOf(value)) {
    Refuse(key.name, value,
           std::string{TextOf(StatusWord::kStopAsked)} + " to ask for a stop, or " +
               std::string{TextOf(StatusWord::kIdle)} + " for idle");
  }
  return value;
}

}  // namespace ondura
