// The log of the operating system's backup tool: where it is, and what it says.

#include "stages/clsSystemState.h"

#include <algorithm>
#include <utility>

#include "text/separators.h"
#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

constexpr std::string_view kLogFilesKey = R"(Software\Microsoft\Ntbackup\Log Files\)";
constexpr std::string_view kToolFolder = R"(\Microsoft\Windows NT\NTBackup\data\)";
constexpr std::string_view kVerified = "Verify Status";
constexpr std::string_view kNotComplete = "Operation did not successfully complete";
constexpr std::int32_t kQueryDone = 0;
constexpr std::int32_t kOtherType = -1;
constexpr std::int32_t kMissingValue = 2;
// The tool keeps ten logs. A spoiled count must not hold the job up.
constexpr std::int64_t kMostLogs = 10'000;

std::int64_t NumberOf(const RegistryValue& value) {
  if (value.type == RegistryType::kDword) return static_cast<std::int32_t>(value.number);
  return ParseInteger(value.text).value_or(0);
}

std::string_view AnswerText(bool answer) { return answer ? "True" : "False"; }

}  // namespace

std::int32_t clsSystemState::QueryValueEx(const RegistryName& name, RegistryValue& vValue) {
  const auto value = job_.machine().registry.Read(name, RegistryAccess::kQueryValue);
  if (!value) return kMissingValue;
  if (value->type != RegistryType::kText && value->type != RegistryType::kDword) return kOtherType;
  vValue = *value;
  return kQueryDone;
}

RegistryValue clsSystemState::ReadRegistryValue(std::string_view sKey, std::string_view sValueName) {
  RegistryValue value;
  QueryValueEx({RegistryRoot::kLocalMachine, sKey, sValueName}, value);
  return value;
}

// The tool numbers its logs round and round, so that a name can occur twice: the highest number counts.
std::string clsSystemState::FindLogFile(std::string_view sJobName) {
  std::string file;
  const std::int64_t count = std::min(NumberOf(ReadRegistryValue(kLogFilesKey, "Log File Count")), kMostLogs);
  for (int number = 1; number <= count; ++number) {
    const std::string key = std::string{kLogFilesKey} + "Log#" + std::to_string(number) + "\\";
    if (EqualsIgnoringCase(ReadRegistryValue(key, "Job Name").text, sJobName)) {
      file = "backup" + Padded(number, 2) + ".log";
    }
  }
  return file;
}

std::string clsSystemState::GetLogErrorString(std::string_view sJobName, std::string& sLogPath) {
  const Machine& machine = job_.machine();
  Trace& trace = job_.trace();
  TraceLine("Enter GetLogErrorString");
  trace.User(sLogPath);
  const std::string file = FindLogFile(sJobName);
  const std::string folder = machine.drives.LocalDataFolder();
  trace.User(" spath " + folder);
  trace.User(" sLogfile " + file);
  std::string text;
  if (!folder.empty() && !file.empty()) {
    const std::string log_path = TrimAtTerminator(folder).append(kToolFolder).append(file);
    trace.User(" slogfilePath " + log_path);
    if (machine.files.Exists(log_path)) {
      text = ReadDefaultFormat(log_path);
      const std::string session_folder = job_.installation().UserFile("session");
      support_.MakeFolder(session_folder);
      sLogPath = session_folder + "\\" + std::string{sJobName} + ".txt";
      KeepLog(log_path, text, sLogPath);
    }
  }
  TraceLine("Exit GetLogErrorString Path of ntbackup logs : " + sLogPath);
  return text;
}

// The text comes first and the very bytes over it, so that a copy that fails still leaves the text.
void clsSystemState::KeepLog(const std::string& log_path, std::string_view text, const std::string& copy) {
  text_files_.Write(copy, text, Encoding::kCodePage);
  job_.machine().files.Copy(log_path, copy);
}

// A file with a mark is UTF-16, one without is in the system code page.
std::string clsSystemState::ReadDefaultFormat(std::string_view path) {
  const Machine& machine = job_.machine();
  const std::string bytes = machine.files.Read(path).value_or("");
  return bytes.starts_with(kUtf16Mark) ? FromUtf16(bytes) : machine.code_page.ToUtf8(bytes);
}

bool clsSystemState::CheckLogError(std::string_view /*sBackupName*/, std::string_view sLogPath) {
  TraceLine("Enter CheckLogError");
  bool answer = false;
  if (job_.machine().files.Exists(sLogPath)) {
    const std::string text = ReadDefaultFormat(sLogPath);
    std::string_view stream = text;
    answer = CheckForErrorString(stream, GetOsVersion());
  } else {
    TraceLine("Exit CheckLogError return with File does not exists Path:" + std::string{sLogPath});
  }
  TraceLine(std::string{"Exit CheckLogError return with "}.append(AnswerText(answer)));
  return answer;
}

bool clsSystemState::CheckForErrorString(std::string_view& stream, std::string_view /*os_version*/) {
  TraceLine("Enter CheckForErrorString");
  const std::string_view log = ReadStreamAll(stream);
  TraceLine("System state backup log starts");
  TraceLine(log.empty() ? "No NT backup log entry found." : log);
  TraceLine("System state backup log ends");
  bool answer = false;
  if (log.find(kVerified) != std::string_view::npos) {
    // A copy that was verified counts, whatever the tool says about single files of the operation.
    answer = true;
  } else if (log.find(kNotComplete) != std::string_view::npos) {
    answer = false;
  }
  TraceLine(std::string{"Exit CheckForErrorString :  "}.append(AnswerText(answer)));
  return answer;
}

std::string_view clsSystemState::ReadStreamAll(std::string_view& stream) {
  return std::exchange(stream, std::string_view{});
}

std::string_view clsSystemState::ReadStreamLine(std::string_view& stream) {
  return stream.empty() ? stream : TakeLine(stream);
}

}  // namespace ondura
