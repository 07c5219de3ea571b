#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "util/TextFiles.h"

namespace ondura {

// Texts of the notice about a missed occurrence; traces repeat them.
inline constexpr std::string_view kMissedReason =
    "The scheduled backup has not taken been place because of an ongoing interactive backup or a network "
    "breakdown.It has been automatically set to the next frequency.";
inline constexpr std::string_view kMissedDetail =
    "interactive/continuous backup session was in progress or there was a network shutdown.";
inline constexpr std::string_view kMissedHead =
    "The Scheduled backup has not been performed. It is possible that an ongoing";
inline constexpr std::string_view kNextFrequencyText = "It has been automatically set to the next frequency ";

// How a session file is opened. kAppend and kReplace make it when it is missing; kAppendExisting leaves a
// missing file missing.
enum class SessionWrite { kAppend, kReplace, kAppendExisting };

// The session logs of the current user: one UTF-16 file a run in the folder Session, which each write makes
// when it is missing. A write that fails stops nothing.
class SessionLog {
 public:
  SessionLog(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation) {}

  // The folder with a backslash at its end.
  [[nodiscard]] std::string Folder() const;

  void MakeFolder();

  // The path of a log that begins now: the job's name, a blank and the time. Makes the folder.
  std::string NewPath(std::string_view job_name = "Scheduled");

  // A blank line, the user and the operation; the lines that every log of a whole job begins with.
  void WriteHead(std::string_view path, SessionWrite how);

  // The head and the message after the time: four lines.
  void WriteBlock(std::string_view path, std::string_view message, SessionWrite how);

  // The head and the message without a time, appended: the log of an exceeded quota.
  void WriteQuotaSessionLog(std::string_view path, std::string_view message);

  // One line, the message after two blanks.
  void WriteMessage(std::string_view path, std::string_view message, SessionWrite how);

  // Two lines, a blank one and the message after two blanks.
  void WriteShortMessage(std::string_view path, std::string_view message, SessionWrite how);

  // Two lines, a blank one and the message after the time.
  void WriteTimedMessage(std::string_view path, std::string_view message, SessionWrite how);

  // Further lines after what is in the file; `text` brings its line ends with it.
  void AppendText(std::string_view path, std::string_view text);

  // The long notice of a missed occurrence, which only goes into a file that is there.
  void AppendMissedNotice(std::string_view path, std::string_view nexttime);

  // The notice of a missed occurrence in a file of its own.
  void WriteMissedNotice(std::string_view path, std::string_view nexttime);

  // The notice of a job that its user has switched off, which only goes into a file that is there.
  void AppendDisabledNotice(std::string_view path);

  // The newest of today's scheduled logs in `folder`, which ends in a backslash; of two with one time the
  // one listed first. Empty if there is no such file.
  std::string FindLatestSessionFile(std::string_view folder);

 private:
  void Write(std::string_view path, std::string_view text, SessionWrite how);
  [[nodiscard]] std::string Head() const;
  std::string TimedLine(std::string_view message);

  Machine machine_;
  const Installation& installation_;
};

// The heading of the files that were left out for the length of their path, in an open UTF-16 log.
void WriteGeneralMessage(FileWriter& stream);

}  // namespace ondura
