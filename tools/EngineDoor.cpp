#include "EngineDoor.h"

#include <cstdlib>

#include "Failure.h"
#include "engines/common/door_client.h"
#include "text/text.h"

namespace ondura {

void EngineDoor::Ask(const Question& question, const Take& take) const {
  const engines::DoorEnd end = engines::AskDoor(opened_.machine().processes, RequestOf(question), take);
  if (!end.has_started) {
    throw Failure(Exit::kFailed,
                  "the engine " + opened_.installation().ClientExe +
                      " could not be started; put one in place with: ondura init --force --engine FILE");
  }
  if (end.exit_code == 0) return;
  if (!end.error.empty()) throw Failure(Exit::kFailed, end.error);
  const std::string words{Trim(end.words)};
  const std::string what =
      end.has_answered ? "the engine failed" : "this machine's engine does not answer such questions";
  throw Failure(Exit::kFailed, words.empty() ? what : what + ": " + words);
}

PipedRequest EngineDoor::RequestOf(const Question& question) const {
  const Installation& installation = opened_.installation();
  const std::string file = installation.ExeLocation + installation.ClientExe;
  PipedRequest request = engines::DoorRequest(opened_.machine().processes.SystemPath(file), question.verb,
                                              installation.CurrentUser, question.words);
  request.environment = {"ONDURA_ROOT=" + opened_.root(), "ONDURA_SPEED=1"};
  for (const char* const name : {"PATH", "HOME", "USER", "LOGNAME", "SSH_AUTH_SOCK", "TZ"}) {
    if (const char* const value = std::getenv(name)) {
      request.environment.push_back(std::string{name} + "=" + value);
    }
  }
  request.input = question.input;
  return request;
}

}  // namespace ondura
