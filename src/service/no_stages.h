#pragma once

#include "job/Stage.h"

namespace ondura {

// An installation without application-aware stages: file jobs run, every other kind is refused by the job.
class NoStages : public Stages {
 public:
  Stage* ForRecord(std::string_view) override { return nullptr; }
};

}  // namespace ondura
