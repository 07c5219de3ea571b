#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {

// What the scheduler hands to the mail helper about a run: one text of fields joined by ";", in this order.
// The scheduler writes it and the helper, a program of its own, reads it.
struct MailArguments {
  std::string address;
  std::string detail;  // "1" puts an extract of the session log into the mail
  std::int16_t result = 0;
  std::string short_date_format;  // of the user, such as "M/d/yyyy"
  std::string session_log;
  std::string job_status;
  std::string scheduled_time;  // in the machine's own form
  std::string stage_word;
  std::string failure_reason;
  std::string user;
  std::string engine_status;  // not there when the mail is one about failures only
};

// The text to start the helper with; without an engine status it ends with the user.
std::string MailArgumentsText(const MailArguments& arguments);

// The status is an outside tool's text and may hold ";": five fields are taken from the left, the others from
// the right, and the status is what remains between. std::nullopt for a text of fewer than ten fields,
// without an address or a user, or with a result that is not a number.
std::optional<MailArguments> ParseMailArguments(std::string_view text);

}  // namespace ondura
