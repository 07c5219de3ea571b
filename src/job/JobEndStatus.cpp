#include "job/JobEndStatus.h"

#include <algorithm>
#include <array>
#include <string>

#include "engine/engine_results.h"
#include "job/job_texts.h"
#include "profile/profile_paths.h"
#include "text/text.h"

namespace ondura {

namespace {

struct EndRow {
  EngineResult code;
  JobEnd end;
};

// An engine that answers with a code of the job's own ends the job in that way.
constexpr std::array kEnds = {
    EndRow{{1}, JobEnd::kOrdinary},
    EndRow{{10}, JobEnd::kCutOff},
    EndRow{{500}, JobEnd::kMissedRun},
    EndRow{engine_results::kWrongPassword, JobEnd::kWrongPassword},
    EndRow{engine_results::kQuotaUsedUp, JobEnd::kQuotaUsedUp},
};

std::string AsLine(std::string_view text) { return std::string{text} + std::string{kLineEnd}; }

}  // namespace

JobEnd JobEndOf(EngineResult result) {
  const auto found = std::ranges::find(kEnds, result, &EndRow::code);
  return found == kEnds.end() ? JobEnd::kOrdinary : found->end;
}

JobEndStatus::JobEndStatus(JobServices& services, JobState& state, StatusKeys& keys)
    : services_(services),
      state_(state),
      keys_(keys),
      text_files_(services.machine.files, services.machine.code_page) {}

void JobEndStatus::WriteJobEndStatus(JobEnd end) {
  services_.scheduler.sch_changefiledata("0");
  const std::string status_file = services_.installation.UserFile(kStatusTextFile);
  services_.machine.files.Remove(status_file, Removal::kForce);
  text_files_.Write(status_file, "", Encoding::kUtf16);
  services_.trace.User("  Session File path " + state_.run.session_path);
  keys_.StampEnd();
  WriteStatusWindow(end);
  keys_.Write(profile_keys::kStatusMessage, end == JobEnd::kQuotaUsedUp ? "2" : "1");
  WriteSentence(end);
  TraceSessionFile();
}

void JobEndStatus::WriteJobMessage(std::string_view text, Target target, std::int16_t indicator) {
  keys_.MarkEndedByMessage();
  const bool to_status = target == Target::kStatusFile;
  text_files_.Write(services_.installation.UserFile(to_status ? kStatusTextFile : kErrorTextFile),
                    AsLine(text), Encoding::kUtf16);
  keys_.StampEnd();
  keys_.Write(profile_keys::kStatusMessage, std::to_string(indicator));
  state_.run.session_path = services_.session_log.NewPath();
  services_.session_log.WriteHead(state_.run.session_path, SessionWrite::kAppend);
  if (keys_.Read(profile_keys::kDesktopNotification) != "0" && IsDefaultUsersJob())
    keys_.Write(profile_keys::kStatusWindow, "1");
}

void JobEndStatus::ResetStatusFiles() {
  Files& files = services_.machine.files;
  const std::string status_file = services_.installation.UserFile(kStatusTextFile);
  files.Remove(status_file, Removal::kForce);
  files.Remove(services_.installation.UserFile(kErrorTextFile), Removal::kForce);
  text_files_.Write(status_file, "", Encoding::kUtf16);
}

void JobEndStatus::WriteStatusText(std::string_view text) {
  text_files_.Write(services_.installation.UserFile(kStatusTextFile), AsLine(text), Encoding::kUtf16);
}

void JobEndStatus::WriteBackupFailed() {
  const std::string path = services_.installation.UserFile(kErrorTextFile);
  services_.machine.files.Remove(path, Removal::kForce);
  text_files_.Write(path, AsLine(job_texts::kBackupFailed), Encoding::kUtf16);
}

bool JobEndStatus::IsDefaultUsersJob() {
  const std::string scheduled = services_.transfer.Trf_ReadUserNameProfile(profile_keys::kScheduled);
  return Trim(scheduled) == Trim(services_.store.ReadDefaultUser(profile_keys::kDefaultUser));
}

void JobEndStatus::WriteStatusWindow(JobEnd end) {
  if (keys_.Read(profile_keys::kDesktopNotification) == "0" && end != JobEnd::kQuotaUsedUp) {
    keys_.Write(profile_keys::kStatusWindow, "0");
  } else if (IsDefaultUsersJob()) {
    keys_.Write(profile_keys::kStatusWindow, "1");
  }
}

void JobEndStatus::WriteSentence(JobEnd end) {
  if (end == JobEnd::kQuotaUsedUp) {
    WriteStatusText(" " + std::string{job_texts::kQuotaUsedUp});
  } else if (end == JobEnd::kCutOff) {
    WriteStatusText(job_texts::kHardStopStatus);
  } else if (end == JobEnd::kMissedRun || end == JobEnd::kWrongPassword) {
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
  services_.trace.User("  schvTemp.Desktop = " + keys_.Read(profile_keys::kDesktopNotification));
}

}  // namespace ondura
