#include "reporting/NotificationMail.h"

#include <algorithm>
#include <array>

#include "text/text.h"
#include "util/TextFiles.h"
#include "util/locale_date.h"

namespace ondura {

namespace {

constexpr std::string_view kDetailWanted = "1";
constexpr std::string_view kFirstVersion = "3.4.1";
constexpr std::size_t kRuleLength = 46;

// What a mail says about the result.
enum class Part {
  kNothing,
  kBreak,
  kTwoBreaks,
  kTwoBreaksAndReason,
  kPlainText,
  kCancelText,
  kSuccessText,
  kReasonOrPlainText,
};

struct ResultRow {
  std::int16_t statback;
  Part detail_stopped;
  Part detail;
  Part stopped_by_result;
  Part stopped_otherwise;
  Part completed;
};

constexpr std::array kResults{
    ResultRow{2, Part::kBreak, Part::kNothing, Part::kCancelText, Part::kPlainText, Part::kSuccessText},
    ResultRow{4, Part::kBreak, Part::kTwoBreaks, Part::kCancelText, Part::kPlainText, Part::kPlainText},
    ResultRow{3, Part::kBreak, Part::kTwoBreaksAndReason, Part::kCancelText, Part::kPlainText,
              Part::kReasonOrPlainText},
};
constexpr ResultRow kOtherResult{
    0, Part::kTwoBreaks, Part::kTwoBreaks, Part::kPlainText, Part::kPlainText, Part::kPlainText};

std::string Line(std::string text) { return text.append(kLineEnd); }

std::string ReasonBlock(const MailValues& values) {
  if (values.FailureReason.empty()) return {};
  return Line("") + Line("Possible reason,") + Line(values.FailureReason);
}

std::string TextOf(Part part, const MailValues& values) {
  const std::string status = Line(values.JobStatusText);
  switch (part) {
    case Part::kNothing:
      return {};
    case Part::kBreak:
      return Line("");
    case Part::kTwoBreaks:
      return Line("") + Line("");
    case Part::kTwoBreaksAndReason:
      return Line("") + Line("") + ReasonBlock(values);
    case Part::kCancelText:
      return status + Line("Backup Canceled.") + Line("");
    case Part::kSuccessText:
      return status + Line("Successfully completed the" + values.StageWord + "Scheduled backup.") + Line("");
    case Part::kReasonOrPlainText:
      if (!values.FailureReason.empty()) return ReasonBlock(values);
      break;
    case Part::kPlainText:
      break;
  }
  return status + Line("");
}

// The time after a short text with the month in front, which a machine that puts the day in front reads
// back: where the month would be none the text is taken as it was written. A year of two digits lies between
// 1930 and 2029.
LocalTime ReadBackDayFirst(LocalTime time) {
  constexpr int kFirstShortYear = 1930;
  TimeFields fields = ToFields(time);
  fields.year = kFirstShortYear + (fields.year % 100 + 100 - kFirstShortYear % 100) % 100;
  if (fields.day <= 12) std::swap(fields.day, fields.month);
  return ToLocalTime(fields);
}

// A version may be in the registry as a number, too.
std::string TextOf(const std::optional<RegistryValue>& value) {
  if (!value) return {};
  return value->type == RegistryType::kText ? value->text : std::to_string(value->number);
}

LocaleFacts FactsOf(LocaleInfo& locale) {
  return {locale.Text(kLocaleShortDate), locale.Text(kLocaleTimeFormat)};
}

}  // namespace

void NotificationMail::SendMail(std::string_view Mailto, bool /*Attachlog*/, std::int16_t statback) {
  const bool has_detail = values_.ScheduleMailDetail == kDetailWanted;
  values_.MailSubject = "Scheduled backup email notification[" + installation_.CurrentUser + "]";
  std::string body =
      Line("Dear " + installation_.ProductName + " User (" + installation_.CurrentUser + ") ,");
  body += Line("") + StatusLine() + ScheduledTimeLine();
  if (machine_.files.Size(values_.SessionLogPath).value_or(0) == 0) return;
  body += LogPart(has_detail);
  body += ResultPart(statback, has_detail);
  body += Close();
  http_.SendEmail(Mailto, values_.MailSubject, body, "");
  TraceSending();
  // A line without the answer's value, which is never there.
  trace_.User("", kShortHourPicture);
}

std::string NotificationMail::StatusLine() {
  const std::string key = "software\\Corvane\\" + installation_.ProductInstallationName + "\\Application";
  std::string version = TextOf(facts_.ReadRegistryValue(RegistryRoot::kCurrentUser, key, "Version"));
  if (Trim(version).empty()) version = kFirstVersion;
  return Line("Scheduled Backup status: (" + installation_.ProductCaption + " Version No " + version + ")");
}

std::string NotificationMail::ScheduledTimeLine() {
  auto& time = values_.ScheduledTime;
  // Day and month change places on the way, and users whose dates begin with the day see it like that.
  if (time && IsDayFirst(values_.ShortDateFormat)) time = ReadBackDayFirst(*time);
  return Line("Scheduled Time : " + (time ? OwnDateText(*time, FactsOf(machine_.locale)) : ""));
}

std::string NotificationMail::LogPart(bool has_detail) {
  const std::string& log = values_.SessionLogPath;
  if (!has_detail) return Line(log_extract_.ReadLinesfromtracefilesWithoutLogExtract(log));
  return Line(log_extract_.ReadLinesfromtracefiles(log)) + Line(std::string(kRuleLength, '-'));
}

std::string NotificationMail::ResultPart(std::int16_t statback, bool has_detail) const {
  const bool is_stopped_by_result = store_.ReadProfileValue(profile_keys::kRetValue) == cancelled_result_;
  const bool is_stopped = is_stopped_by_result || Trim(store_.ReadProfileValue(profile_keys::kDllStatus)) ==
                                                      run_state::kEndedByMessage;
  const auto found = std::ranges::find(kResults, statback, &ResultRow::statback);
  const ResultRow& row = found != kResults.end() ? *found : kOtherResult;
  if (has_detail) return TextOf(is_stopped ? row.detail_stopped : row.detail, values_);
  if (is_stopped_by_result) return TextOf(row.stopped_by_result, values_);
  return TextOf(is_stopped ? row.stopped_otherwise : row.completed, values_);
}

std::string NotificationMail::Close() const {
  return Line("") + Line("Regards,") + Line(installation_.ProductName + " Support.");
}

void NotificationMail::SendMailNew(std::string_view Mailto, std::string_view sContent) {
  // The greeting has no blank after its first word here.
  std::string body = Line("Dear" + installation_.ProductName + " User (" + installation_.CurrentUser + ") ,");
  body += Line("") + Line("") + Line("Scheduled Time : " + NoticeTime());
  body += Line("") + Line(std::string{sContent}) + Close();
  http_.SendEmail(Mailto, "", body, "");
  TraceSending();
}

std::string NotificationMail::NoticeTime() const {
  const std::string& text =
      values_.ScheduledTimeText.empty() ? values_.ScheduleTimeField : values_.ScheduledTimeText;
  if (!IsDayFirst(values_.ShortDateFormat)) return text;
  const auto time = ReadEitherForm(text, FactsOf(machine_.locale));
  return time ? FormatDate("dd-mm-yyyy", *time) : text;
}

void NotificationMail::TraceSending() { trace_.User("  Send Email notififaction", kShortHourPicture); }

}  // namespace ondura
