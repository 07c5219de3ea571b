#include "stages/StageSet.h"

namespace ondura {

void StageSet::Register(std::string_view recordno, Stage& stage) {
  stages_.insert_or_assign(std::string{recordno}, &stage);
}

Stage* StageSet::ForRecord(std::string_view recordno) {
  const auto found = stages_.find(recordno);
  return found == stages_.end() ? nullptr : found->second;
}

}  // namespace ondura
