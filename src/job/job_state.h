#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "backupset/Selection.h"
#include "engine/engine_results.h"
#include "platform/Processes.h"
#include "platform/local_time.h"
#include "util/waits.h"

namespace ondura {

// The job's return code: 2 an ordinary end, 3 failed, 4 stopped on purpose or nothing done, -507 and -514
// the schedule is no longer valid, other negative numbers the result of the engine.
using JobCode = std::int16_t;

inline constexpr JobCode kJobOrdinaryEnd = 2;
inline constexpr JobCode kJobFailed = 3;
inline constexpr JobCode kJobStopped = 4;

// How a step of the road ends: nothing to go on, or the code to leave with.
using Leave = std::optional<JobCode>;

// Stands for the id of a program that was not started in this job; no process has it.
inline constexpr ProcessId kNotStarted = static_cast<ProcessId>(-1);

// The account of the job, as the profile holds it.
struct Account {
  std::string user_name;
  std::string password;
  std::string encryption_password;
  std::string random;
};

struct ProxyProfile {
  std::string Proxyset;
  std::string proxytypehttp;
  std::string proxytypesocks;
  std::string ProxyName;
  std::string ProxyPort;
  std::string ProxyAuthOn;
  std::string ProxyUser;
  std::string ProxyPass;
};

// What travels along the road of one job.
struct JobRun {
  JobCode code = kJobOrdinaryEnd;
  std::string result_text;   // for the log, the status file and the mail
  std::string session_path;  // the session log of this job
  bool cancelled = false;
  std::string kind_word = " ";     // names the kind of job in the mail
  std::string extra_mail_text;     // a reason for the mail
  std::int64_t engine_status = 0;  // the result of the transfer, for the mail
  EngineResult last_result;        // of the engine's commands so far
  std::string new_password_text;   // for the box that a wrong password shows

  Account account;
  ProxyProfile proxy;  // read on every job; the engine reads the profile itself
  std::string serverip;
  std::string port;
  // Required times of the job that nothing reads: before each launch of the engine, and after the transfer.
  std::optional<LocalTime> start_time;
  std::optional<LocalTime> end_time;

  std::string Sch_SQLTEMP;
  std::string APIEXCHANGE;
  std::string EXCHBRICK;
  std::string dump_folder;  // prepared application data, deleted after a good transfer
  std::string shadow_temp_folder;

  std::vector<SelectedItem> items;
  bool items_read = false;

  // Held open to the end of the job, so that the ids below stay theirs.
  std::optional<ProcessWatch> database_manager;
  std::optional<ProcessWatch> engine;
  ProcessId lDBManagerPID = kNotStarted;
  ProcessId lClsClientPID = 0;

  std::int64_t skipped_count = 0;
};

// What outlives a job: it stays for as long as the component.
struct JobMemory {
  // Grows by one stamp with every command 51.
  std::string RunFolderText;
  // The folder that the last CreateTempFolder made; it may have been deleted since.
  std::string temp_folder_path;
  // The product's own service was running when it was last asked for.
  bool ServiceRunningFlag = false;
  // The list that Trf_WritePORTNumbers fills, of the older interface; no routine reads it.
  std::vector<std::string> ports;
};

struct JobState {
  JobRun run;
  JobMemory memory;
};

}  // namespace ondura
