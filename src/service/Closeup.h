#pragma once

#include "service/ServiceContext.h"

namespace ondura {

// The end of an occurrence: the record moves to its next one, or falls out when it ran once. It does so
// whatever the job's result was.
class Closeup {
 public:
  explicit Closeup(ServiceContext& context) : context_(context) {}

  void Closeupoperation();

 private:
  ScheduleRecord* TakeOverChanges();
  std::int16_t IndexOf(const ScheduleRecord& ours);

  ServiceContext& context_;
};

}  // namespace ondura
