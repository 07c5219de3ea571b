#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "backupset/Selection.h"
#include "job/job_state.h"
#include "schedule/job_kind.h"

namespace ondura {

// Prepares one kind of application data before the transfer: a local dump by an outside tool. The units
// stand above the job; the composition root hands them in.
class Stage {
 public:
  virtual ~Stage() = default;

  // Makes the dump. A stage that fails has written its session log and keys, and says the code to leave with.
  virtual Leave Run(JobState& state) = 0;

  // The items that the dump adds to the job's list; also sets the job's dump folder. A stage whose dump left
  // nothing traces that and names its folder all the same.
  virtual std::vector<SelectedItem> Items(JobState& state) = 0;
};

class Stages {
 public:
  virtual ~Stages() = default;

  // Null for a file job and for a kind that nobody knows.
  virtual Stage* ForKind(std::optional<JobKind> kind) = 0;
};

}  // namespace ondura
