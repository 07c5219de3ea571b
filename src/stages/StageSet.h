#pragma once

#include <map>
#include <optional>

#include "job/Stage.h"

namespace ondura {

// The stages of the component by the kind of their jobs.
class StageSet : public Stages {
 public:
  // The stage outlives the set.
  void Register(JobKind kind, Stage& stage);

  Stage* ForKind(std::optional<JobKind> kind) override;

 private:
  std::map<JobKind, Stage*> stages_;
};

}  // namespace ondura
