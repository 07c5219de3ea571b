// The mail helper, started once for each mail.

#include "HostError.h"
#include "command_line.h"
#include "machines/win32/Win32Machine.h"
#include "mail_helper.h"
#include "own_program.h"

namespace {

using namespace ondura;

int Run() {
  const std::string tail = CommandLineTail();
  ParsedMailOptions parsed{MailOptions{{}, OwnFolder(), tail}, 0};
  // The scheduler gives the fields as they are; a person quotes them or asks for something else.
  if (tail.empty() || tail.starts_with('-') || tail.starts_with('"')) {
    std::vector<std::string> words = CommandLineWords();
    words.erase(words.begin());
    parsed = ParseMailOptions(std::move(words), {{}, OwnFolder(), {}});
  }
  if (!parsed.options) return parsed.exit_code;
  const auto machine = MakeWin32Machine();
  const MailOutcome outcome = RunMailHelper(machine->machine(), *parsed.options);
  if (!outcome.message.empty()) throw HostError(outcome.message, outcome.exit_code);
  return outcome.exit_code;
}

}  // namespace

int main() { return ondura::GuardedMain("OndruaEStartup", Run); }
