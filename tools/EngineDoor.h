#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "OpenedMachine.h"

namespace ondura {

// What the machine's engine answers to a person's questions about a user's store, through its second door.
class EngineDoor {
 public:
  // The current user of `opened` is the one that is asked for.
  explicit EngineDoor(const OpenedMachine& opened) : opened_(opened) {}

  struct Question {
    std::string_view verb;  // of door_verbs
    std::vector<std::string> words{};
    std::string input{};  // for a secret
  };
  using Take = std::function<void(const nlohmann::json& answer)>;

  // Hands on each answer as it comes. Throws Failure (kFailed) with the engine's reason if it fails, and
  // where the engine can't be started or has no such door.
  void Ask(const Question& question, const Take& take) const;

 private:
  [[nodiscard]] PipedRequest RequestOf(const Question& question) const;

  const OpenedMachine& opened_;
};

}  // namespace ondura
