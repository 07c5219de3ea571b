#pragma once

#include <cstdint>

#include "platform/Clock.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"

namespace ondura {

// The date on which the current user's local database is reset next: day, month and year as plain numbers
// in the user's profile.
class ResetDate {
 public:
  ResetDate(Clock& clock, const ProfileStore& store, const Transfer& transfer)
      : clock_(clock), store_(store), transfer_(transfer) {}

  // False while no day is stored.
  bool IsSet();

  // True when the stored date is today or has gone by. A part that is blank or no number is today's.
  bool bCheckDate();

  // Stores today plus seven days.
  void SetNext();

 private:
  std::int64_t Part(const ProfileKey& key, int todays);

  Clock& clock_;
  const ProfileStore& store_;
  const Transfer& transfer_;
};

}  // namespace ondura
