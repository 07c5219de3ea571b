#include "reporting/LifeSign.h"

#include <chrono>

namespace ondura {

namespace {

constexpr std::chrono::seconds kBetweenSigns{60};

}  // namespace

void LifeSign::Show() {
  const LocalTime now = clock_.Now();
  // A clock that was set back counts as a minute.
  if (now >= last_ && now - last_ < kBetweenSigns) return;
  last_ = now;
  trace_.User(text_);
}

}  // namespace ondura
