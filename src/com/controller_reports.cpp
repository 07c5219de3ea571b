#include "com/ControllerObject.h"
#include "com/com_date.h"
#include "com/com_variant.h"
#include "reporting/mail_encoding.h"
#include "reporting/time_diff.h"

// The operations of Controller that report: logs, mail, sizes, network paths.

namespace ondura {

namespace {

// What a script has in a date that it never set.
constexpr LocalTime kDateZero{std::chrono::local_days{std::chrono::year{1899} / 12 / 30}};

}  // namespace

STDMETHODIMP ControllerObject::ReadLinesfromtracefiles(BSTR sFilepath, BSTR* text) {
  return Answer(text, [&] { return core().ReadLinesfromtracefiles(TextOf(sFilepath)); });
}

STDMETHODIMP ControllerObject::ReadLinesfromtracefilesWithoutLogExtract(BSTR sFilepath, BSTR* text) {
  return Answer(text, [&] { return core().ReadLinesfromtracefilesWithoutLogExtract(TextOf(sFilepath)); });
}

STDMETHODIMP ControllerObject::AppendLogAttach(BSTR sLine) {
  return Run([&] { core().AppendLogAttach(TextOf(sLine)); });
}

STDMETHODIMP ControllerObject::AppendFileData(BSTR sFilepath, BSTR sentry) {
  return Run([&] { core().AppendFileData(TextOf(sFilepath), TextOf(sentry)); });
}

STDMETHODIMP ControllerObject::TimeDiffString(DATE dtmStart, DATE dtmEnd, BSTR* text) {
  return Answer(text, [&] {
    return ondura::TimeDiffString(TimeOf(dtmStart).value_or(kDateZero), TimeOf(dtmEnd).value_or(kDateZero));
  });
}

STDMETHODIMP ControllerObject::SendMail(BSTR Mailto, BSTR Attachlog, short statback) {
  return Run([&] { core().SendMail(TextOf(Mailto), SysStringLen(Attachlog) > 0, statback); });
}

STDMETHODIMP ControllerObject::SendMailNew(BSTR Mailto, BSTR sContent) {
  return Run([&] { core().SendMailNew(TextOf(Mailto), TextOf(sContent)); });
}

STDMETHODIMP ControllerObject::URLEncodeWebd(BSTR sText, BSTR* text) {
  return Answer(text, [&] { return ondura::URLEncodeWebd(TextOf(sText)); });
}

STDMETHODIMP ControllerObject::UTF8_Encode(BSTR sText, VARIANT* bytes) {
  return AnswerNothing(bytes, [&] {
    const std::vector<std::uint8_t> encoded = ondura::UTF8_Encode(TextOf(sText));
    if (!encoded.empty()) Variant(encoded).MoveTo(*bytes);
  });
}

STDMETHODIMP ControllerObject::get_MailSubject(BSTR* value) {
  return Answer(value, [&] { return mail().MailSubject; });
}

STDMETHODIMP ControllerObject::put_MailSubject(BSTR value) {
  return Run([&] { mail().MailSubject = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_ScheduledTimeText(BSTR* value) {
  return Answer(value, [&] { return mail().ScheduledTimeText; });
}

STDMETHODIMP ControllerObject::put_ScheduledTimeText(BSTR value) {
  return Run([&] { mail().ScheduledTimeText = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_ScheduleTimeField(BSTR* value) {
  return Answer(value, [&] { return mail().ScheduleTimeField; });
}

STDMETHODIMP ControllerObject::put_ScheduleTimeField(BSTR value) {
  return Run([&] { mail().ScheduleTimeField = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_ScheduledTime(DATE* value) {
  return Answer(value, [&] { return DateOf(mail().ScheduledTime); });
}

STDMETHODIMP ControllerObject::put_ScheduledTime(DATE value) {
  return Run([&] { mail().ScheduledTime = TimeOf(value); });
}

STDMETHODIMP ControllerObject::get_ScheduleMailDetail(BSTR* value) {
  return Answer(value, [&] { return mail().ScheduleMailDetail; });
}

STDMETHODIMP ControllerObject::put_ScheduleMailDetail(BSTR value) {
  return Run([&] { mail().ScheduleMailDetail = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_ShortDateFormat(BSTR* value) {
  return Answer(value, [&] { return mail().ShortDateFormat; });
}

STDMETHODIMP ControllerObject::put_ShortDateFormat(BSTR value) {
  return Run([&] { mail().ShortDateFormat = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_SessionLogPath(BSTR* value) {
  return Answer(value, [&] { return mail().SessionLogPath; });
}

STDMETHODIMP ControllerObject::put_SessionLogPath(BSTR value) {
  return Run([&] { mail().SessionLogPath = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_JobStatusText(BSTR* value) {
  return Answer(value, [&] { return mail().JobStatusText; });
}

STDMETHODIMP ControllerObject::put_JobStatusText(BSTR value) {
  return Run([&] { mail().JobStatusText = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_StageWord(BSTR* value) {
  return Answer(value, [&] { return mail().StageWord; });
}

STDMETHODIMP ControllerObject::put_StageWord(BSTR value) {
  return Run([&] { mail().StageWord = TextOf(value); });
}

STDMETHODIMP ControllerObject::get_FailureReason(BSTR* value) {
  return Answer(value, [&] { return mail().FailureReason; });
}

STDMETHODIMP ControllerObject::put_FailureReason(BSTR value) {
  return Run([&] { mail().FailureReason = TextOf(value); });
}

STDMETHODIMP ControllerObject::CalculateTotalSize() {
  return Run([&] { core().CalculateTotalSize(); });
}

STDMETHODIMP ControllerObject::CheckServiceModeMappedDrive(VARIANT_BOOL* is_blocked) {
  return Answer(is_blocked, [&] { return core().CheckServiceModeMappedDrive(); });
}

STDMETHODIMP ControllerObject::ReadProfilefromRegistryUNCCountSch(BSTR* count) {
  return Answer(count, [&] { return core().ReadProfilefromRegistryUNCCountSch(); });
}

STDMETHODIMP ControllerObject::ReadProfilefromRegistryUNCSch() {
  return Run([&] { core().ReadProfilefromRegistryUNCSch(); });
}

STDMETHODIMP ControllerObject::ReadUNCListfromRegistryProfile() {
  return Run([&] { core().ReadUNCListfromRegistryProfile(); });
}

STDMETHODIMP ControllerObject::get_UNCCount(long* count) {
  return Answer(count, [&] { return static_cast<long>(core().UNCPath().size()); });
}

STDMETHODIMP ControllerObject::get_UNCPath(long row, long column, BSTR* field) {
  return Answer(field, [&] {
    const std::vector<UNCEntry>& table = core().UNCPath();
    const auto at_row = static_cast<std::size_t>(row);
    const auto at_column = static_cast<std::size_t>(column);
    if (row < 0 || at_row >= table.size() || column < 0 || at_column >= table[at_row].size()) {
      throw ComError{DISP_E_BADINDEX};
    }
    return table[at_row][at_column];
  });
}

}  // namespace ondura
