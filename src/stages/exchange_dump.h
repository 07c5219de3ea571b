#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "job/JobContext.h"
#include "stages/StageSupport.h"

namespace ondura {

// What the two Exchange stages share beyond what all stages do.

// The fields of the stage's backup-set line that stand for data, trimmed.
std::vector<std::string> TakeExchangeFields(StageSupport& support, std::string_view keyword);

// The job is asked to stop: passes that on to the tool in its status file and ends the engine.
void StopExchangeDump(JobContext& job, StageSupport& support, std::string_view status_file);

}  // namespace ondura
