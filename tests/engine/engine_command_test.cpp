#include "engine/engine_command.h"

#include <gmock/gmock.h>

namespace ondura {
namespace {

TEST(EngineCommand, PutsTheArgumentBetweenBracketsAsItIsAndFindsItAgain) {
  struct Row {
    EngineCommand command;
    std::string argument, text;
  };
  for (const auto& [command, argument, text] :
       {Row{EngineCommand::kPortNumber, "", " 24<>"},
        Row{EngineCommand::kTransfer, "\\12_30_05_305", " 51<\\12_30_05_305>"},
        Row{EngineCommand::kTotalSize, "C:\\a b\\Temp\\1", " 16<C:\\a b\\Temp\\1>"}}) {
    EXPECT_EQ(EngineParameters(command, argument), text);
    const auto call = ParseEngineCall(text);
    ASSERT_TRUE(call) << text;
    EXPECT_EQ(call->command, command) << text;
    EXPECT_EQ(call->argument, argument) << text;
  }
  EXPECT_EQ(EngineParameters(EngineCommand::kRemote), " 17");
  EXPECT_EQ(ParseEngineCall(" 17")->command, EngineCommand::kRemote);
  for (const char* text : {"", " 99<x>", " x<y>", " 51<x"}) EXPECT_FALSE(ParseEngineCall(text)) << text;
}

}  // namespace
}  // namespace ondura
