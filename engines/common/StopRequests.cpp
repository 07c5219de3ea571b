#include "engines/common/StopRequests.h"

#include "engine/status_word.h"

namespace ondura::engines {

StopRequests::StopRequests(Client& client)
    : client_(client),
      profile_(client.machine().watches.Watch(client.installation().UserFolder() +
                                              client.installation().ProfileIniName)) {}

StopRequest StopRequests::Check() {
  if (seen_ == StopRequest::kNone && profile_->MayHaveChanged()) {
    const auto word = StatusWordOf(client_.ReadStatus(profile_keys::kStatus));
    if (word == StatusWord::kCutOff) seen_ = StopRequest::kHardStop;
    if (word == StatusWord::kStopAsked) seen_ = StopRequest::kCancel;
    if (client_.ReadStatus(profile_keys::kCancel) == "1") seen_ = StopRequest::kCancel;
  }
  return seen_;
}

}  // namespace ondura::engines
