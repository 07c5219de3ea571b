#include "EngineGuard.h"

#include <sstream>

#include "engine/status_word.h"
#include "util/date_text.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;

// How long a job may take to follow a request before the engine is ended, and between two attempts.
constexpr milliseconds kGrace{60'000};
constexpr milliseconds kNever = milliseconds::max();

std::string HoursText(milliseconds time) {
  std::ostringstream text;
  text << std::chrono::duration<double, std::ratio<3600>>(time).count();
  return text.str();
}

}  // namespace

EngineGuard::EngineGuard(const Machine& machine, const Installation& installation, milliseconds limit)
    : machine_(machine),
      installation_(installation),
      transfer_(machine, installation_),
      trace_(machine, installation_),
      notes_(machine, installation_),
      limit_(limit) {}

void EngineGuard::Watch(ProcessId id) {
  installation_.CurrentUser = transfer_.Trf_ReadUserNameProfile(profile_keys::kScheduled);
  // A job runs its engine several times; the note on it stays until the next job.
  if (!watched_) notes_.NoteEngineEnded(installation_.CurrentUser, "");
  const milliseconds due = limit_.count() > 0 ? limit_ : kNever;
  watched_ = Watched{.id = id, .due = id == 0 ? milliseconds{0} : due};
}

void EngineGuard::Ended(ProcessId id) {
  if (watched_ && watched_->id == id) watched_->due = kNever;
}

void EngineGuard::Spent(milliseconds time) {
  if (!watched_) return;
  watched_->spent += time;
  if (watched_->spent < watched_->due) return;
  if (!IsRunning(watched_->id)) {
    watched_->due = kNever;
    return;
  }
  AskForAbort();
  if (watched_->asked) EndEngine();
  watched_->asked = true;
  watched_->due = watched_->spent + kGrace;
}

// A process that has ended can be opened for as long as anybody holds it.
bool EngineGuard::IsRunning(ProcessId id) {
  if (id == 0) return true;
  const ProcessHandle handle = machine_.processes.OpenById(id, ProcessAccess::kQuery);
  if (handle == kNoProcess) return false;
  const bool is_running = machine_.processes.ExitCode(handle) == kStillActive;
  machine_.processes.Close(handle);
  return is_running;
}

// A job in its transfer looks at one key and elsewhere at the other.
void EngineGuard::AskForAbort() {
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kCancel, "1");
  transfer_.Trf_WriteUserProfileDefault(profile_keys::kStatus, TextOf(StatusWord::kStopAsked));
  if (watched_->asked) return;
  Say(watched_->id == 0
          ? "the backup engine could not be started, and its job was stopped"
          : "the backup engine ran longer than " + HoursText(limit_) + " h, and its job was stopped");
}

void EngineGuard::EndEngine() {
  if (watched_->id == 0) return;
  machine_.processes.EnablePrivilege("SeDebugPrivilege");
  const ProcessHandle handle = machine_.processes.OpenById(watched_->id, ProcessAccess::kQueryAndTerminate);
  if (handle == kNoProcess) return;
  if (machine_.processes.Terminate(handle, 0)) {
    Say("the backup engine ran longer than " + HoursText(limit_) +
        " h, did not follow the request to stop and was ended");
  }
  machine_.processes.Close(handle);
}

void EngineGuard::Say(std::string_view what) {
  const std::string stamp = FormatDate(kStampPicture, machine_.clock.Now());
  trace_.WriteTraceMain(stamp + " User " + installation_.CurrentUser + ": " + std::string{what});
  notes_.NoteEngineEnded(installation_.CurrentUser, stamp + " " + std::string{what});
}

}  // namespace ondura
