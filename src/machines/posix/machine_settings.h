#pragma once

#include <chrono>
#include <map>
#include <string>

#include "machines/portable/CodePageTable.h"
#include "platform/Internet.h"
#include "platform/SystemInfo.h"

namespace ondura {

// Web requests keep to the platform's own time-outs where nothing shorter is set.
inline constexpr std::chrono::milliseconds kLongestWebTimeout{std::chrono::hours{1}};

// What `machine.ini` in the root folder says about the machine, with the default of every entry.
struct MachineSettings {
  std::map<char, std::string> drives;  // letter to host folder
  std::string short_date = "M/d/yyyy";
  std::string time_format = "h:mm:ss tt";
  std::string decimal = ".";
  CodePageTable code_page;
  SystemVersion version{2, 6, 1, true};
  bool is_wow64 = false;
  bool is_64_bit = true;
  std::string system_folder = R"(C:\Windows\system32)";
  std::string local_data_folder = R"(C:\Users\Default\AppData\Local)";
  std::string computer_name = "ONDURA";
  std::string exit_command;
  ConnectedState connection{true, 0x12, "Local Area Connection"};  // a network card, and configured
  std::chrono::milliseconds web_timeout{kLongestWebTimeout};       // no part of a web request takes longer
  std::map<std::string, int> services;                             // lower-case name to state
};

// Fills `settings`. A missing file leaves the defaults. The error is empty, or a sentence that names the
// line at fault.
std::string LoadMachineSettings(const std::string& root, MachineSettings& settings);

}  // namespace ondura
