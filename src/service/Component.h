#pragma once

#include <memory>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/Transfer.h"
#include "reporting/HttpFunctions.h"
#include "reporting/WebDavControl.h"
#include "reporting/mail_values.h"
#include "service/Controller.h"
#include "stages/clsSystemState.h"

namespace ondura {

// One instance of the component on one machine, with all its state: the one place where the classes are
// made and wired. Several instances may live side by side and meet only through the machine.
class Component {
 public:
  explicit Component(const Machine& machine);
  ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  Controller& controller();
  Transfer& transfer();
  Scheduler& scheduler();
  clsSystemState& system_state();
  WebDavControl& web();
  HttpFunctions& http();
  MailValues& mail_values();
  StartUp& start_up();
  Installation& installation();
  ServiceContext& context();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace ondura
