#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/ProfileStore.h"
#include "reporting/HttpFunctions.h"
#include "reporting/LogExtract.h"
#include "reporting/Trace.h"
#include "reporting/mail_values.h"
#include "util/MachineFacts.h"

namespace ondura {

// The mail to a user about a scheduled run. A mail that can't be sent is lost. `cancelled_result` is
// what the engine leaves in RetValue when its user has cancelled it.
class NotificationMail {
 public:
  NotificationMail(const Machine& machine, const Installation& installation, const ProfileStore& store,
                   MachineFacts& facts, Trace& trace, LogExtract& log_extract, HttpFunctions& http,
                   MailValues& values, std::string cancelled_result)
      : machine_(machine),
        installation_(installation),
        store_(store),
        facts_(facts),
        trace_(trace),
        log_extract_(log_extract),
        http_(http),
        values_(values),
        cancelled_result_(std::move(cancelled_result)) {}

  // Mails the result of the run to one address. `statback` is 2 for success, 3 for a missed or failed start,
  // 4 and others as the job returned them; Attachlog has no effect. Without a session log, or with an empty
  // one, no mail is sent.
  void SendMail(std::string_view Mailto, bool Attachlog, std::int16_t statback);

  // Mails `sContent` in the usual frame, without a subject.
  void SendMailNew(std::string_view Mailto, std::string_view sContent);

 private:
  std::string StatusLine();
  std::string ScheduledTimeLine();
  std::string LogPart(bool has_detail);
  [[nodiscard]] std::string ResultPart(std::int16_t statback, bool has_detail) const;
  [[nodiscard]] std::string Close() const;
  [[nodiscard]] std::string NoticeTime() const;
  void TraceSending();

  Machine machine_;
  const Installation& installation_;
  const ProfileStore& store_;
  MachineFacts& facts_;
  Trace& trace_;
  LogExtract& log_extract_;
  HttpFunctions& http_;
  MailValues& values_;
  std::string cancelled_result_;
};

}  // namespace ondura
