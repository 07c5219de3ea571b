#include "mail_arguments.h"

#include "util/text.h"

namespace ondura {

namespace {

constexpr std::size_t kFields = 10;

}  // namespace

std::optional<MailArguments> ParseMailArguments(std::string_view text) {
  std::vector<std::string> fields = Split(text, ";");
  if (fields.size() != kFields && fields.size() != kFields + 1) return std::nullopt;
  fields.resize(kFields + 1);
  const auto result = ParseInt16(fields[2]);
  if (!result || Trim(fields[0]).empty() || Trim(fields[9]).empty()) return std::nullopt;
  return MailArguments{.address = fields[0],
                       .detail = fields[1],
                       .result = *result,
                       .short_date_format = fields[3],
                       .session_log = fields[4],
                       .job_status = fields[5],
                       .scheduled_time = fields[6],
                       .stage_word = fields[7],
                       .failure_reason = fields[8],
                       .user = fields[9],
                       .engine_status = fields[10]};
}

}  // namespace ondura
