#pragma once

#include <string>

#include "service/DispatchPass.h"
#include "service/ServiceContext.h"

namespace ondura {

// The host's timer tick: which of the two hosts is in charge, and whether this one runs a pass.
class HostTick {
 public:
  HostTick(ServiceContext& context, DispatchPass& pass) : context_(context), pass_(pass) {}

  void Cont_CheckStandardRunning();

 private:
  bool TwinIsGone();
  void TakeOver(std::string_view trace_text);
  void RunPass();
  void OpenMonitorAfterTakeOver();

  ServiceContext& context_;
  DispatchPass& pass_;
  // As they were when the tick began.
  std::string standard_;
  std::string started_;
  std::string standby_backup_;
};

}  // namespace ondura
