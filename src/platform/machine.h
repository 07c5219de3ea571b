#pragma once

#include "platform/clock.h"
#include "platform/code_page.h"
#include "platform/continuous_backup.h"
#include "platform/crypto.h"
#include "platform/desktop.h"
#include "platform/drives.h"
#include "platform/file_watch.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/internet.h"
#include "platform/locale_info.h"
#include "platform/message_pump.h"
#include "platform/name_resolution.h"
#include "platform/named_mutexes.h"
#include "platform/power.h"
#include "platform/processes.h"
#include "platform/profile_files.h"
#include "platform/registry.h"
#include "platform/services.h"
#include "platform/system_info.h"
#include "platform/web_requests.h"

namespace ondura {

// Everything that the component needs from the machine it runs on. Whoever makes a Machine keeps the ports
// alive for as long as it is used.
struct Machine {
  Clock& clock;
  MessagePump& pump;
  Files& files;
  Folders& folders;
  FileWatches& watches;
  Drives& drives;
  ProfileFiles& profiles;
  Registry& registry;
  Processes& processes;
  SystemInfo& system;
  LocaleInfo& locale;
  CodePage& code_page;
  Internet& internet;
  Crypto& crypto;
  Services& services;
  Desktop& desktop;
  Power& power;
  NameResolution& names;
  NamedMutexes& mutexes;
  ContinuousBackup& continuous_backup;
  WebRequests& web;
};

}  // namespace ondura
