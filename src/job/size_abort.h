#pragma once

#include "job/JobContext.h"

namespace ondura {

// Leaves a size calculation that its user has stopped: the job's result, log and status files say so, its
// temporary files go and the engine ends.
void LeaveSizeCalculation(JobContext& job);

}  // namespace ondura
