#include "machines/posix/machine_settings.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "machines/posix/host_io.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::string_view kFileName = "machine.ini";

// Sets one entry; false for a value that it can't hold.
using Setter = bool (*)(MachineSettings& settings, const std::string& value);

struct Entry {
  std::string_view section;
  std::string_view key;
  Setter set;
};

bool SetFlag(bool& flag, std::string_view value) {
  flag = value == "1";
  return value == "0" || value == "1";
}

bool SetVersion(MachineSettings& settings, const std::string& value) {
  const auto parts = Split(value, ".");
  if (parts.size() != 2) return false;
  const auto major = ParseInt16(parts[0]);
  const auto minor = ParseInt16(parts[1]);
  settings.version.major = major.value_or(0);
  settings.version.minor = minor.value_or(0);
  return major && minor;
}

bool SetCodePage(MachineSettings& settings, const std::string& value) {
  const auto number = ParseInt16(value);
  auto table = number ? CodePageTable::ForNumber(*number) : std::nullopt;
  if (!table) return false;
  settings.code_page = *std::move(table);
  return true;
}

bool SetFlags(MachineSettings& settings, const std::string& value) {
  const auto number = ParseInteger(value);
  if (!number || *number < 0 || *number > std::numeric_limits<std::uint32_t>::max()) return false;
  settings.connection.flags = static_cast<std::uint32_t>(*number);
  return true;
}

bool SetWebTimeout(MachineSettings& settings, const std::string& value) {
  const auto number = ParseInteger(value);
  if (!number || *number < 1 || *number > kLongestWebTimeout.count()) return false;
  settings.web_timeout = std::chrono::milliseconds{*number};
  return true;
}

template <std::string MachineSettings::*kMember>
bool SetText(MachineSettings& settings, const std::string& value) {
  settings.*kMember = value;
  return true;
}

constexpr std::array<Entry, 16> kEntries = {{
    {"Locale", "ShortDate", SetText<&MachineSettings::short_date>},
    {"Locale", "TimeFormat", SetText<&MachineSettings::time_format>},
    {"Locale", "Decimal", SetText<&MachineSettings::decimal>},
    {"System", "CodePage", SetCodePage},
    {"System", "Version", SetVersion},
    {"System", "Workstation",
     [](MachineSettings& s, const std::string& value) { return SetFlag(s.version.is_workstation, value); }},
    {"System", "Wow64",
     [](MachineSettings& s, const std::string& value) { return SetFlag(s.is_wow64, value); }},
    {"System", "64Bit",
     [](MachineSettings& s, const std::string& value) { return SetFlag(s.is_64_bit, value); }},
    {"System", "SystemFolder", SetText<&MachineSettings::system_folder>},
    {"System", "LocalDataFolder", SetText<&MachineSettings::local_data_folder>},
    {"System", "ComputerName", SetText<&MachineSettings::computer_name>},
    {"System", "ExitCommand", SetText<&MachineSettings::exit_command>},
    {"Internet", "Connected",
     [](MachineSettings& s, const std::string& value) { return SetFlag(s.connection.connected, value); }},
    {"Internet", "Flags", SetFlags},
    {"Internet", "Connection",
     [](MachineSettings& s, const std::string& value) {
       s.connection.connection_name = value;
       return true;
     }},
    {"Internet", "Timeout", SetWebTimeout},
}};

bool SetDrive(MachineSettings& settings, const std::string& root, const std::string& key,
              std::string folder) {
  const std::string letter = ToUpper(key);
  if (letter.size() != 1 || letter[0] < 'A' || letter[0] > 'Z' || folder.empty()) return false;
  if (!folder.starts_with('/')) folder = root + "/" + folder;
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  settings.drives[letter[0]] = folder;
  return true;
}

bool SetService(MachineSettings& settings, const std::string& name, const std::string& value) {
  const auto state = ParseInt16(value);
  if (!state || *state < 0 || *state > 7) return false;
  settings.services[ToLower(name)] = *state;
  return true;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const DecodedCharacter next = DecodeUtf8(text);
    if (!next.valid) return false;
    text.remove_prefix(next.bytes);
  }
  return true;
}

// Reads the file line by line and stops at the first one that it does not understand.
class Reader {
 public:
  Reader(const std::string& root, MachineSettings& settings) : root_(root), settings_(settings) {}

  // What is wrong with the line; empty for nothing.
  std::string Take(std::string_view line) {
    line = Trim(line);
    if (line.empty() || line.front() == ';' || line.front() == '#') return {};
    if (line.front() == '[' && line.back() == ']') {
      section_ = Trim(line.substr(1, line.size() - 2));
      return IsSection() ? std::string{} : "there is no section [" + section_ + "]";
    }
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) return "it is neither a [section] nor a name=value";
    const std::string key{Trim(line.substr(0, equals))};
    return Set(key, std::string{Trim(line.substr(equals + 1))});
  }

 private:
  [[nodiscard]] bool In(std::string_view section) const { return EqualsIgnoringCase(section_, section); }

  [[nodiscard]] bool IsSection() const {
    return In("Drives") || In("Services") ||
           std::ranges::any_of(kEntries, [this](const Entry& entry) { return In(entry.section); });
  }

  std::string Set(const std::string& key, const std::string& value) {
    const std::string bad_value = "\"" + value + "\" is no value for " + key;
    if (In("Drives")) return SetDrive(settings_, root_, key, value) ? std::string{} : bad_value;
    if (In("Services")) return SetService(settings_, key, value) ? std::string{} : bad_value;
    for (const Entry& entry : kEntries) {
      if (!In(entry.section) || !EqualsIgnoringCase(key, entry.key)) continue;
      return entry.set(settings_, value) ? std::string{} : bad_value;
    }
    return "there is no setting " + key + " in [" + section_ + "]";
  }

  const std::string& root_;
  MachineSettings& settings_;
  std::string section_;
};

}  // namespace

std::string LoadMachineSettings(const std::string& root, MachineSettings& settings) {
  const std::string path = root + "/" + std::string{kFileName};
  const Fd file = OpenHost(path, O_RDONLY);
  if (!file.valid() && LastError() == HostError::kMissing) return {};
  const auto text = file.valid() ? ReadRest(file, std::numeric_limits<std::size_t>::max()) : std::nullopt;
  if (!text) return path + " can't be read.";
  if (!IsUtf8(*text)) return path + " is no UTF-8 text.";
  Reader reader{root, settings};
  std::size_t number = 0;
  for (const std::string& line : LinesOf(*text)) {
    ++number;
    const std::string fault = reader.Take(line);
    if (fault.empty()) continue;
    std::string error = path;
    return error.append(", line ").append(std::to_string(number)).append(": ").append(fault).append(".");
  }
  return {};
}

}  // namespace ondura
