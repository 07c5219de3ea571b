#pragma once

#include "service/Closeup.h"
#include "service/ServiceContext.h"

namespace ondura {

// An occurrence that passed unnoticed is not run late: its record moves on and the user is told. The same
// goes for a job whose user has switched scheduling off.
class MissedSchedules {
 public:
  explicit MissedSchedules(ServiceContext& context) : context_(context) {}

  // Turns a missed occurrence that a job was held back for into a due one; moves every other record on and
  // clears RunJob.
  void Decide();

  // Tells the user about the missed occurrence.
  void Report();

  // Closes the occurrence of a user who has switched scheduling off.
  void EndDisabledJob(Closeup& closeup);

 private:
  bool WasHeldBack();
  void MoveRecordOn();
  void WriteNotice();

  ServiceContext& context_;
};

}  // namespace ondura
