#include "reporting/mail_arguments.h"

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::size_t kFields = 10;
constexpr std::size_t kStatusField = 5;

// The word for the kind of backup has blanks around it, or is one blank.
bool IsStageWord(std::string_view field) { return field.starts_with(' '); }

// The engine's status is a number after the user's name. A name can be a number too: the place of the stage
// word, three fields from the right without a status and four with one, then decides.
bool EndsWithEngineStatus(const std::vector<std::string>& fields) {
  const std::size_t count = fields.size();
  if (count == kFields) return false;
  const std::string& last = fields.back();
  if (!last.empty() && !ParseInt16(last)) return false;
  return IsStageWord(fields[count - 4]) || !IsStageWord(fields[count - 3]);
}

}  // namespace

std::string MailArgumentsText(const MailArguments& arguments) {
  std::vector<std::string> fields{arguments.address,
                                  arguments.detail,
                                  std::to_string(arguments.result),
                                  arguments.short_date_format,
                                  arguments.session_log,
                                  arguments.job_status,
                                  arguments.scheduled_time,
                                  arguments.stage_word,
                                  arguments.failure_reason,
                                  arguments.user};
  if (!arguments.engine_status.empty()) fields.push_back(arguments.engine_status);
  return Join(fields, ";");
}

std::optional<MailArguments> ParseMailArguments(std::string_view text) {
  std::vector<std::string> fields = Split(text, ";");
  if (fields.size() < kFields) return std::nullopt;
  std::string engine_status;
  if (EndsWithEngineStatus(fields)) {
    engine_status = fields.back();
    fields.pop_back();
  }
  const std::size_t after_status = fields.size() - (kFields - kStatusField - 1);
  const std::vector<std::string> status(fields.begin() + kStatusField,
                                        fields.begin() + static_cast<std::ptrdiff_t>(after_status));
  // Fields too many for any other reason than such a status are no mail.
  if (status.size() > 1 && !IsStageWord(fields[after_status + 1])) return std::nullopt;
  const auto result = ParseInt16(fields[2]);
  const std::string& user = fields[after_status + 3];
  if (!result || Trim(fields[0]).empty() || Trim(user).empty()) return std::nullopt;
  return MailArguments{.address = fields[0],
                       .detail = fields[1],
                       .result = *result,
                       .short_date_format = fields[3],
                       .session_log = fields[4],
                       .job_status = Join(status, ";"),
                       .scheduled_time = fields[after_status],
                       .stage_word = fields[after_status + 1],
                       .failure_reason = fields[after_status + 2],
                       .user = user,
                       .engine_status = engine_status};
}

}  // namespace ondura
