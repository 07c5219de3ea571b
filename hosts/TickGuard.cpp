#include "TickGuard.h"

#include "util/date_text.h"

namespace ondura {

namespace {

using namespace std::chrono_literals;
using std::chrono::days;
using std::chrono::milliseconds;

// From here on the time since the last pass is worth a word.
constexpr days kLongAway{1};
// No machine is off for so long and then goes on where it was.
constexpr days kNeverBelieved{3653};
constexpr milliseconds kPatienceAhead = 24h;
constexpr milliseconds kPatienceBehind = 1h;
constexpr milliseconds kSayAgain = 1h;

}  // namespace

bool TickGuard::MayTick(milliseconds since_last) {
  const LocalTime now = machine_.clock.Now();
  if (fault_ != Fault::kNone) waited_ += since_last;
  const Fault fault = FindFault(now);
  if (fault == Fault::kNone) {
    GoOn(now);
    return true;
  }
  Hold(fault, now);
  return false;
}

TickGuard::Fault TickGuard::FindFault(LocalTime now) {
  if (const Fault fault = ClockFault(now); fault != Fault::kNone) return fault;
  switch (machine_.processes.StateOf(installation_.ExeLocation + installation_.ClientExe)) {
    case ProgramState::kMissing:
      return Fault::kEngineMissing;
    case ProgramState::kRefused:
      return Fault::kEngineRefused;
    case ProgramState::kStartable:
      break;
  }
  return Fault::kNone;
}

TickGuard::Fault TickGuard::ClockFault(LocalTime now) {
  const auto last = notes_.LastTick();
  if (!last) return Fault::kNone;
  const auto ahead = now - *last;
  if (ahead > kBelievedAhead) {
    const bool had_patience = fault_ == Fault::kClockAhead && waited_ >= kPatienceAhead;
    return had_patience && ahead <= kNeverBelieved ? Fault::kNone : Fault::kClockAhead;
  }
  if (ahead < -kLongAway) {
    const bool had_patience = fault_ == Fault::kClockBehind && waited_ >= kPatienceBehind;
    return had_patience ? Fault::kNone : Fault::kClockBehind;
  }
  return Fault::kNone;
}

std::string TickGuard::Reason(Fault fault, LocalTime now) const {
  const std::string engine = installation_.ExeLocation + installation_.ClientExe;
  const std::string clock = "No pass: the clock shows " + FormatDate(kStampPicture, now);
  switch (fault) {
    case Fault::kEngineMissing:
      return "No pass: the backup engine " + engine + " is not there. Install it again.";
    case Fault::kEngineRefused:
      return "No pass: the backup engine " + engine +
             " can't be started. Look at its rights, or install it again.";
    case Fault::kClockAhead:
      return clock +
             ", more than a year after the last pass. Set the clock; if it is right, delete HostState.ini "
             "of the data folder.";
    case Fault::kClockBehind:
      return clock +
             ", more than a day before the last pass. Set the clock; it is taken for right in an hour.";
    case Fault::kNone:
      break;
  }
  return {};
}

void TickGuard::Hold(Fault fault, LocalTime now) {
  const bool is_new = fault != fault_;
  if (is_new) waited_ = {};
  const bool is_clock = fault == Fault::kClockAhead || fault == Fault::kClockBehind;
  if (is_new || (is_clock && waited_ - said_at_ >= kSayAgain)) {
    said_at_ = waited_;
    Tell(Reason(fault, now), now);
    notes_.NoteWait(Reason(fault, now));
  }
  fault_ = fault;
}

void TickGuard::GoOn(LocalTime now) {
  if (fault_ != Fault::kNone) Tell("The passes go on.", now);
  fault_ = Fault::kNone;
  notes_.NoteWait("");
  if (const auto last = notes_.LastTick(); last && now - *last > kLongAway) {
    const auto away = std::chrono::floor<days>(now - *last).count();
    Tell("The last pass was " + std::to_string(away) + " days ago.", now);
  }
  notes_.NoteTick(now);
}

void TickGuard::Tell(std::string_view text, LocalTime now) {
  trace_.WriteTraceMain(FormatDate(kStampPicture, now) + " " + std::string{text});
  say_(text);
}

}  // namespace ondura
