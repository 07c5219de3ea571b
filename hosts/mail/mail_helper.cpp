#include "mail_helper.h"

#include "reporting/mail_arguments.h"
#include "service/Component.h"
#include "service/StartUp.h"
#include "tick_options.h"
#include "util/locale_date.h"

namespace ondura {

namespace {

void FillValues(Component& component, const MailArguments& arguments) {
  const LocaleFacts locale{arguments.short_date_format,
                           component.controller().GetLocaleString(kLocaleTimeFormat)};
  MailValues& values = component.mail_values();
  values.ScheduleMailDetail = arguments.detail;
  values.ShortDateFormat = arguments.short_date_format;
  values.SessionLogPath = arguments.session_log;
  values.JobStatusText = arguments.job_status;
  values.ScheduledTime = ReadEitherForm(arguments.scheduled_time, locale);
  values.StageWord = arguments.stage_word;
  values.FailureReason = arguments.failure_reason;
  component.installation().CurrentUser = arguments.user;
}

}  // namespace

MailOutcome RunMailHelper(const Machine& machine, const MailOptions& options) {
  const auto arguments = ParseMailArguments(options.text);
  if (!arguments) {
    return {kExitUsage,
            "the text has fewer than the ten fields of a mail, or no address, result or user; see --help"};
  }
  Component component{machine};
  if (!component.start_up().ReadInstallation(options.install)) {
    return {kExitUsage, "no usable product configuration for the install folder " + options.install +
                            "; name it with --install"};
  }
  FillValues(component, *arguments);
  component.controller().SendMail(arguments->address, false, arguments->result);
  const std::string& error = component.web().ErrorText();
  if (error.empty()) return {};
  return {kExitFailure, "the mail to " + arguments->address + " is lost: " + error};
}

}  // namespace ondura
