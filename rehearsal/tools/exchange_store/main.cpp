// The tool of the rehearsal machine that dumps Exchange storage groups. Its one argument is "1" and, directly
// after it, the folder for the dump.

#include <iostream>

#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "rehearsal/common/ExchangeServer.h"
#include "text/text.h"

namespace {

using namespace ondura;
using namespace ondura::engines;
using namespace ondura::rehearsal;

constexpr std::string_view kAborted = "4";

class StoreDump {
 public:
  StoreDump(Client& client, std::string_view folder) : client_(client), folder_(folder) {}

  void Run() {
    client_.machine().files.Remove(ReasonFile(), Removal::kForce);
    client_.machine().files.Remove(ResultFile(), Removal::kForce);
    const auto groups =
        client_.text_files().ReadLines(UserFile("TmpExchangeBackupSet.txt"), Encoding::kUtf16);
    if (!groups) return Abort("The list of storage groups can't be read.");
    for (const std::string& group : *groups) {
      if (!Dump(group)) return;
    }
    Trace("Done");
  }

 private:
  bool Dump(const std::string& group) {
    Trace("Dumping " + group);
    if (!server_.Holds(group)) {
      Abort("The storage group '" + group + "' is not on the server.");
      return false;
    }
    const auto copied = server_.CopyTo(group, WithBackslash(folder_) + group, [this] { return IsStopped(); });
    if (copied == ExchangeServer::Copied::kFailed)
      Abort("The storage group '" + group + "' can't be copied.");
    if (copied != ExchangeServer::Copied::kAll) return false;
    // The job takes the description along with the dump.
    client_.machine().profiles.WriteString(
        {ResultFile(), "BACKEDUP STORAGE GROUPS", "SG" + std::to_string(++dumped_)}, group);
    return true;
  }

  void Abort(const std::string& reason) {
    Trace(reason);
    client_.text_files().Write(ReasonFile(), reason + std::string{kLineEnd}, Encoding::kCodePage);
    client_.text_files().Write(StatusFile(), std::string{kAborted}.append(kLineEnd), Encoding::kCodePage);
  }

  bool IsStopped() { return client_.machine().files.ReadHead(StatusFile(), 1) == "2"; }

  void Trace(const std::string& line) {
    client_.text_files().Append(UserFile("ExchangeTraceFile.txt"), line + std::string{kLineEnd},
                                Encoding::kCodePage, IfMissing::kCreate);
  }

  std::string UserFile(std::string_view name) const { return client_.installation().UserFile(name); }
  std::string StatusFile() const { return UserFile("ExchBackupStatus.txt"); }
  std::string ReasonFile() const { return UserFile("OxWSchErrorLogFile.txt"); }
  std::string ResultFile() const { return client_.installation().DataFile("ExchBackupINI.ini"); }

  Client& client_;
  const std::string folder_;
  ExchangeServer server_{client_, "StorageGroups"};
  int dumped_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const std::string argument{Trim(ParameterText(argc, argv))};
  return RunProgram("Exchange store tool", [&](Client& client) {
    if (argument.size() < 2 || !argument.starts_with('1')) {
      std::cerr
          << "Exchange store tool: give the folder for the dump after a 1, such as '1C:\\ExchangeDump'\n";
      return kExitUnusable;
    }
    StoreDump(client, argument.substr(1)).Run();
    return kExitDone;
  });
}
