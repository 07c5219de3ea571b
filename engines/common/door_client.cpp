#include "engines/common/door_client.h"

#include <chrono>

#include "engines/common/door.h"

namespace ondura::engines {

using namespace std::chrono_literals;

DoorEnd AskDoor(Processes& processes, const PipedRequest& request,
                const std::function<void(const nlohmann::json& answer)>& take) {
  DoorEnd end;
  const auto engine = processes.Start(request);
  end.has_started = engine != nullptr;
  while (engine) {
    const auto line = engine->NextLine(1s);
    if (!line) {
      if (const auto code = engine->ExitCode()) {
        end.exit_code = *code;
        break;
      }
      continue;
    }
    if (line->stream == PipeStream::kError) {
      end.words.append(line->text).append("\n");
      continue;
    }
    const auto answer = nlohmann::json::parse(line->text, nullptr, false);
    if (!answer.is_object()) continue;
    end.has_answered = true;
    if (answer.value("type", "") == "error") {
      end.error = answer.value("message", "");
    } else {
      take(answer);
    }
  }
  return end;
}

PipedRequest DoorRequest(const std::string& engine, std::string_view verb, const std::string& user,
                         const std::vector<std::string>& words) {
  PipedRequest request;
  request.file = engine;
  request.arguments = {std::string{kDoorOption}, std::string{verb}, user};
  request.arguments.insert(request.arguments.end(), words.begin(), words.end());
  return request;
}

}  // namespace ondura::engines
