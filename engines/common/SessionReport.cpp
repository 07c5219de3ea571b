#include "engines/common/SessionReport.h"

#include "profile/profile_paths.h"
#include "text/text.h"
#include "util/date_text.h"

namespace ondura::engines {

namespace {

std::string SessionName(LocalTime time) {
  return "Scheduled " + FormatDate("mm-dd-yyyy HH-mm-ss", time) + ".txt";
}

std::string_view ClosingWords(EngineResult result) {
  using namespace engine_results;
  if (result == kCancelled || result == kQuotaUsedUp || result == kEndedAbnormally) return "Backup Canceled";
  if (result == kCancelledByServer) return "Backup ended by the hard stop at the Cut Off time";
  return "Backup Completed";
}

}  // namespace

SessionReport::SessionReport(Client& client) : client_(client), start_(client.machine().clock.Now()) {
  const std::string folder = client.installation().UserFile(kSessionFolder);
  client.machine().folders.Make(folder);
  path_ = folder + "\\" + SessionName(start_);
  Line(" ");
  Line("Username: " + client.installation().CurrentUser);
  Line("Operation: Scheduled");
  Line("Backup Start Time : " + FormatDate(kStampPicture, start_));
  Line(" ");
}

void SessionReport::Sent(std::string_view path, std::uint64_t size_bytes) {
  Stamped(std::string{path} + "  [" + std::to_string(size_bytes) + " bytes]");
}

void SessionReport::Failed(std::string_view path) { Stamped(std::string{path} + "  could not be backed up"); }

void SessionReport::Say(std::string_view message) { Stamped(message); }

void SessionReport::Close(EngineResult result, const RunFigures& figures) {
  const LocalTime end = client_.machine().clock.Now();
  Line(" ");
  Line("Number of files considered for Backup: " + std::to_string(figures.considered));
  Line("Number of files found to be in sync : " + std::to_string(figures.in_sync));
  Line("Backup End Time : " + FormatDate(kStampPicture, end));
  Line("Duration in seconds : " + std::to_string((end - start_).count()));
  Line(std::string{ClosingWords(result)} + "     [Backed up Files : " + std::to_string(figures.sent) +
       ", Size : " + std::to_string(figures.sent_bytes) +
       " bytes, Failed Files : " + std::to_string(figures.failed) + "]");
}

void SessionReport::Stamped(std::string_view text) {
  const LocalTime now = client_.machine().clock.Now();
  held_.append(FormatDate(kStampPicture, now)).append("  ").append(text).append(kLineEnd);
  if (now != written_at_) Flush();
  written_at_ = now;
}

void SessionReport::Line(std::string_view text) {
  held_.append(text).append(kLineEnd);
  Flush();
}

void SessionReport::Flush() {
  client_.text_files().Append(path_, held_, Encoding::kUtf16, IfMissing::kCreate);
  held_.clear();
}

}  // namespace ondura::engines
