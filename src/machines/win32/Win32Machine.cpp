#include "machines/win32/Win32Machine.h"

#include "machines/win32/ports.h"

namespace ondura {

namespace {

class RunningWindows : public Win32Machine {
 public:
  const Machine& machine() override { return machine_; }

 private:
  std::unique_ptr<Clock> clock_ = MakeWin32Clock();
  std::unique_ptr<MessagePump> pump_ = MakeWin32MessagePump();
  std::unique_ptr<Files> files_ = MakeWin32Files();
  std::unique_ptr<Folders> folders_ = MakeWin32Folders();
  std::unique_ptr<FileWatches> watches_ = MakeWin32FileWatches();
  std::unique_ptr<Drives> drives_ = MakeWin32Drives();
  std::unique_ptr<ProfileFiles> profiles_ = MakeWin32ProfileFiles();
  std::unique_ptr<Registry> registry_ = MakeWin32Registry();
  std::unique_ptr<Processes> processes_ = MakeWin32Processes();
  std::unique_ptr<SystemInfo> system_ = MakeWin32SystemInfo();
  std::unique_ptr<LocaleInfo> locale_ = MakeWin32LocaleInfo();
  std::unique_ptr<CodePage> code_page_ = MakeWin32CodePage();
  std::unique_ptr<Internet> internet_ = MakeWin32Internet();
  std::unique_ptr<Crypto> crypto_ = MakeWin32Crypto();
  std::unique_ptr<WebRequests> web_ = MakeWin32WebRequests();
  std::unique_ptr<Services> services_ = MakeWin32Services();
  std::unique_ptr<Desktop> desktop_ = MakeWin32Desktop();
  std::unique_ptr<Power> power_ = MakeWin32Power();
  std::unique_ptr<NameResolution> names_ = MakeWin32NameResolution();
  std::unique_ptr<NamedMutexes> mutexes_ = MakeWin32NamedMutexes();
  std::unique_ptr<ContinuousBackup> continuous_backup_ = MakeWin32ContinuousBackup();

  Machine machine_{
      .clock = *clock_,
      .pump = *pump_,
      .files = *files_,
      .folders = *folders_,
      .watches = *watches_,
      .drives = *drives_,
      .profiles = *profiles_,
      .registry = *registry_,
      .processes = *processes_,
      .system = *system_,
      .locale = *locale_,
      .code_page = *code_page_,
      .internet = *internet_,
      .crypto = *crypto_,
      .services = *services_,
      .desktop = *desktop_,
      .power = *power_,
      .names = *names_,
      .mutexes = *mutexes_,
      .continuous_backup = *continuous_backup_,
      .web = *web_,
  };
};

}  // namespace

std::unique_ptr<Win32Machine> MakeWin32Machine() { return std::make_unique<RunningWindows>(); }

}  // namespace ondura
