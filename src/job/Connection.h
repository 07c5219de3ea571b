#pragma once

#include <string>

#include "job/AbortForms.h"
#include "job/JobContext.h"

namespace ondura {

// Settles which server and port the engine is to use, and writes them where it reads them.
class Connection {
 public:
  Connection(JobContext& job, AbortForms& abort) : job_(job), abort_(abort) {}

  // The port at the start of the job: the profile's, or the default one.
  void ReadPort();

  // The server address and the proxy profile.
  void SettleAddress();

  // Account, encryption password and random number into the job's state.
  void ReadAccount();
  void ReadProxy();

  // Command 24, up to ten times, and what the engine answered.
  Leave DiscoverPort();

  // Ends the job before any transfer when more is used than the account may hold.
  Leave StopOverQuota();

 private:
  Leave AskForPort(EngineResult& result);
  void TakeFallbackAddress();
  void StoreAddress();
  Leave FailPort(EngineResult result);
  void TakeEngineAnswer();
  Leave RequireAddress();

  JobContext& job_;
  AbortForms& abort_;
};

}  // namespace ondura
