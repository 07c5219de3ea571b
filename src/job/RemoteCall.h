#pragma once

#include "job/Connection.h"
#include "job/JobContext.h"

namespace ondura {

// The engine's first run after a new installation.
class RemoteCall {
 public:
  RemoteCall(JobContext& job, Connection& connection) : job_(job), connection_(connection) {}

  // Waits up to 500 s for a login in progress. Does nothing more unless the installation is new.
  void CallDummy();

 private:
  void WaitForLogin();
  void ReadSettings();
  void DeleteEngineFiles();

  JobContext& job_;
  Connection& connection_;
};

}  // namespace ondura
