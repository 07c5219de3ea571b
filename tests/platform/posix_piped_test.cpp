#include <signal.h>
#include <unistd.h>

#include "TemporaryRoot.h"
#include "machines/posix/PosixMachine.h"
#include "piped_lines.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class PosixPipedTest : public testing::Test {
 protected:
  std::unique_ptr<PipedProgram> StartShell(const std::string& script, PipedRequest request = {}) {
    request.file = "sh";
    request.arguments = {"-c", script, "sh", "two words"};
    return machine_.processes.Start(request);
  }

  TemporaryRoot root_;
  std::unique_ptr<PosixMachine> owner_ = root_.Make().owner;
  const Machine& machine_ = owner_->machine();
};

TEST_F(PosixPipedTest, TextsGoInAndLinesComeOut) {
  const std::string longest(kPipedTextLimit, 'x');
  struct Case {
    const char* script;
    PipedRequest request;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {R"(read a; read b || echo end; echo "$a $1"; exit 3)",
       {.input = "in\n"},
       {"end", "in two words", "= 3"}},
      {R"(echo "$KEY $HOME"; pwd)", {.folder = "/", .environment = {"KEY=a b"}}, {"a b ", "/", "= 0"}},
      {R"(cat "$ONE" "$TWO"; env | grep -c hidden)",
       {.secrets = {{"ONE", "hidden 1\n"}, {"TWO", "hidden 2"}}},
       {"hidden 1", "hidden 20", "= 1"}},
      {R"(printf 'no end'; printf 'bad\377\n\nrest' >&2)", {}, {"no end", "!bad\xFF", "!", "!rest", "= 0"}},
      {R"(cat "$3"; echo "$2")", {.secrets = {{{}, "hidden ", "--file"}}}, {"hidden --file", "= 0"}},
      {R"(cat "$BIG" | wc -c)", {.secrets = {{"BIG", longest}}}, {"32768", "= 0"}},
      {"exec 1>&- 2>&-; sleep 0.2; exit 4", {}, {"= 4"}},
      {"(sleep 30 & ) ; echo on; printf rest", {}, {"on", "rest", "= 0"}},
      {"kill -9 $$", {}, {"= 137"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.script);
    PipedRequest request = row.request;
    request.environment.emplace_back("PATH=/usr/bin:/bin");
    const auto program = StartShell(row.script, request);
    ASSERT_NE(program, nullptr);
    EXPECT_THAT(RunToEnd(*program), testing::UnorderedElementsAreArray(row.lines));
  }
}

TEST_F(PosixPipedTest, WhatCanNotStartIsNull) {
  EXPECT_EQ(machine_.processes.Start({.file = "no-such-program"}), nullptr);
  EXPECT_EQ(machine_.processes.Start({.file = "/etc/passwd"}), nullptr);
  EXPECT_EQ(StartShell("true", {.input = std::string(kPipedTextLimit + 1, 'x')}), nullptr);
  EXPECT_EQ(StartShell("true", {.secrets = {{"S", std::string(kPipedTextLimit + 1, 'x')}}}), nullptr);
}

TEST_F(PosixPipedTest, ItEndsByInterruptByKillAndWithTheObject) {
  auto program = StartShell("trap 'echo asked; exit 5' INT; echo $$; while :; do sleep 0.01; done");
  const auto id = program->NextLine(5s);
  ASSERT_TRUE(id);
  EXPECT_EQ(program->ExitCode(), std::nullopt);
  program->Interrupt();
  EXPECT_THAT(RunToEnd(*program), ElementsAre("asked", "= 5"));

  program = StartShell("trap '' INT; echo begun; exec sleep 30");
  ASSERT_TRUE(program->NextLine(5s));
  program->Interrupt();
  EXPECT_EQ(program->NextLine(100ms), std::nullopt);
  program->Kill();
  EXPECT_EQ(program->NextLine(5s), std::nullopt);
  EXPECT_TRUE(program->ExitCode());

  program = StartShell("echo $$; exec sleep 30");
  const auto last = program->NextLine(5s);
  ASSERT_TRUE(last);
  program.reset();
  EXPECT_EQ(kill(std::stoi(last->text), 0), -1);
}

TEST_F(PosixPipedTest, ALineThatWaitsIsTakenBeforeTheExitCode) {
  const auto program = StartShell("echo last");
  usleep(500'000);
  EXPECT_EQ(program->ExitCode(), std::nullopt);
  EXPECT_THAT(RunToEnd(*program), ElementsAre("last", "= 0"));
}

}  // namespace
}  // namespace ondura
