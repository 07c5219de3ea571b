#include "EngineDoor.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>

#include "Failure.h"
#include "engines/common/door.h"
#include "text/text.h"

namespace ondura {

namespace {

using namespace std::chrono_literals;

constexpr auto kLook = 1s;

}  // namespace

void EngineDoor::Ask(const Question& question, const Take& take) const {
  const auto engine = opened_.machine().processes.Start(RequestOf(question));
  const std::string name = opened_.installation().ClientExe;
  if (!engine) {
    throw Failure(Exit::kFailed,
                  "the engine " + name +
                      " could not be started; put one in place with: ondura init --force --engine FILE");
  }
  std::string reason;
  std::string words;
  bool answered = false;
  while (true) {
    const auto line = engine->NextLine(kLook);
    if (line && line->stream == PipeStream::kError) words.append(line->text).append("\n");
    if (line && line->stream == PipeStream::kOutput) {
      const auto answer = nlohmann::json::parse(line->text, nullptr, false);
      if (!answer.is_object()) continue;
      answered = true;
      if (answer.value("type", "") == "error") {
        reason = answer.value("message", "");
      } else {
        take(answer);
      }
    }
    const auto code = line ? std::nullopt : engine->ExitCode();
    if (!code) continue;
    if (*code == 0) return;
    if (!reason.empty()) throw Failure(Exit::kFailed, reason);
    throw Failure(Exit::kFailed, answered ? "the engine failed: " + std::string{Trim(words)}
                                          : "this machine's engine does not answer such questions" +
                                                (words.empty() ? "" : ": " + std::string{Trim(words)}));
  }
}

PipedRequest EngineDoor::RequestOf(const Question& question) const {
  const Installation& installation = opened_.installation();
  PipedRequest request;
  request.file = opened_.machine().processes.SystemPath(installation.ExeLocation + installation.ClientExe);
  request.arguments = {std::string{engines::kDoorOption}, std::string{question.verb},
                       installation.CurrentUser};
  request.arguments.insert(request.arguments.end(), question.words.begin(), question.words.end());
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
