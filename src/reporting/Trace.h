#pragma once

#include <string>
#include <string_view>

#include "platform/Clock.h"
#include "reporting/Options.h"
#include "util/date_text.h"

namespace ondura {

// Trace lines that begin with the present time. The message brings the blanks after the time with it.
class Trace {
 public:
  Trace(Options& options, Clock& clock) : options_(options), clock_(clock) {}

  // A line in the user's trace; `picture` where the hour is not padded or the tail is wanted.
  void User(std::string_view message, std::string_view picture = kStampPicture) {
    options_.WriteTrace(Stamp(picture).append(message));
  }

  // A line in the trace of the data folder.
  void Main(std::string_view message, std::string_view picture = kStampPicture) {
    options_.WriteTraceMain(Stamp(picture).append(message));
  }

  // The same line in both.
  void Both(std::string_view message) {
    User(message);
    Main(message);
  }

  [[nodiscard]] std::string Stamp(std::string_view picture = kStampPicture) {
    return FormatDate(picture, clock_.Now());
  }

  // For the lines without a time.
  Options& plain() { return options_; }

 private:
  Options& options_;
  Clock& clock_;
};

}  // namespace ondura
