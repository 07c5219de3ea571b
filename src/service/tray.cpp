#include "service/tray.h"

namespace ondura {

namespace {

constexpr int kShowMaximised = 3;

}  // namespace

bool TrayRuns(ServiceContext& context) {
  return context.services().programs.IsProcessRunningByModule(context.installation().TrayExe, Kill::kNo);
}

void OpenTray(ServiceContext& context) {
  const Installation& installation = context.installation();
  context.machine().processes.OpenForUser({.file = installation.ExeLocation + installation.TrayExe,
                                           .parameters = "",
                                           .folder = "",
                                           .show_mode = kShowMaximised});
}

}  // namespace ondura
