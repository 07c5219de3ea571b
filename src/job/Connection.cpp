#include "job/Connection.h"

#include <chrono>

#include "engine/engine_files.h"
#include "engine/engine_results.h"
#include "job/Quota.h"
#include "job/failure_texts.h"
#include "job/job_texts.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr int kMostTries = 10;
constexpr int kTriesBeforeFallback = 5;
constexpr milliseconds kPauseAfterTry{1000};

}  // namespace

void Connection::ReadPort() {
  JobRun& run = job_.state.run;
  const JobServices& services = job_.services;
  services.trace.User("  OutgoingPort : " + services.installation.DefaultPort);
  run.port = services.transfer.Trf_ReadUserProfile(profile_keys::kPort);
  if (run.port.empty()) {
    run.port = services.installation.DefaultPort;
    services.transfer.Trf_WriteUserProfileDefault(profile_keys::kOutPort, run.port);
    services.transfer.Trf_WriteUserProfile(profile_keys::kPort, run.port);
  }
  services.trace.User("  OutgoingPort : " + run.port);
  services.trace.User("  Sch_IPAddress : " + run.serverip);
}

void Connection::ReadAccount() {
  Account& account = job_.state.run.account;
  const Transfer& transfer = job_.services.transfer;
  account.user_name = transfer.Trf_ReadUserProfile(profile_keys::kUserName);
  account.password = transfer.Trf_ReadUserProfile(profile_keys::kPassword);
  account.encryption_password = transfer.Trf_ReadUserProfileNew(profile_keys::kEncPasswordNew);
  if (account.encryption_password.empty()) {
    account.encryption_password = transfer.Trf_ReadUserProfile(profile_keys::kEncPassword);
  }
  job_.state.run.serverip = transfer.Trf_ReadUserProfile(profile_keys::kServerIp);
  account.random = transfer.Trf_ReadUserProfile(profile_keys::kRandom);
  if (account.random.empty()) {
    account.random = job_.services.store.ReadSharedRegistryValue(job_.installation().ProductInstallationName +
                                                                 " client system random number");
  }
}

void Connection::SettleAddress() {
  JobRun& run = job_.state.run;
  const JobServices& services = job_.services;
  if (run.serverip.empty()) {
    run.serverip = services.installation.DefaultServerAddress;
    services.transfer.Trf_WriteUserProfileDefault(profile_keys::kIpAddress, run.serverip);
    services.transfer.Trf_WriteUserProfile(profile_keys::kServerIp, run.serverip);
  }
  services.trace.User("  Sch_IPAddress : " + run.serverip);
  services.trace.User("  ini file : " + services.installation.UserFolder() +
                      services.installation.ProfileIniName);
  ReadProxy();
  services.trace.User("  Recieved all configuration data.");
  services.trace.User(" [CALLING] API_GET_PORTNUMBER() for getting port info");
}

void Connection::ReadProxy() {
  ProxyProfile& proxy = job_.state.run.proxy;
  const auto read = [this](const ProfileKey& key) {
    return job_.services.transfer.Trf_ReadProxyProfile(key);
  };
  proxy = {};
  proxy.Proxyset = read(profile_keys::kProxySet);
  if (proxy.Proxyset.empty()) proxy.Proxyset = "0";
  if (proxy.Proxyset != "1") return;
  proxy.proxytypehttp = read(profile_keys::kProxyHttp);
  proxy.proxytypesocks = read(profile_keys::kProxySocks);
  proxy.ProxyName = read(profile_keys::kProxyName);
  proxy.ProxyPort = read(profile_keys::kProxyPort);
  proxy.ProxyAuthOn = read(profile_keys::kProxyAuthOn);
  if (!ReadsAsTrue(proxy.ProxyAuthOn)) return;
  proxy.ProxyUser = read(profile_keys::kProxyUser);
  proxy.ProxyPass = read(profile_keys::kProxyPassword);
}

Leave Connection::DiscoverPort() {
  EngineResult result;
  if (auto leave = AskForPort(result)) return leave;
  if (engine_results::EndsJobBeforeTransfer(result)) return FailPort(result);
  TakeEngineAnswer();
  if (auto leave = RequireAddress()) return leave;
  Options& trace = job_.trace().plain();
  trace.WriteTrace("Checking aborted after port info");
  trace.WriteTraceMain("Checking aborted after port info");
  if (auto leave = abort_.TestForAbort(job_texts::kAbortedPort)) return leave;
  job_.trace().User("  IP : " + job_.state.run.serverip);
  job_.trace().User("  Port : " + job_.state.run.port);
  return std::nullopt;
}

