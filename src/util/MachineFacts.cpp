#include "util/MachineFacts.h"

#include "text/text.h"
#include "util/TextFiles.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr int kNtFamily = 2;
constexpr int kServiceRunning = 4;
constexpr std::chrono::milliseconds kTestFilePause{10};

bool IsMajorSix(const SystemVersion& version) {
  return version.platform_id == kNtFamily && version.major == 6;
}

}  // namespace

int MachineFacts::GetPlatformId() { return machine_.system.Version().platform_id; }

bool MachineFacts::IsVistaFamily() {
  const SystemVersion version = machine_.system.Version();
  return IsMajorSix(version) && version.minor >= 0 && version.minor <= 3;
}

bool MachineFacts::IsServer2008() {
  const SystemVersion version = machine_.system.Version();
  return IsMajorSix(version) && version.minor == 0 && !version.is_workstation;
}

int MachineFacts::ServiceState(std::string_view service_name) {
  return machine_.services.State(service_name,
                                 IsVistaFamily() ? ServiceManagerAccess::kRead : ServiceManagerAccess::kAll);
}

void MachineFacts::CheckServiceRunning(std::string_view service_name, bool& ServiceRunningFlag) {
  const int state = ServiceState(service_name);
  if (state != 0) ServiceRunningFlag = state == kServiceRunning;
}

bool MachineFacts::LogConnectionState() {
  const ConnectedState state = machine_.internet.ExtendedState();
  const std::string flags = " Return Val from ConnectedState : " + std::to_string(state.flags);
  trace_.WriteTrace(Stamp() + flags +
                    (state.connected ? ". You are connected to Internet via a " + state.connection_name
                                     : ". You are not connected to internet"));
  // Asked only after a connection has failed, so a machine that reports one is taken to be blocked.
  const bool is_connected = machine_.internet.IsConnected();
  trace_.WriteTrace(Stamp() +
                    (is_connected ? " Firewall is blocking the Exe." : " There's no internet connection."));
  return is_connected;
}

std::optional<RegistryValue> MachineFacts::ReadRegistryValue(RegistryRoot hRoot, std::string_view sKey,
                                                             std::string_view sValueName) {
  if (sKey.starts_with('\\')) sKey.remove_prefix(1);
  auto value =
      machine_.registry.Read({.root = hRoot, .key = sKey, .value = sValueName}, RegistryAccess::kAll);
  if (value && value->type == RegistryType::kOther) return std::nullopt;
  return value;
}

std::string MachineFacts::ReadDataFile(std::string_view data_folder, std::string_view sName) {
  TextFiles text_files{machine_.files, machine_.code_page};
  return text_files.Read(std::string{data_folder}.append(sName), Encoding::kCodePage).value_or("");
}

double MachineFacts::GetFreeDiskBytes(std::string_view sPath) {
  return static_cast<double>(machine_.drives.FreeBytes(sPath).value_or(0));
}

std::string MachineFacts::DriveListText() {
  std::string list;
  for (const std::string& root : machine_.drives.Roots()) {
    if (machine_.drives.KindOf(root) != DriveKind::kUnknown) list.append(root, 0, 2).append("|");
  }
  return list;
}

std::string MachineFacts::GetSystemTime() { return SystemTimeText(machine_.clock.Now()); }

bool MachineFacts::CheckForWriteAccessPermission(std::string_view sFolder) {
  const std::string path = std::string{sFolder} + "tmp.mtp";
  machine_.files.Append(path, "", IfMissing::kCreate);
  machine_.clock.Sleep(kTestFilePause);
  machine_.files.Remove(path, Removal::kForce);
  machine_.clock.Sleep(kTestFilePause);
  return true;
}

std::string MachineFacts::Stamp() { return FormatDate(kStampPicture, machine_.clock.Now()); }

std::string SystemTimeText(LocalTime time) {
  // A colon can't be in a file name.
  return ReplaceAll(FormatDate(kStampPicture, time), ":", "-");
}

}  // namespace ondura
