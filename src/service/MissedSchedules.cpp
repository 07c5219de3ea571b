#include "service/MissedSchedules.h"

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kDropWhenMissed = "8";

}  // namespace

void MissedSchedules::Decide() {
  ServiceState& state = context_.state;
  context_.trace().User("  Missed scheduled backup [nResult:] " + std::to_string(state.LoadResult));
  if (WasHeldBack()) {
    state.LoadResult = kDue;
    return;
  }
  MoveRecordOn();
  state.RunJob = false;
}

bool MissedSchedules::WasHeldBack() {
  const std::string interactive = context_.transfer().Trf_ReadUserNameProfile(profile_keys::kInteractive);
  if (context_.state.WaitingForInteractive) return true;
  return Trim(interactive) == context_.installation().CurrentUser &&
         StatusWordOf(context_.store().ReadUserProfileValue(Trim(interactive), profile_keys::kStatus)) ==
             StatusWord::kInteractive;
}

void MissedSchedules::MoveRecordOn() {
  DBaction& schedule = context_.schedule_file();
  if (!schedule.Selected()) return;
  ScheduleRecord& record = *schedule.Selected();
  schedule.schvTemp = record;
  if (!record.nexttime.empty()) context_.mail_values.ScheduledTimeText = record.nexttime;
  context_.services().scheduler.SetDayFlags(record.daymask);
  if (record.onceflag == kDropWhenMissed) {
    record.nexttime.clear();
    record.sortkey.clear();
  } else if (context_.services().scheduler.sch_CheckRepeatAppend() == MoveOutcome::kCannotMove) {
    context_.services().scheduler.NoteStanding(record, Standing::kNotAgain);
  } else {
    record.nexttime = schedule.schvTemp.nexttime;
    record.sortkey = schedule.schvTemp.sortkey;
  }
  schedule.DB_WriteRecord();
}

void MissedSchedules::Report() {
  const ScheduleRecord& record = context_.schedule_file().schvTemp;
  SessionLog& log = context_.services().session_log;
  log.AppendMissedNotice(log.NewPath(), record.nexttime);
  context_.job.keys.AddFailureDay();
  context_.state.WaitingForInteractive = false;
  for (const std::string& address : Split(record.mailids, ";")) {
    if (address.empty()) break;
    context_.trace().User("  E-mail id : " + address);
    WriteNotice();
  }
  context_.job.keys.WriteStatus(StatusWord::kClosedUp);
}

void MissedSchedules::WriteNotice() {
  const std::string& nexttime = context_.schedule_file().schvTemp.nexttime;
  SessionLog& log = context_.services().session_log;
  context_.trace().User("  " + std::string{kMissedHead} + "\r\n " + std::string{kMissedDetail} + "\r\n " +
                        std::string{kNextFrequencyText} + nexttime + ".");
  std::string& session_path = context_.job.state.run.session_path;
  session_path = log.NewPath();
  log.WriteMissedNotice(session_path, nexttime);
  context_.job.end_status.WriteJobEndStatus(JobEnd::kMissedRun);
}

void MissedSchedules::EndDisabledJob(Closeup& closeup) {
  SessionLog& log = context_.services().session_log;
  const std::string session_path = log.NewPath();
  context_.trace().User(" User disabled backup job." + session_path, kErrorPicture);
  log.AppendDisabledNotice(session_path);
  context_.job.keys.ClearFailureDays();
  closeup.Closeupoperation();
  context_.state.ScheduleFileBusy = false;
  context_.trace().Main(" Scheduled Disabled.");
  context_.state.RunJob = false;
}

}  // namespace ondura
