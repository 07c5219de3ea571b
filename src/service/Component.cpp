#include "service/Component.h"

#include "engine/engine_results.h"
#include "job/Connection.h"
#include "stages/ExchangeBrickStage.h"
#include "stages/ExchangeStoreStage.h"
#include "stages/SqlServerStage.h"
#include "stages/StageSet.h"
#include "stages/SystemStateStage.h"

namespace ondura {

// Members are made in this order, lowest first.
struct Component::Parts {
  explicit Parts(const Machine& ports) : machine(ports) {
    stages.Register(JobKind::kSqlServer, sql_server);
    stages.Register(JobKind::kSystemState, system_state_stage);
    stages.Register(JobKind::kExchangeStore, exchange_store);
    stages.Register(JobKind::kExchangeBrick, exchange_brick);
  }

  Machine machine;
  Installation installation;
  Options options{machine, installation};
  Trace trace{options, machine.clock};
  Transfer transfer{machine, installation};
  ProfileStore store{machine, installation};
  ProductConfiguration configuration{machine, installation};
  MachineFacts facts{machine, options};
  Programs programs{machine, facts, options};
  SessionLog session_log{machine, installation};
  WebSecurity web_security;
  WebDavControl web{machine, transfer, options, web_security};
  HttpFunctions http{machine, installation, web, trace};
  MailValues mail_values;
  LogExtract log_extract{machine, installation, mail_values};
  NotificationMail notification{machine, installation, store,
                                facts,   trace,        log_extract,
                                http,    mail_values,  engine_results::kCancelled.Text()};
  Progress progress{machine, installation, transfer};
  // The end of the display of an earlier job must not stop a calculation outside of any.
  const bool never_ended = false;
  StatusStopCheck size_stop{machine, installation, never_ended};
  SizeCalculation sizes{machine, installation, size_stop};
  DBaction schedule_file{machine, installation, trace};
  Scheduler scheduler{machine, trace, transfer, schedule_file};
  BackupSetStore backup_set{machine, installation, trace};
  ResetDate reset_date{machine.clock, store, transfer};
  Selection selection{machine, installation, trace};
  MappedDrives mapped_drives{machine.drives, transfer};
  NetworkPaths network_paths{machine, store, trace};
  LocalDatabase local_database{machine, installation, transfer, store, reset_date, programs, trace};
  ShadowCopy shadow_copy{machine, installation, trace, facts, programs};
  StageSet stages;
  JobContext job{{machine, installation, transfer, store, trace, programs, facts, schedule_file, scheduler,
                  session_log, progress, local_database, mapped_drives, shadow_copy, stages}};
  StageSupport stage_support{job, backup_set};
  SqlDump sql_dump{job, stage_support, backup_set};
  SqlServerStage sql_server{job, stage_support, backup_set, sql_dump};
  SqlElevated sql_elevated{job, stage_support, backup_set, sql_dump};
  clsSystemState system_state{job, stage_support};
  SystemStateStage system_state_stage{job, stage_support, system_state};
  ExchangeStoreStage exchange_store{job, stage_support};
  ExchangeBrickStage exchange_brick{job, stage_support, web};
  JobDriver driver{job};
  AbortForms abort{job};
  Connection connection{job, abort};
  EngineFiles engine_files{job};
  RemoteCall remote_call{job, connection};
  ServiceContext context{job,          driver,       configuration, backup_set,       shadow_copy,
                         sql_elevated, web_security, mail_values,   StartedFlag{job}, {}};
  StartUp start_up{context};
  Closeup closeup{context};
  MissedSchedules missed{context};
  MailLauncher mail{context};
  JobBracket bracket{context, closeup, missed, mail};
  DispatchPass pass{context, bracket, missed};
  HostTick tick{context, pass};
  Controller controller{{context, start_up, tick, pass, bracket, closeup, engine_files, remote_call,
                         reset_date, selection, sizes, network_paths, log_extract, notification,
                         exchange_store, exchange_brick}};
};

Component::Component(const Machine& machine) : parts_(std::make_unique<Parts>(machine)) {}

Component::~Component() = default;

Controller& Component::controller() { return parts_->controller; }
Transfer& Component::transfer() { return parts_->transfer; }
clsSystemState& Component::system_state() { return parts_->system_state; }
WebDavControl& Component::web() { return parts_->web; }
HttpFunctions& Component::http() { return parts_->http; }
MailValues& Component::mail_values() { return parts_->mail_values; }
StartUp& Component::start_up() { return parts_->start_up; }
Scheduler& Component::scheduler() { return parts_->scheduler; }
Installation& Component::installation() { return parts_->installation; }
ServiceContext& Component::context() { return parts_->context; }

}  // namespace ondura
