#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ContinuousBackup.h"
#include "platform/Desktop.h"
#include "platform/Internet.h"
#include "platform/LocaleInfo.h"
#include "platform/Registry.h"
#include "platform/SystemInfo.h"
#include "platform/WebRequests.h"
#include "platform/local_time.h"

namespace ondura {

struct ShownMessage {
  std::string text;
  std::string title;
  MessageIcon icon = MessageIcon::kNone;

  friend bool operator==(const ShownMessage&, const ShownMessage&) = default;
};

// A top-level window. Whoever puts it there takes it away.
struct SimulatedWindow {
  ProcessId process = 0;
  std::string window_class;
  std::string title;
  bool is_shown = true;
  std::vector<std::uint32_t> posted;  // messages that were sent to it
};

// One request as it went out.
struct SentWebRequest {
  std::string agent;
  std::string host;
  std::uint16_t port = 0;
  std::string verb;
  std::string object;
  std::string version;
  std::uint32_t flags = 0;
  std::vector<std::string> headers;  // in the order in which they were added
  std::map<InternetOption, std::uint32_t> numbers;
  std::map<InternetOption, std::string> texts;
  std::string body;
};

// What a request meets: an error in place of an answer, or the answer's status and headers.
struct WebAnswer {
  std::uint32_t error = 0;
  std::uint32_t status = 200;
  std::map<std::uint32_t, std::string> headers;  // by number
};

// What a simulated machine is like beside its clock, disk and processes: a test sets the upper fields at
// any time and reads the lower ones.
struct Surroundings {
  std::function<std::chrono::minutes(LocalTime)> utc_offset;  // without it the zone is UTC
  SystemVersion version{2, 6, 1, true};
  bool is_wow64 = false;
  bool is_64_bit = true;
  std::string system_folder = "C:\\Windows\\system32";
  std::map<int, std::string> locale_texts{
      {kLocaleShortDate, "M/d/yyyy"}, {kLocaleTimeFormat, "h:mm:ss tt"}, {kLocaleDecimal, "."}};
  ConnectedState connected_state{true, 0x12, "Local Area Connection"};
  bool is_connected = true;
  std::map<std::string, int> service_states;     // by lower-case service name
  std::map<std::string, std::string> addresses;  // host name to dotted address
  bool name_resolution_starts = true;
  bool name_resolution_cleans_up = true;
  std::map<WindowHandle, SimulatedWindow> windows;
  std::string computer_name = "SIMULATED";
  std::string local_data_folder = "C:\\Users\\Default\\AppData\\Local";
  bool exits_windows = true;
  // Runs inside PostCDPStatusMsg, as the continuous backup's own reaction.
  std::function<void(ContinuousBackupState)> on_continuous_backup;

  // Answers every web request; without it each gets a 200.
  std::function<WebAnswer(const SentWebRequest&)> on_web_request;
  std::optional<std::string> web_last_response;

  // What the component did.
  std::vector<SentWebRequest> web_requests;
  std::vector<InternetOption> web_notices;  // of changed settings
  std::vector<std::string> trusted_authorities;
  std::vector<ShownMessage> messages;
  std::vector<std::uint32_t> windows_exits;  // flags of each ExitWindows
  std::vector<ContinuousBackupState> continuous_backup_states;
  int database_validations = 0;  // calls of ValidateLocalDBDllVersion
};

}  // namespace ondura
