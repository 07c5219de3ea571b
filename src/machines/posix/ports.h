#pragma once

#include <functional>
#include <memory>
#include <string>

#include "machines/portable/CodePageTable.h"
#include "machines/posix/IniStore.h"
#include "machines/posix/PathMap.h"
#include "machines/posix/host_time.h"
#include "machines/posix/machine_settings.h"
#include "platform/machine.h"

namespace ondura {

// The ports of a machine in a folder, each made from what it builds on. The referenced objects outlive them.
std::unique_ptr<Clock> MakePosixClock(LocalZone& zone, int speed);
std::unique_ptr<MessagePump> MakePosixMessagePump(std::function<void()> pump);
std::unique_ptr<Files> MakePosixFiles(PathMap& paths, LocalZone& zone);
std::unique_ptr<Folders> MakePosixFolders(PathMap& paths, LocalZone& zone);
std::unique_ptr<FileWatches> MakePosixFileWatches(PathMap& paths);
std::unique_ptr<Drives> MakePosixDrives(PathMap& paths, const MachineSettings& settings);
std::unique_ptr<ProfileFiles> MakePosixProfileFiles(PathMap& paths, IniStore& store,
                                                    const CodePageTable& code_page);
std::unique_ptr<Registry> MakePosixRegistry(const std::string& root, IniStore& store,
                                            const CodePageTable& code_page);
std::unique_ptr<Processes> MakePosixProcesses(PathMap& paths, Clock& clock, const MachineSettings& settings,
                                              int speed);
std::unique_ptr<SystemInfo> MakePosixSystemInfo(const MachineSettings& settings);
std::unique_ptr<LocaleInfo> MakePosixLocaleInfo(const MachineSettings& settings);
std::unique_ptr<Internet> MakePosixInternet(const MachineSettings& settings);
std::unique_ptr<WebRequests> MakePosixWebRequests(const MachineSettings& settings);
std::unique_ptr<Services> MakePosixServices(const MachineSettings& settings);
std::unique_ptr<Desktop> MakePosixDesktop();
std::unique_ptr<Power> MakePosixPower(const MachineSettings& settings);
std::unique_ptr<NameResolution> MakePosixNameResolution();
std::unique_ptr<NamedMutexes> MakePosixNamedMutexes(const std::string& root, Clock& clock, int speed);
std::unique_ptr<ContinuousBackup> MakePosixContinuousBackup();

}  // namespace ondura
