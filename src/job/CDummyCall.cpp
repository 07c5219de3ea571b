#include "job/CDummyCall.h"

#include <chrono>

#include "engine/engine_command.h"
#include "engine/engine_files.h"
#include "util/TextFiles.h"
#include "util/clsIPResolve.h"
#include "util/waits.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kDummyUser = "schusername";

}  // namespace

double CDummyCall::DoDummycall(std::string_view sExeName) {
  Machine& machine = services_.machine;
  const Installation& installation = services_.installation;
  // The look-up wakes the connection; its answer is not needed.
  clsIPResolve(machine.names, machine.desktop).GetIPFromHostName(installation.DomainName);
  const std::string folder = installation.FolderOf(kDummyUser);
  services_.schedule_file.ScheduleFilePath = folder;
  machine.folders.Make(folder);
  CreateTempFolder(kDummyUser, "d");
  const std::string parameters = EngineParameters(EngineCommand::kFirstContact, GetTempFolderPath());
  ProcessWatch engine(machine.processes,
                      services_.programs.LaunchHidden(installation.ExeLocation + "\\" + std::string{sExeName},
                                                      parameters, installation.WorkingFolder(), 0));
  // Nobody can end the wait for a program that is not there.
  WaitUntilEndedOrStoppedIfStarted(machine, engine, milliseconds{0}, [] { return false; });
  machine.clock.Sleep(milliseconds{1000});
  const double result = services_.store.ReadLastRetValue();
  machine.clock.Sleep(milliseconds{2000});
  DeleteTempFolder();
  machine.folders.Remove(folder, Removal::kPlain);
  return result;
}

EngineFileResult CDummyCall::ResdDLLOutputFile() {
  TextFiles text_files(services_.machine.files, services_.machine.code_page);
  EngineFileResult result =
      ReadEngineResultFile(text_files, GetTempFolderPath() + "\\" + std::string{engine_files::kOutput});
  if (result.bResult) {
    result.strDescrip.reset();
    return result;
  }
  result =
      ReadEngineResultFile(text_files, GetTempFolderPath() + "\\" + std::string{engine_files::kOutputInfo});
  result.bResult = false;
  return result;
}

}  // namespace ondura
