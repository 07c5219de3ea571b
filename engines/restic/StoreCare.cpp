#include "engines/restic/StoreCare.h"

#include <utility>

#include "text/text.h"

namespace ondura::engines {

void StoreCare::MendAfterBreak() {
  journal_.Say("The last run was interrupted; what it sent is being found again.");
  Do({"unlock"}, "to remove old locks");
  Do({"rebuild-index"}, "to rebuild the index");
}

// The lock of a program that was killed would keep the care out of the store, until somebody looks.
void StoreCare::AfterGoodRun() {
  const bool forgets = !store_.settings().retention.KeepsAll();
  const bool checks = IsCheckDue();
  if (forgets || checks) Do({"unlock"}, "to remove old locks");
  if (forgets) Forget();
  if (checks) Check();
}

void StoreCare::Forget() {
  const Retention& keep = store_.settings().retention;
  std::vector<std::string> arguments{"forget", "--group-by", "host,tags"};
  const auto marks = store_.OwnMarks();
  arguments.insert(arguments.end(), marks.begin(), marks.end());
  for (const auto& [option, count] :
       {std::pair{"--keep-last", keep.last}, std::pair{"--keep-daily", keep.daily},
        std::pair{"--keep-weekly", keep.weekly}, std::pair{"--keep-monthly", keep.monthly},
        std::pair{"--keep-yearly", keep.yearly}}) {
    if (count > 0) arguments.insert(arguments.end(), {option, std::to_string(count)});
  }
  Do(std::move(arguments), "to remove old snapshots");
}

bool StoreCare::IsCheckDue() const {
  const int days = store_.settings().check_days;
  if (days <= 0) return false;
  const LocalTime now = client_.machine().clock.Now();
  const auto last = store_.record().LastCheck();
  // A clock that was far ahead once must not put the check off for years.
  return !last || *last > now || now - *last >= std::chrono::days{days};
}

void StoreCare::Check() {
  const int parts = store_.settings().check_parts;
  const int part = store_.record().LastPart() % parts + 1;
  const bool pruned = store_.settings().retention.KeepsAll() || Do({"prune"}, "to remove unused data");
  const std::string subset = std::to_string(part) + "/" + std::to_string(parts);
  const bool sound =
      Do({"check", "--read-data-subset=" + subset}, "to check part " + subset + " of the store");
  if (stop_.Check() != StopRequest::kNone) return;
  if (sound) journal_.Say("Part " + subset + " of the store was read and is sound.");
  store_.record().NoteCheck(client_.machine().clock.Now(), part,
                            sound && pruned ? "sound" : "failed; see the session log");
}

bool StoreCare::Do(std::vector<std::string> arguments, const std::string& what) {
  store_.record().ForgetUsed();
  const ResticEnd end = store_.program().Do(
      {.arguments = std::move(arguments), .is_over = [this] { return stop_.Check() != StopRequest::kNone; }});
  if (end.IsDone()) return true;
  if (end.how == ResticEnd::How::kStopped) return false;
  journal_.Say("restic failed " + what + ":");
  for (const std::string& line : LinesOf(end.words)) journal_.Say("restic: " + line);
  return false;
}

}  // namespace ondura::engines
