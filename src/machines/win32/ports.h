#pragma once

#include <memory>

#include "platform/machine.h"

namespace ondura {

// The ports of the running Windows. They stand on nothing but the system's calls.
std::unique_ptr<Clock> MakeWin32Clock();
std::unique_ptr<MessagePump> MakeWin32MessagePump();
std::unique_ptr<Files> MakeWin32Files();
std::unique_ptr<Folders> MakeWin32Folders();
std::unique_ptr<FileWatches> MakeWin32FileWatches();
std::unique_ptr<Drives> MakeWin32Drives();
std::unique_ptr<ProfileFiles> MakeWin32ProfileFiles();
std::unique_ptr<Registry> MakeWin32Registry();
std::unique_ptr<Processes> MakeWin32Processes();
std::unique_ptr<SystemInfo> MakeWin32SystemInfo();
std::unique_ptr<LocaleInfo> MakeWin32LocaleInfo();
std::unique_ptr<CodePage> MakeWin32CodePage();
std::unique_ptr<Internet> MakeWin32Internet();
std::unique_ptr<WebRequests> MakeWin32WebRequests();
std::unique_ptr<Crypto> MakeWin32Crypto();
std::unique_ptr<Services> MakeWin32Services();
std::unique_ptr<Desktop> MakeWin32Desktop();
std::unique_ptr<Power> MakeWin32Power();
std::unique_ptr<NameResolution> MakeWin32NameResolution();
std::unique_ptr<NamedMutexes> MakeWin32NamedMutexes();
std::unique_ptr<ContinuousBackup> MakeWin32ContinuousBackup();

}  // namespace ondura
