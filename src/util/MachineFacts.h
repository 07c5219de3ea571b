#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "util/TraceSink.h"

namespace ondura {

// Small facts about the machine: its system, services, connection, registry, drives and locale.
class MachineFacts {
 public:
  MachineFacts(const Machine& machine, TraceSink& trace) : machine_(machine), trace_(trace) {}

  int GetPlatformId();
  bool IsVistaFamily();
  bool IsVista() { return IsVistaFamily(); }
  bool IsServer2008();
  bool IsWow64() { return machine_.system.IsWow64(); }
  bool Is64BitSystem() { return machine_.system.Is64Bit(); }

  // 1 stopped to 4 running to 7 paused; 0 on any failure.
  int ServiceState(std::string_view service_name);

  // A service that runs sets the flag and one in any other state clears it; a failed look keeps it.
  void CheckServiceRunning(std::string_view service_name, bool& ServiceRunningFlag);

  // Writes what the system says about its connection into the user's trace. True when connected.
  bool LogConnectionState();

  // A text, number or byte. One backslash at the start of the key is dropped. std::nullopt for a missing
  // value and for every other type.
  std::optional<RegistryValue> ReadRegistryValue(RegistryRoot hRoot, std::string_view sKey,
                                                 std::string_view sValueName);

  // The whole text of a file in the system code page; empty when it is missing.
  std::string ReadDataFile(std::string_view data_folder, std::string_view sName);

  // Bytes free for the caller; 0 for a path that is missing.
  double GetFreeDiskBytes(std::string_view sPath);

  // "C:|D:|": the drives of a known kind.
  std::string DriveListText();

  // A text of the user's locale by its number (LocaleInfo.h); empty if the locale has no such text.
  std::string GetLocaleString(int lLocaleNum) { return machine_.locale.Text(lLocaleNum); }

  // The present time as it is in file names.
  std::string GetSystemTime();

  // Makes and removes a test file in the folder, whose text ends in a backslash. True in every case: all
  // there is to see is the file that comes and goes.
  bool CheckForWriteAccessPermission(std::string_view sFolder);

 private:
  std::string Stamp();

  Machine machine_;
  TraceSink& trace_;
};

// "MM-DD-YYYY HH-MM-SS", each part of the time with two digits.
std::string SystemTimeText(LocalTime time);

}  // namespace ondura
