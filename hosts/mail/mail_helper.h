#pragma once

#include <string>

#include "mail_options.h"
#include "platform/machine.h"

namespace ondura {

struct MailOutcome {
  int exit_code = 0;
  std::string message;  // for a person; empty when all went well
};

// Sends one mail for the product in the install folder. It looks on only: the job that started it may still
// be closing up, so no state of users or jobs is touched.
MailOutcome RunMailHelper(const Machine& machine, const MailOptions& options);

}  // namespace ondura
