#include "engines/common/commands.h"

#include <iostream>
#include <string>
#include <vector>

#include "engine/engine_files.h"
#include "engines/common/program.h"
#include "text/text.h"
#include "util/date_text.h"

namespace ondura::engines {

namespace {

EngineResult TotalSize(Client& client, Store& store) {
  const auto space = store.Usage();
  if (!space) return store.Failure();
  client.transfer().Trf_WriteUserProfileDefault(profile_keys::kQuotaUsed, std::to_string(space->used_bytes));
  client.transfer().Trf_WriteUserProfileDefault(profile_keys::kQuotaMax, std::to_string(space->max_bytes));
  const bool is_full = space->used_bytes > space->max_bytes || store.LacksRoom();
  return is_full ? engine_results::kQuotaUsedUp : engine_results::kDone;
}

EngineResult PortNumber(Client& client, const Account& account) {
  std::string port = client.transfer().Trf_ReadUserProfile(profile_keys::kPort);
  if (port.empty()) port = client.installation().DefaultPort;
  if (port.empty()) return engine_results::kNoPortInformation;
  const std::string text = port + std::string{kLineEnd} + account.server + std::string{kLineEnd};
  const bool written = client.text_files().Write(client.installation().UserFile(engine_files::kPortOutput),
                                                 text, Encoding::kCodePage);
  return written ? engine_results::kDone : engine_results::kNoPortInformation;
}

bool UsesDatabase(Client& client) {
  const std::string method{Trim(client.transfer().Trf_ReadUserNameDBProfile(profile_keys::kLocalDatabase))};
  return method.empty() || method == "1";
}

EngineResult Backup(Client& client, Store& store) {
  Selection selection(client, store.OwnFolders());
  StageData stage_data(client);
  if (selection.IsEmpty() && stage_data.IsEmpty()) return engine_results::kNothingSelected;
  CompareList list(client);
  StopRequests stop(client);
  TransferJournal journal(client);
  const bool by_database = UsesDatabase(client);
  const EngineResult result =
      store.Transfer({selection, stage_data, by_database ? nullptr : &list}, journal, stop);
  journal.Close(result);
  return result;
}

// The other commands are there to find out whether the account may be entered, or come first in a job.
bool FollowsOthers(EngineCommand command) {
  return command == EngineCommand::kServerList || command == EngineCommand::kBuildDatabase ||
         command == EngineCommand::kTransfer || command == EngineCommand::kTotalSize;
}

EngineResult Perform(Client& client, Store& store, const Account& account, EngineCommand command) {
  switch (command) {
    case EngineCommand::kTotalSize:
      return TotalSize(client, store);
    case EngineCommand::kPortNumber:
      return PortNumber(client, account);
    case EngineCommand::kServerList:
      return store.ServerList();
    case EngineCommand::kBuildDatabase:
      return store.Newest();
    case EngineCommand::kTransfer:
      return Backup(client, store);
    default:
      return engine_results::kDone;  // the rest only finds out whether the account may be entered
  }
}

// The result is a number; what it comes from is here.
void Trace(Client& client, EngineCommand command, EngineResult result, const std::string& reason) {
  const std::string lead = FormatDate(kStampPicture, client.machine().clock.Now()) + "  command " +
                           NumberOf(command) + ", " + result.Text() + ": ";
  std::string text;
  for (const std::string& line : LinesOf(reason)) text.append(lead).append(line).append(kLineEnd);
  client.text_files().Append(client.installation().UserFile(engine_files::kEngineTrace), text,
                             Encoding::kCodePage, IfMissing::kCreate);
}

}  // namespace

void RunEngineCommand(Client& client, Store& store, const EngineCall& call) {
  const Account account = client.ReadAccount();
  EngineResult result = FollowsOthers(call.command) ? store.Resume(account) : store.Enter(account);
  if (result == engine_results::kDone) result = Perform(client, store, account, call.command);
  if (const std::string reason = store.Reason(); !reason.empty()) Trace(client, call.command, result, reason);
  client.WriteStatus(profile_keys::kRetValue, result.Text());
}

int RefuseCommand(const char* name, const std::string& command_line) {
  std::vector<std::string> numbers;
  numbers.reserve(std::size(kEngineCommands));
  for (const auto command : kEngineCommands) numbers.push_back(NumberOf(command));
  const std::string last = numbers.back();
  numbers.pop_back();
  std::cerr << name << ": '" << command_line << "' is not a command; give one of " << Join(numbers, ", ")
            << " and " << last << ", such as '" << last << "<folder>'\n";
  return kExitUnusable;
}

}  // namespace ondura::engines
