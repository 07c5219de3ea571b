#pragma once

#include "platform/Clock.h"
#include "platform/CodePage.h"
#include "platform/ContinuousBackup.h"
#include "platform/Crypto.h"
#include "platform/Desktop.h"
#include "platform/Drives.h"
#include "platform/FileWatch.h"
#include "platform/Files.h"
#include "platform/Folders.h"
#include "platform/Internet.h"
#include "platform/LocaleInfo.h"
#include "platform/MessagePump.h"
#include "platform/NameResolution.h"
#include "platform/NamedMutexes.h"
#include "platform/Power.h"
#include "platform/Processes.h"
#include "platform/ProfileFiles.h"
#include "platform/Registry.h"
#include "platform/Services.h"
#include "platform/SystemInfo.h"
#include "platform/WebRequests.h"

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
