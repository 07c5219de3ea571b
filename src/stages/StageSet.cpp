#include "stages/StageSet.h"

namespace ondura {

void StageSet::Register(JobKind kind, Stage& stage) { stages_.insert_or_assign(kind, &stage); }

Stage* StageSet::ForKind(std::optional<JobKind> kind) {
  if (!kind) return nullptr;
  const auto found = stages_.find(*kind);
  return found == stages_.end() ? nullptr : found->second;
}

}  // namespace ondura
