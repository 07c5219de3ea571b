#pragma once

#include <string>

#include "service/ServiceContext.h"

namespace ondura {

// Starts the mail helper for the addresses of a record. The helper is a program of its own because the
// component's process may be about to end.
class MailLauncher {
 public:
  explicit MailLauncher(ServiceContext& context) : context_(context) {}

  // Leaves what the mail says about the run in the mail values. Starts with option "3" always, with "2"
  // unless the job ended in the ordinary way, otherwise never.
  void StartForRecord(JobCode result);

 private:
  void FillValues();
  std::string Arguments(const std::string& address, JobCode result, bool with_engine_status);
  void Start(const std::string& arguments);

  ServiceContext& context_;
};

}  // namespace ondura
