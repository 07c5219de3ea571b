#pragma once

#include <type_traits>

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

// `port` if it is a port of the type `Own`, else `own`.
template <typename Own, typename Port>
Own& ReplacedBy(Port& port, Own& own) {
  if constexpr (std::is_base_of_v<Own, Port>) {
    return port;
  } else {
    return own;
  }
}

template <typename Port, typename... Ports>
inline constexpr bool kIsOneOf = (std::is_base_of_v<Ports, Port> || ...);

// `machine` with `port` in place of its own port of that type. `port` has to live as long as the result.
template <typename Port>
Machine With(const Machine& machine, Port& port) {
  static_assert(kIsOneOf<Port, Clock, MessagePump, Files, Folders, FileWatches, Drives, ProfileFiles,
                         Registry, Processes, SystemInfo, LocaleInfo, CodePage, Internet, Crypto, Services,
                         Desktop, Power, NameResolution, NamedMutexes, ContinuousBackup, WebRequests>,
                "only a port can take the place of one");
  return {
      .clock = ReplacedBy(port, machine.clock),
      .pump = ReplacedBy(port, machine.pump),
      .files = ReplacedBy(port, machine.files),
      .folders = ReplacedBy(port, machine.folders),
      .watches = ReplacedBy(port, machine.watches),
      .drives = ReplacedBy(port, machine.drives),
      .profiles = ReplacedBy(port, machine.profiles),
      .registry = ReplacedBy(port, machine.registry),
      .processes = ReplacedBy(port, machine.processes),
      .system = ReplacedBy(port, machine.system),
      .locale = ReplacedBy(port, machine.locale),
      .code_page = ReplacedBy(port, machine.code_page),
      .internet = ReplacedBy(port, machine.internet),
      .crypto = ReplacedBy(port, machine.crypto),
      .services = ReplacedBy(port, machine.services),
      .desktop = ReplacedBy(port, machine.desktop),
      .power = ReplacedBy(port, machine.power),
      .names = ReplacedBy(port, machine.names),
      .mutexes = ReplacedBy(port, machine.mutexes),
      .continuous_backup = ReplacedBy(port, machine.continuous_backup),
      .web = ReplacedBy(port, machine.web),
  };
}

}  // namespace ondura
