#include "backupset/StopCheck.h"

#include "engine/status_word.h"
#include "profile/profile_paths.h"

namespace ondura {

bool StatusStopCheck::Stopped() { return stop_flag_ || IsAborted(); }

bool StatusStopCheck::IsAborted() {
  if (!watch_ || watched_user_ != installation_.CurrentUser) {
    watched_user_ = installation_.CurrentUser;
    watch_ = machine_.watches.Watch(UserProfilePath(installation_, watched_user_));
  }
  if (watch_->MayHaveChanged()) {
    aborted_ = StatusWordOf(profile_.ReadProfileValue(profile_keys::kStatus)) == StatusWord::kStopAsked;
  }
  return aborted_;
}

}  // namespace ondura
