#include "service/StartUp.h"

#include "profile/installation_folders.h"

#include "profile/user_list.h"
#include "reporting/Options.h"
#include "schedule/schedule_header.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::int16_t kPluginProduct = 2;

}  // namespace

void StartUp::cont_InitialSch(std::string_view path) {
  SettleFolders(context_.machine(), context_.installation(), path);
  Options& trace = context_.trace().plain();
  trace.WriteTraceMain("(S1)Input files location is " + context_.installation().VirtualPath);
  trace.WriteTraceMain("(S1)Exe location is " + context_.installation().ExeLocation);
  if (!LoadProduct()) return;
  Installation& installation = context_.installation();
  installation.CurrentUser = context_.store().ReadDefaultUser(profile_keys::kDefaultUser);
  context_.backup_set.BackupSetFilePath = installation.UserFile(kBackupSetFileName);
  ResetState(Reset::kAlways);
  CapMainTrace();
  if (installation.ProductNumber == kPluginProduct) SetUpPlugin();
}

void StartUp::cont_InitialSch_Backgrnd(std::string_view path) {
  SettleFolders(context_.machine(), context_.installation(), path);
  if (!LoadProduct()) return;
  ResetState(Reset::kUnlessJobIsAlive);
  CapMainTrace();
}

bool StartUp::ReadInstallation(std::string_view path) {
  return LoadInstallation(context_.machine(), context_.installation(), path);
}

bool StartUp::LoadProduct() {
  context_.job.state.memory.ServiceRunningFlag = false;
  return context_.configuration.LoadProductConfiguration();
}

// The service starts with the machine, so that what it finds was cut off. The twin starts whenever somebody
// logs on, also in the middle of a job of the service, whose flag, headers and keys must then stand: the
// first pass would run the same occurrence again.
void StartUp::ResetState(Reset reset) {
  const bool job_is_alive =
      reset == Reset::kUnlessJobIsAlive && context_.started.IsRaised() && context_.started.JobIsAlive();
  if (!job_is_alive) context_.started.Lower();
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kIntBackupAtStart, "0");
  context_.state.WaitingForInteractive = false;
  context_.state.IntBackupPasses = 0;
  context_.shadow_copy.ClearLaunchFlag();
  context_.sql_elevated.ClearLaunchFlags();
  if (!job_is_alive) ResetUsers();
}

void StartUp::ResetUsers() {
  std::vector<std::string> users;
  if (!ReadUserList(context_.machine(), context_.installation().VirtualPath, users)) return;
  for (const std::string& user : users) const_InitUserdata(user);
}

void StartUp::const_InitUserdata(std::string_view user) {
  if (user.empty()) return;
  context_.installation().CurrentUser = user;
  context_.job.keys.WriteStatus(StatusWord::kIdle);
  WriteHeaderWord(context_.machine().files, context_.installation().UserFile(kScheduleFileName), kIdleWord);
}

void StartUp::CapMainTrace() {
  const std::string path = context_.installation().DataFile(kScheduleTraceFile);
  Files& files = context_.machine().files;
  if (files.Size(path).value_or(0) > kTraceCapBytes) files.Remove(path, Removal::kPlain);
}

void StartUp::SetUpPlugin() {
  const std::string launched = context_.transfer().Trf_ReadUserNameProfile(profile_keys::kPluginLaunch);
  if (!launched.empty() && launched != "0") return;
  if (context_.services().facts.IsWow64()) {
    RegisterPlugin64();
  } else {
    RegisterPlugin();
  }
}

void StartUp::RegisterPlugin64() {
  const Installation& installation = context_.installation();
  const std::string batch = installation.ExeLocation + "x64 " + installation.ExeGroup + "UI register.bat";
  if (!context_.machine().files.Exists(batch)) return;
  Processes& processes = context_.machine().processes;
  processes.OpenForUser({.file = batch, .parameters = "", .folder = "", .show_mode = 0});
  processes.OpenForUser({.file = installation.ExeLocation + installation.ExeGroup + "UI.exe",
                         .parameters = "",
                         .folder = "",
                         .show_mode = 0});
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kPluginLaunch, "1");
}

void StartUp::RegisterPlugin() {
  const Installation& installation = context_.installation();
  const std::string library = installation.ProductInstallationName + "UI.dll";
  if (context_.machine().files.Exists(installation.ExeLocation + library)) {
    const ProcessWatch started(context_.machine().processes, context_.services().programs.LaunchHidden(
                                                                 "regsvr32.exe", "/s " + library,
                                                                 WithoutLast(installation.ExeLocation), 0));
  }
  context_.transfer().Trf_WriteUserNameProfile(profile_keys::kPluginLaunch, "1");
}

void StartUp::Cont_login() {
  context_.web_security.SecureRequestFlag = context_.state.secure ? kRequestSecure : 0;
  context_.web_security.ServerHttpPort = context_.state.secure ? "443" : "80";
}

}  // namespace ondura
