#include "job/JobEndStatus.h"

#include <string>

#include "job/engine_results.h"
#include "job/job_texts.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kStatusFile = "SchStatus.txt";
constexpr std::string_view kErrorFile = "SchStatusError.txt";
constexpr double kHardStopCode = 10;
constexpr double kMissedCode = 500;

std::string AsLine(std::string_view text) { return std::string{text} + std::string{kLineEnd}; }

}  // namespace

JobEndStatus::JobEndStatus(JobServices& services, JobState& state, StatusKeys& keys)
    : services_(services),
      state_(state),
      keys_(keys),
      text_files_(services.machine.files, services.machine.code_page) {}

void JobEndStatus::WriteJobEndStatus(double code) {
  services_.scheduler.sch_changefiledata("0");
  const std::string status_file = services_.installation.UserFile(kStatusFile);
  services_.machine.files.Remove(status_file, Removal::kForce);
  text_files_.Write(status_file, "", Encoding::kUtf16);
  services_.trace.User("  Session File path " + state_.run.session_path);
  keys_.StampEnd();
  WriteStatusWindow(code);
  keys_.Write("StatusMessageIndicaton", code == engine_results::kQuotaUsedUp ? "2" : "1");
  WriteSentence(code);
  TraceSessionFile();
}

void JobEndStatus::WriteJobMessage(std::string_view text, Target target, std::int16_t indicator) {
  keys_.MarkEndedByMessage();
  const bool to_status = target == Target::kStatusFile;
  text_files_.Write(services_.installation.UserFile(to_status ? kStatusFile : kErrorFile), AsLine(text),
                    Encoding::kUtf16);
  keys_.StampEnd();
  keys_.Write("StatusMessageIndicaton", std::to_string(indicator));
  state_.run.session_path = services_.session_log.NewPath();
  services_.session_log.WriteHead(state_.run.session_path, SessionWrite::kAppend);
  if (keys_.Read("DesktopNotification") != "0" && IsDefaultUsersJob()) keys_.Write("StatusWindow", "1");
}

void JobEndStatus::ResetStatusFiles() {
  Files& files = services_.machine.files;
  const std::string status_file = services_.installation.UserFile(kStatusFile);
  files.Remove(status_file, Removal::kForce);
  files.Remove(services_.installation.UserFile(kErrorFile), Removal::kForce);
  text_files_.Write(status_file, "", Encoding::kUtf16);
}

void JobEndStatus::WriteStatusText(std::string_view text) {
  text_files_.Write(services_.installation.UserFile(kStatusFile), AsLine(text), Encoding::kUtf16);
}

void JobEndStatus::WriteBackupFailed() {
  const std::string path = services_.installation.UserFile(kErrorFile);
  services_.machine.files.Remove(path, Removal::kForce);
  text_files_.Write(path, AsLine(job_texts::kBackupFailed), Encoding::kUtf16);
}

bool JobEndStatus::IsDefaultUsersJob() {
  const std::string scheduled = services_.transfer.Trf_ReadUserNameProfile("Scheduled");
  return Trim(scheduled) == Trim(services_.store.ReadDefaultUser("Default User name"));
}

void JobEndStatus::WriteStatusWindow(double code) {
  if (keys_.Read("DesktopNotification") == "0" && code != engine_results::kQuotaUsedUp) {
    keys_.Write("StatusWindow", "0");
  } else if (IsDefaultUsersJob()) {
    keys_.Write("StatusWindow", "1");
  }
}

void JobEndStatus::WriteSentence(double code) {
  if (code == engine_results::kQuotaUsedUp) {
    WriteStatusText(" " + std::string{job_texts::kQuotaUsedUp});
  } else if (code == kHardStopCode) {
    WriteStatusText(job_texts::kHardStopStatus);
  } else if (code == kMissedCode || code == engine_results::kWrongPassword) {
    WriteBackupFailed();
  } else {
    WriteStatusText(state_.run.cancelled ? job_texts::kManualCancel : job_texts::kViewLog);
  }
}

void JobEndStatus::TraceSessionFile() {
  const std::string& path = state_.run.session_path;
  if (services_.machine.files.Size(path).value_or(0) == 0) {
    services_.trace.User("  No Contents in session file");
  }
  if (path.empty()) services_.trace.User("  Session File Path Empty");
  services_.trace.User("  schvTemp.Desktop = " + keys_.Read("DesktopNotification"));
}

}  // namespace ondura
