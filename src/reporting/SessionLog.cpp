#include "reporting/SessionLog.h"

#include "profile/profile_paths.h"
#include "text/text.h"
#include "text/utf16.h"
#include "util/MachineFacts.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr std::string_view kBlankLine = " \r\n";
constexpr std::string_view kUserLabel = "Username:";
constexpr std::string_view kOperation = "Operation: Scheduled";

std::string Line(std::string_view text) { return std::string{text}.append(kLineEnd); }

std::string IndentedLine(std::string_view message) { return Line("  " + std::string{message}); }

bool IsScheduledLog(const FolderEntry& entry) {
  constexpr std::size_t kShortestNameWithoutTime = 10;
  return !entry.is_folder && Utf16Length(entry.name) > kShortestNameWithoutTime &&
         entry.name.substr(0, entry.name.find(' ')) == "Scheduled";
}

LocalTime StartOfDay(LocalTime time) { return std::chrono::floor<std::chrono::days>(time); }

}  // namespace

std::string SessionLog::Folder() const { return installation_.UserFile(kSessionFolder) + "\\"; }

void SessionLog::MakeFolder() { machine_.folders.Make(installation_.UserFile(kSessionFolder)); }

std::string SessionLog::NewPath(std::string_view job_name) {
  MakeFolder();
  return Folder().append(job_name).append(" ").append(SystemTimeText(machine_.clock.Now())).append(".txt");
}

void SessionLog::WriteHead(std::string_view path, SessionWrite how) { Write(path, Head(), how); }

void SessionLog::WriteBlock(std::string_view path, std::string_view message, SessionWrite how) {
  Write(path, Head() + TimedLine(message), how);
}

void SessionLog::WriteQuotaSessionLog(std::string_view path, std::string_view message) {
  Write(path, Head() + Line(message), SessionWrite::kAppend);
}

void SessionLog::WriteMessage(std::string_view path, std::string_view message, SessionWrite how) {
  Write(path, IndentedLine(message), how);
}

void SessionLog::WriteShortMessage(std::string_view path, std::string_view message, SessionWrite how) {
  Write(path, std::string{kBlankLine} + IndentedLine(message), how);
}

void SessionLog::WriteTimedMessage(std::string_view path, std::string_view message, SessionWrite how) {
  Write(path, std::string{kBlankLine} + TimedLine(message), how);
}

void SessionLog::AppendText(std::string_view path, std::string_view text) {
  Write(path, text, SessionWrite::kAppend);
}

void SessionLog::AppendMissedNotice(std::string_view path, std::string_view nexttime) {
  std::string text{kBlankLine};
  text += Line(std::string{kUserLabel} + "  " + installation_.CurrentUser);
  text += Line(kOperation).append(kLineEnd);
  text += Line(kMissedReason) + Line(kMissedDetail);
  text += Line(std::string{kNextFrequencyText}.append(nexttime).append("."));
  Write(path, text, SessionWrite::kAppendExisting);
}

void SessionLog::WriteMissedNotice(std::string_view path, std::string_view nexttime) {
  std::string text{kBlankLine};
  text += Line(std::string{kMissedHead}.append(kMissedDetail));
  text += Line(std::string{kNextFrequencyText}.append(nexttime).append("."));
  Write(path, text, SessionWrite::kReplace);
}

void SessionLog::AppendDisabledNotice(std::string_view path) {
  const std::string time = SystemTimeText(machine_.clock.Now());
  Write(path, std::string{kBlankLine} + Line(time + "Successfully completed the. "),
        SessionWrite::kAppendExisting);
}

std::string SessionLog::FindLatestSessionFile(std::string_view folder) {
  const LocalTime today = StartOfDay(machine_.clock.Now());
  std::string latest;
  LocalTime latest_time;
  machine_.folders.List(folder, [&](const FolderEntry& entry) {
    if (IsScheduledLog(entry) && entry.modified >= today &&
        (latest.empty() || entry.modified > latest_time)) {
      latest = entry.name;
      latest_time = entry.modified;
    }
    return Visit::kContinue;
  });
  return latest.empty() ? latest : std::string{folder} + latest;
}

void SessionLog::Write(std::string_view path, std::string_view text, SessionWrite how) {
  MakeFolder();
  TextFiles text_files{machine_.files, machine_.code_page};
  if (how == SessionWrite::kReplace) {
    text_files.Write(path, text, Encoding::kUtf16);
    return;
  }
  text_files.Append(path, text, Encoding::kUtf16,
                    how == SessionWrite::kAppend ? IfMissing::kCreate : IfMissing::kFail);
}

std::string SessionLog::Head() const {
  return std::string{kBlankLine} + Line(std::string{kUserLabel} + " " + installation_.CurrentUser) +
         Line(kOperation);
}

std::string SessionLog::TimedLine(std::string_view message) {
  return SystemTimeText(machine_.clock.Now()) + IndentedLine(message);
}

void WriteGeneralMessage(FileWriter& stream) {
  const std::string blanks = Line(std::string(38, ' '));
  const std::string dashes = Line(std::string(72, '-'));
  stream.Append(ToUtf16(blanks + dashes +
                        Line("Listed are the file(s) that could not be backed up as the path is too long:") +
                        dashes + blanks));
}

}  // namespace ondura
