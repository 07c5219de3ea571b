#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Processes.h"

namespace ondura::engines {

// How a call through an engine's second door ended.
struct DoorEnd {
  bool has_started = false;
  bool has_answered = false;  // with at least one object
  std::uint32_t exit_code = 0;
  std::string error;  // the engine's reason
  std::string words;  // what it printed on its standard error
};

// Starts the engine and hands on each answer that is not an error as it comes.
DoorEnd AskDoor(Processes& processes, const PipedRequest& request,
                const std::function<void(const nlohmann::json& answer)>& take);

// The request that calls `verb` for `user`, where `engine` is the program in the system's form. The
// caller adds the environment and a text for its input.
PipedRequest DoorRequest(const std::string& engine, std::string_view verb, const std::string& user,
                         const std::vector<std::string>& words);

}  // namespace ondura::engines
