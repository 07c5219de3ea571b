#pragma once

#include <memory>

#include "engines/common/Client.h"

namespace ondura::engines {

enum class StopRequest { kNone, kCancel, kHardStop };

// Whether somebody wants the transfer to end: Cancel "1" or Status "5" from the person, Status "10" from the
// job when the hour has come. Asked after every file, so the profile is read only when it has changed.
class StopRequests {
 public:
  explicit StopRequests(Client& client);

  // A request stays once it has been seen.
  StopRequest Check();

 private:
  Client& client_;
  std::unique_ptr<FileWatch> profile_;
  StopRequest seen_ = StopRequest::kNone;
};

}  // namespace ondura::engines
