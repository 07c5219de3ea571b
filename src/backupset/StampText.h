#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/LocaleInfo.h"
#include "platform/local_time.h"

namespace ondura {

// The time stamps of the compare list, "mm-dd-yyyy HH:MM:SS" in UTF-16.
//
// A walk writes three stamps a file, and most files of a folder share their days: a day's text is made once
// and kept until another day takes its place.
class StampText {
 public:
  static constexpr std::size_t kUnits = 19;

  StampText();

  // `mode` says which separators the present date has in the system's own form: with 0 and 1 the stamp's
  // date is brought to "-", with 0 and 2 its time to ":".
  void SetMode(std::int16_t mode);

  // Whether the time has a stamp, also when moved by an hour: years 100 to 9999.
  static bool IsStampable(LocalTime time);

  // Writes kUnits units; returns the place after them.
  char16_t* Write(LocalTime time, char16_t* into);

 private:
  static constexpr std::size_t kDateUnits = 10;
  static constexpr std::size_t kDaysKept = 256;

  struct Day {
    std::int32_t number = 0;  // days since 1970
    std::array<char16_t, kDateUnits> text{};
  };

  const Day& DayOf(std::int32_t number);
  void Format(std::int32_t number, Day& day) const;

  std::array<Day, kDaysKept> days_;
  char16_t date_separator_ = u'-';
  char16_t time_separator_ = u':';
};

// How the separators of the present date and time look in the system's own form: the mode of SetMode.
std::int16_t PresentDateMode(LocaleInfo& locale, LocalTime now);

}  // namespace ondura
