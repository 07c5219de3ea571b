#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {

// The commands of the engine, by their numbers on its command line.
enum class EngineCommand : std::int16_t {
  kFirstContact = 12,  // a host's
  kTotalSize = 16,
  kRemote = 17,  // the first contact after installation
  kPortNumber = 24,
  kServerList = 28,
  kBuildDatabase = 30,
  kTransfer = 51,
};

inline constexpr std::array kEngineCommands{
    EngineCommand::kFirstContact, EngineCommand::kTotalSize,  EngineCommand::kRemote,
    EngineCommand::kPortNumber,   EngineCommand::kServerList, EngineCommand::kBuildDatabase,
    EngineCommand::kTransfer,
};

// The number alone, such as "51".
std::string NumberOf(EngineCommand command);

// What the engine is started with, such as " 51<argument>". The argument is never quoted, even with blanks in
// it.
std::string EngineParameters(EngineCommand command, std::string_view argument);

// The form without an argument, such as " 17".
std::string EngineParameters(EngineCommand command);

// One run of the engine, as its command line asks for it.
struct EngineCall {
  EngineCommand command = EngineCommand::kFirstContact;
  std::string argument;
};

// Reads what EngineParameters writes. std::nullopt if the text has another form or another number.
std::optional<EngineCall> ParseEngineCall(std::string_view text);

}  // namespace ondura
