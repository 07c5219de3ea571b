#include "service/MailLauncher.h"

#include "reporting/mail_arguments.h"
#include "schedule/record_dates.h"
#include "text/text.h"
#include "util/waits.h"

namespace ondura {

namespace {

constexpr std::string_view kMailHelper = "OndruaEStartup.exe";
constexpr std::string_view kAlways = "3";
constexpr std::string_view kOnFailure = "2";

}  // namespace

void MailLauncher::StartForRecord(JobCode result) {
  const ScheduleRecord& record = context_.schedule_file().schvTemp;
  FillValues();
  if (record.mailids.empty()) return;
  for (const std::string& address : Split(record.mailids, ";")) {
    if (address.empty()) return;
    context_.trace().User("  E-mail id : " + address);
    context_.trace().User("  Mail option: " + record.mailoption);
    if (record.mailoption == kAlways) {
      const std::string arguments = Arguments(address, result, true);
      context_.trace().User(" Email args : " + arguments);
      Start(arguments);
    } else if (record.mailoption == kOnFailure && result != kJobOrdinaryEnd) {
      Start(Arguments(address, result, false));
    }
  }
}

void MailLauncher::FillValues() {
  const JobRun& run = context_.job.state.run;
  const ScheduleRecord& record = context_.schedule_file().schvTemp;
  MailValues& values = context_.mail_values;
  values.ScheduleMailDetail = record.maillog;
  values.ShortDateFormat = context_.services().scheduler.DateFormatText;
  values.SessionLogPath = run.session_path;
  values.JobStatusText = run.result_text;
  values.ScheduledTime = context_.state.BackupStartTime;
  values.StageWord = run.kind_word;
  values.FailureReason = run.extra_mail_text;
  values.ScheduleTimeField = record.schedtime;
}

// The engine's status is there with one option only; the helper bears with both lengths.
std::string MailLauncher::Arguments(const std::string& address, JobCode result, bool with_engine_status) {
  const MailValues& values = context_.mail_values;
  const LocaleFacts locale{values.ShortDateFormat, context_.services().scheduler.TimeFormatText};
  return MailArgumentsText(
      {.address = address,
       .detail = values.ScheduleMailDetail,
       .result = result,
       .short_date_format = values.ShortDateFormat,
       .session_log = values.SessionLogPath,
       .job_status = values.JobStatusText,
       .scheduled_time = values.ScheduledTime ? DefaultDateText(*values.ScheduledTime, locale) : "",
       .stage_word = values.StageWord,
       .failure_reason = values.FailureReason,
       .user = context_.installation().CurrentUser,
       .engine_status = with_engine_status ? std::to_string(context_.job.state.run.engine_status) : ""});
}

void MailLauncher::Start(const std::string& arguments) {
  const Installation& installation = context_.installation();
  const ProcessWatch started(context_.machine().processes,
                             context_.services().programs.LaunchHidden(
                                 installation.ExeLocation + std::string{kMailHelper}, arguments,
                                 installation.VirtualPath, 0, Lifetime::kOutlivesStarter));
}

}  // namespace ondura
