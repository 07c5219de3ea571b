#pragma once

#include "backupset/LocalDatabase.h"
#include "backupset/MappedDrives.h"
#include "job/ShadowCopyRelease.h"
#include "job/Stage.h"
#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/ProfileStore.h"
#include "profile/Transfer.h"
#include "reporting/Progress.h"
#include "reporting/SessionLog.h"
#include "reporting/Trace.h"
#include "schedule/DBaction.h"
#include "schedule/Scheduler.h"
#include "util/MachineFacts.h"
#include "util/Programs.h"

namespace ondura {

// What every step of the job works with. The composition root makes it; it outlives the job's classes.
struct JobServices {
  Machine machine;
  Installation& installation;
  Transfer& transfer;
  ProfileStore& store;
  Trace& trace;
  Programs& programs;
  MachineFacts& facts;
  DBaction& schedule_file;
  Scheduler& scheduler;
  SessionLog& session_log;
  Progress& progress;
  LocalDatabase& local_database;
  MappedDrives& mapped_drives;
  ShadowCopyRelease& shadow_copy;
  Stages& stages;
};

}  // namespace ondura
