#pragma once

#include <map>
#include <string>
#include <string_view>

#include "job/Stage.h"

namespace ondura {

// The stages of the component by the record number of their jobs.
class StageSet : public Stages {
 public:
  // The stage outlives the set.
  void Register(std::string_view recordno, Stage& stage);

  Stage* ForRecord(std::string_view recordno) override;

 private:
  std::map<std::string, Stage*, std::less<>> stages_;
};

}  // namespace ondura
