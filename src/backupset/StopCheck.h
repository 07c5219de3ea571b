#pragma once

#include <memory>
#include <string>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/ProfileStore.h"

namespace ondura {

// Whether the job is to stop. Asked after every entry of a walk, so an answer has to cost next to nothing.
class StopCheck {
 public:
  virtual ~StopCheck() = default;

  virtual bool Stopped() = 0;
};

// `Status` "5" in the current user's profile, joined with the stop flag of the host's EndProgress. The
// profile is read only when its file may have changed since the last answer.
class StatusStopCheck : public StopCheck {
 public:
  StatusStopCheck(const Machine& machine, const Installation& installation, const bool& stop_flag)
      : machine_(machine),
        installation_(installation),
        profile_(machine, installation),
        stop_flag_(stop_flag) {}

  bool Stopped() override;

 private:
  bool IsAborted();

  Machine machine_;
  const Installation& installation_;
  ProfileStore profile_;
  const bool& stop_flag_;
  std::unique_ptr<FileWatch> watch_;
  std::string watched_user_;
  bool aborted_ = false;
};

}  // namespace ondura
