#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "backupset/LocalDatabase.h"
#include "job/JobContext.h"
#include "job/JobDriver.h"
#include "profile/ProductConfiguration.h"
#include "reporting/WebDavControl.h"
#include "reporting/mail_values.h"
#include "schedule/BackupSetStore.h"
#include "service/StartedFlag.h"
#include "stages/ShadowCopy.h"
#include "stages/SqlElevated.h"

namespace ondura {

// What one pass hands to the next, and the parts of a pass to one another.
struct ServiceState {
  // Guards the pass: a job is running, here or in the other host.
  bool DispatchBusy = false;
  // The chosen user's file says that a job is running, or one is being started.
  bool ScheduleFileBusy = false;
  // A due job was held back for interactive or continuous backup; keeps its occurrence alive.
  bool WaitingForInteractive = false;
  std::int16_t IntBackupPasses = 0;
  // The tick that called the pass was the service's: a field of Controller that the ticks keep.
  bool CalledFromService = false;

  // The user's label in mail: a field of Controller that each pass sets.
  std::string UserNameLabel;

  // Of the present pass: whether the chosen user's job may run, and what Sch_Load_ScheduleData answered. The
  // decision about a missed record changes both between the load and the job.
  bool RunJob = false;
  std::int16_t LoadResult = 0;
  std::optional<LocalTime> BackupStartTime;
  // The shared collection of target files: traced and emptied before a job. Nothing fills it.
  std::vector<std::string> TargetFileMap;

  // The switch for secure connections of the web layer, which Cont_login reads. Nothing sets it.
  bool secure = false;
};

// The parts of the component that the pass works with.
struct ServiceContext {
  JobContext& job;
  JobDriver& driver;
  ProductConfiguration& configuration;
  BackupSetStore& backup_set;
  ShadowCopy& shadow_copy;
  SqlElevated& sql_elevated;
  WebSecurity& web_security;
  MailValues& mail_values;
  StartedFlag started;
  ServiceState state;

  // Short names for what nearly every step needs.
  JobServices& services() { return job.services; }
  Machine& machine() { return job.services.machine; }
  Installation& installation() { return job.services.installation; }
  Trace& trace() { return job.services.trace; }
  const Transfer& transfer() { return job.services.transfer; }
  ProfileStore& store() { return job.services.store; }
  DBaction& schedule_file() { return job.services.schedule_file; }
};

}  // namespace ondura
