#include "service/Controller.h"

#include "backupset/remove_duplicate.h"
#include "job/size_abort.h"
#include "profile/user_defaults.h"
#include "text/separators.h"
#include "util/clsIPResolve.h"

namespace ondura {

void Controller::CopyDefaults(std::string_view user) {
  ondura::CopyDefaults(parts_.context.machine(), parts_.context.installation(), user);
}

void Controller::RemoveDuplicate(std::vector<std::string>& list) {
  ondura::RemoveDuplicate(parts_.context.machine(), list);
}

std::int16_t Controller::CheckLDBStatus() {
  return services().local_database.CheckLDBStatus(parts_.context.job.state.memory.RunFolderText);
}

void Controller::CalculateTotalSize() {
  const SizeJob job{JobKindOf(services().schedule_file.schvTemp.recordno),
                    parts_.context.job.state.run.dump_folder};
  if (parts_.sizes.CalculateTotalSize(job) == SizeOutcome::kStopped) LeaveSizeCalculation(parts_.context.job);
}

std::string Controller::TrimSpaceFromPathOne(std::string_view sPath) {
  return ondura::TrimSpaceFromPathOne(sPath);
}

std::string Controller::ReadProfilefromRegistry(std::string_view param) {
  return parts_.context.store().ReadProfilefromRegistry(param);
}

std::string Controller::ReadProfilefromRegistryWithoutDeCrypt(std::string_view param) {
  return parts_.context.store().ReadProfilefromRegistryWithoutDeCrypt(param);
}

std::string Controller::ReadRandomNumFromRegistry(std::string_view param) {
  return parts_.context.store().ReadRandomNumFromRegistry(param);
}

void Controller::WriteGeneralMessage(FileWriter& stream) { ondura::WriteGeneralMessage(stream); }

std::string Controller::GetIPFromHostName(std::string_view sHostName) {
  const Machine& machine = parts_.context.machine();
  return clsIPResolve(machine.names, machine.desktop).GetIPFromHostName(sHostName);
}

std::string Controller::GetHostNameFromIP(std::string_view sIPAddress) {
  const Machine& machine = parts_.context.machine();
  return clsIPResolve(machine.names, machine.desktop).GetHostNameFromIP(sIPAddress);
}

}  // namespace ondura
