// The tool of the rehearsal machine that dumps one SQL Server database. What it does beside a good dump
// is in an ini file beside it, in a section of the database's name or in [Dump] for all: Milliseconds
// makes it slow, Error is the text it fails with, Dies="1" ends it before the dump is whole.

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "engines/common/program.h"
#include "text/text.h"

namespace {

using namespace ondura;
using namespace ondura::engines;

constexpr int kArguments = 11;
constexpr int kExitFailed = 1;
constexpr int kExitDied = 134;
constexpr std::chrono::milliseconds kPass{100};

class SqlDumpTool {
 public:
  SqlDumpTool(Client& client, char** arguments)
      : client_(client),
        server_(arguments[1]),
        name_(arguments[2]),
        folder_(WithBackslash(arguments[5])),
        status_file_(WithBackslash(arguments[6]) + arguments[9]),
        error_file_(client.installation().UserFile(arguments[8])) {}

  int Run() {
    if (!SpendTime()) return Fail("The backup of " + name_ + " was stopped.");
    const std::string error = Setting("Error");
    if (!error.empty()) return Fail(error);
    const std::string text = "the tables of " + name_ + " on " + server_ + "\r\n";
    Files& files = client_.machine().files;
    if (Setting("Dies") == "1") {
      files.Write(folder_ + name_ + ".part", text.substr(0, text.size() / 2), IfPresent::kReplace);
      std::_Exit(kExitDied);
    }
    if (files.Write(folder_ + name_ + ".dmp", text, IfPresent::kReplace)) return kExitDone;
    return Fail("The dump of " + name_ + " can't be written.");
  }

 private:
  // False when the status file asks for the end meanwhile.
  bool SpendTime() {
    std::chrono::milliseconds left{ParseInteger(Setting("Milliseconds")).value_or(0)};
    for (; left.count() > 0; left -= kPass) {
      if (client_.machine().files.ReadHead(status_file_, 1) == "2") return false;
      client_.machine().clock.Sleep(kPass);
    }
    return true;
  }

  int Fail(const std::string& text) {
    client_.text_files().Write(error_file_, text + std::string{kLineEnd}, Encoding::kCodePage);
    return kExitFailed;
  }

  std::string Setting(std::string_view key) {
    const std::string file = client_.installation().ExeLocation + "tolmera_sqlbackup.ini";
    const std::string bare_name = name_.substr(1, name_.size() - 2);
    const std::string own = client_.machine().profiles.ReadString({file, bare_name, key});
    return own.empty() ? client_.machine().profiles.ReadString({file, "Dump", key}) : own;
  }

  Client& client_;
  const std::string server_;
  const std::string name_;  // in its brackets
  const std::string folder_;
  const std::string status_file_;
  const std::string error_file_;
};

}  // namespace

int main(int argc, char** argv) {
  return RunProgram("SQL dump tool", [&](Client& client) {
    // A name with a blank comes as two arguments, since the line has no quotes.
    if (argc != kArguments + 1 || std::string_view{argv[3]}.size() < 2) {
      std::cerr << "SQL dump tool: give 1, server, [database], user, password, folder of the dump, folder of "
                   "the status file, and the names of log, error, status and trace file\n";
      return kExitUnusable;
    }
    return SqlDumpTool(client, argv + 1).Run();
  });
}
