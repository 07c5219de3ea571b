#pragma once

#include <string>

namespace ondura {

// Locale information numbers.
inline constexpr int kLocaleShortDate = 31;       // LOCALE_SSHORTDATE, such as "M/d/yyyy"
inline constexpr int kLocaleTimeFormat = 0x1003;  // LOCALE_STIMEFORMAT, such as "h:mm:ss tt"
inline constexpr int kLocaleDecimal = 14;         // LOCALE_SDECIMAL, such as "."

// Texts of the user's default locale.
//
// On Windows: GetLocaleInfoA for LOCALE_USER_DEFAULT (1024) with a buffer of 256.
class LocaleInfo {
 public:
  virtual ~LocaleInfo() = default;

  // Without the terminator; empty for a number that the locale has no text for.
  virtual std::string Text(int kind) = 0;
};

}  // namespace ondura
