#include "job/RemoteCall.h"

#include <chrono>
#include <initializer_list>

#include "engine/engine_files.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr int kLoginPasses = 5000;

}  // namespace

void RemoteCall::CallDummy() {
  const JobServices& services = job_.services;
  WaitForLogin();
  const std::string marker = services.installation.DataFile("NewInstallation.txt");
  if (!services.machine.files.Exists(marker)) return;
  services.machine.files.Remove(marker, Removal::kPlain);
  services.machine.clock.Sleep(milliseconds{1000});
  services.trace.User("  Dummy Call started");
  ReadSettings();
  // A left-over with the user's name goes; the name itself is not written anywhere.
  services.machine.files.Remove(services.installation.DataFile("UserName.txt"), Removal::kPlain);
  services.trace.User("  Recieved all info");
  DeleteEngineFiles();
  job_.state.run.start_time = services.machine.clock.Now();
  job_.engine.RunRemote();
  services.trace.User("  Finished API_REMOTE  " + job_.engine.ReadResult().Text());
  services.machine.files.Remove(services.installation.UserFile(engine_files::kInput), Removal::kPlain);
  services.machine.files.Remove(services.installation.UserFile(engine_files::kOutput), Removal::kPlain);
  services.trace.User("  Dummy call success");
}

void RemoteCall::WaitForLogin() {
  const JobServices& services = job_.services;
  const std::string marker = services.installation.UserFile("LoginProgress.txt");
  for (int pass = 0; pass <= kLoginPasses && services.machine.files.Exists(marker); ++pass) {
    services.machine.clock.Sleep(milliseconds{100});
  }
}

void RemoteCall::ReadSettings() {
  JobRun& run = job_.state.run;
  connection_.ReadAccount();
  run.port = job_.services.transfer.Trf_ReadUserProfile(profile_keys::kPort);
  if (run.port.empty()) run.port = job_.installation().DefaultPort;
  if (run.serverip != "localhost") run.serverip = job_.installation().DefaultServerAddress;
  connection_.ReadProxy();
}

void RemoteCall::DeleteEngineFiles() {
  for (const std::string_view name :
       {engine_files::kOutput, engine_files::kInput, engine_files::kOutputInfo}) {
    job_.machine().files.Remove(job_.installation().UserFile(name), Removal::kPlain);
  }
}

}  // namespace ondura