Leave Connection::AskForPort(EngineResult& result) {
  const JobServices& services = job_.services;
  const std::string parameters =
      EngineParameters(EngineCommand::kPortNumber, job_.temp_folder.GetTempFolderPath());
  for (int tries = 0; tries < kMostTries;) {
    job_.state.run.start_time = services.machine.clock.Now();
    services.trace.plain().WriteTrace("Calling Clsclient with cmdline : " + parameters);
    services.trace.plain().WriteTrace("Exe path is : " + job_.engine.EnginePath());
    if (job_.engine.RunPortNumber(parameters) == PortWait::kAborted) {
      return abort_.LeaveAborted(job_texts::kAborted28);
    }
    result = job_.engine.ReadResult();
    services.trace.User("  Finished API_GET_PORTNUMBER,Return value from backup engine  " + result.Text());
    if (engine_results::IsConnectionTrouble(result)) {
      ++tries;
      if (services.facts.LogConnectionState()) {
        services.machine.clock.Sleep(kPauseAfterTry);
        if (tries % kTriesBeforeFallback == 0) TakeFallbackAddress();
      }
    } else if (result == engine_results::kWrongPassword) {
      tries = kMostTries;
    } else if (result == engine_results::kNoPortInformation) {
      services.trace.User("  retval = -40, No port information for this user.");
      const JobCode code = abort_.LeaveWithoutPort();
      job_.keys.AddFailureDay();
      return code;
    } else {
      tries = kMostTries;
      services.machine.clock.Sleep(kPauseAfterTry);
    }
    if (job_.keys.CheckAborted()) return abort_.LeaveAborted(job_texts::kAborted28);
  }
  return std::nullopt;
}

void Connection::TakeFallbackAddress() {
  job_.state.run.port = job_.installation().DefaultPort;
  job_.state.run.serverip = job_.installation().AlternateServerAddress;
  StoreAddress();
}

void Connection::StoreAddress() {
  const JobRun& run = job_.state.run;
  const Transfer& transfer = job_.services.transfer;
  transfer.Trf_WriteUserProfileDefault(profile_keys::kIpAddress, run.serverip);
  transfer.Trf_WriteUserProfileDefault(profile_keys::kOutPort, run.port);
  transfer.Trf_WriteUserProfile(profile_keys::kServerIp, run.serverip);
  transfer.Trf_WriteUserProfile(profile_keys::kPort, run.port);
}

Leave Connection::FailPort(EngineResult result) {
  job_.keys.AddFailureDay();
  if (engine_results::EndsSchedule(result)) return abort_.LeaveWithoutSchedule(result);
  if (result == engine_results::kCannotConnect) job_.end_status.WriteBackupFailed();
  if (result == engine_results::kWrongPassword)
    job_.services.transfer.Trf_WriteUserProfile(profile_keys::kPassword, "");
  return abort_.LeaveFailed(FailureText(result, job_texts::kUnableToPerform, job_.installation().ProductName),
                            JobEndOf(result));
}

void Connection::TakeEngineAnswer() {
  JobRun& run = job_.state.run;
  TextFiles text_files(job_.machine().files, job_.machine().code_page);
  const auto lines =
      text_files.ReadLines(job_.installation().UserFile(engine_files::kPortOutput), Encoding::kCodePage);
  if (!lines) return;
  if (!lines->empty()) run.port = lines->at(0);
  if (lines->size() > 1) run.serverip = lines->at(1);
  StoreAddress();
  job_.trace().User("  Sch_IPAddress (New) :  " + run.serverip);
  job_.trace().User("  OutgoingPort (New) : " + run.port);
}

Leave Connection::RequireAddress() {
  JobRun& run = job_.state.run;
  if (!run.serverip.empty()) return std::nullopt;
  run.serverip = job_.services.transfer.Trf_ReadUserProfile(profile_keys::kServerIp);
  run.port = job_.services.transfer.Trf_ReadUserProfile(profile_keys::kPort);
  if (!run.serverip.empty()) return std::nullopt;
  job_.trace().User("  No port information recieved from server.");
  const JobCode code = abort_.LeaveWithoutPort();
  job_.temp_folder.DeleteTempFolder();
  job_.keys.AddFailureDay();
  return code;
}

Leave Connection::StopOverQuota() {
  const Quota quota = ReadQuotaOutputFile(job_.services.store);
  if (!quota.IsExceeded()) return std::nullopt;
  JobRun& run = job_.state.run;
  Options& trace = job_.trace().plain();
  trace.WriteTrace("User's quota is exceeding so not calling backup command");
  trace.WriteTrace(QuotaTrace(quota));
  abort_.EndPrograms();
  job_.keys.StampEnd();
  job_.keys.Write(profile_keys::kStatusMessage, "1");
  job_.end_status.WriteStatusText(job_texts::kQuotaStop);
  Progress& progress = job_.services.progress;
  run.result_text = "Used Quota: " + progress.GetProperSizeValue(quota.used) +
                    "\r\nMax Quota: " + progress.GetProperSizeValue(quota.max) + "\r\n\r\n" +
                    std::string{job_texts::kQuotaStop};
  run.session_path = job_.services.session_log.NewPath();
  job_.services.session_log.WriteQuotaSessionLog(run.session_path, run.result_text);
  run.result_text = job_texts::kQuotaStop;
  job_.end_status.WriteJobEndStatus(engine_results::kQuotaUsedUp);
  job_.engine.StartTotalSize();
  job_.keys.WriteKilled();
  progress.WriteTransferOver();
  return kJobStopped;
}

}  // namespace ondura
