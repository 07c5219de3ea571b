// The tool of the rehearsal machine that exports Exchange mailboxes, all that the server holds. Its one
// argument is "1", the name of the user's folder and "2".

#include <iostream>

#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "rehearsal/common/ExchangeServer.h"
#include "text/text.h"

namespace {

using namespace ondura;
using namespace ondura::engines;
using namespace ondura::rehearsal;

constexpr std::string_view kAborted = "3";

class MailboxExport {
 public:
  MailboxExport(Client& client, std::string_view user_folder)
      : client_(client), user_folder_(client.installation().DataFile(user_folder) + "\\") {}

  void Run() {
    const std::vector<std::string> mailboxes = server_.Names();
    if (mailboxes.empty()) return Abort("There is no mailbox on the server.");
    std::string folder = WithBackslash(Setting(profile_keys::kExchBrick));
    client_.machine().folders.Make(WithoutLast(folder));
    folder += "OxExchBrickBkset\\";
    client_.machine().folders.Make(WithoutLast(folder));
    for (const std::string& mailbox : mailboxes) {
      if (!Export(mailbox, folder + mailbox)) return;
    }
  }

 private:
  bool Export(const std::string& mailbox, const std::string& folder) {
    const auto copied = server_.CopyTo(mailbox, folder, [this] { return IsStopped(); });
    if (copied == ExchangeServer::Copied::kFailed) Abort("The mailbox '" + mailbox + "' can't be exported.");
    if (copied != ExchangeServer::Copied::kAll) return false;
    Log("Exported mailbox '" + mailbox + "'");
    return true;
  }

  void Abort(const std::string& reason) {
    Log(reason);
    client_.text_files().Write(StatusFile(), std::string{kAborted}.append(kLineEnd), Encoding::kCodePage);
  }

  bool IsStopped() {
    return client_.text_files().ReadFirstLine(StatusFile(), Encoding::kCodePage).value_or("") == "2";
  }

  void Log(const std::string& line) {
    client_.text_files().Append(client_.installation().DataFile(Setting("SessionLog")),
                                line + std::string{kLineEnd}, Encoding::kUtf16, IfMissing::kCreate);
  }

  std::string Setting(std::string_view key) {
    const std::string file = user_folder_ + "OxExchBrick.ini";
    return client_.machine().profiles.ReadString({file, "Tolmera", key});
  }

  std::string StatusFile() const { return user_folder_ + "OxExchBrickStatus.txt"; }

  Client& client_;
  const std::string user_folder_;
  ExchangeServer server_{client_, "Mailboxes"};
};

}  // namespace

int main(int argc, char** argv) {
  const std::string argument{Trim(ParameterText(argc, argv))};
  return RunProgram("Exchange mailbox tool", [&](Client& client) {
    if (argument.size() < 3 || !argument.starts_with('1') || !argument.ends_with('2')) {
      std::cerr << "Exchange mailbox tool: give the user's folder between 1 and 2, such as '1Onduraann2'\n";
      return kExitUnusable;
    }
    MailboxExport(client, argument.substr(1, argument.size() - 2)).Run();
    return kExitDone;
  });
}
