#include "TemporaryFolder.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/windows_api.h"
#include "piped_lines.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;

class Win32PipedTest : public testing::Test {
 protected:
  std::unique_ptr<PipedProgram> StartTool(std::vector<std::string> steps, PipedRequest request = {}) {
    request.file = "win32_piped_tool";  // beside this program
    request.arguments = std::move(steps);
    return machine_.processes.Start(request);
  }

  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  const Machine& machine_ = owner_->machine();
  TemporaryFolder folder_;
};

TEST_F(Win32PipedTest, TextsGoInAndLinesComeOut) {
  const std::string longest(kPipedTextLimit, 'x');
  char root[MAX_PATH] = {};
  GetEnvironmentVariableA("SystemRoot", root, MAX_PATH);
  struct Case {
    std::vector<std::string> steps;
    PipedRequest request;
    std::vector<std::string> lines;
  };
  const Case cases[] = {
      {{"in", "exit:3"}, {.input = "a\r\nb\n\nc"}, {"a", "b", "", "c", "= 3"}},
      {{"out:", "out:two  words\n", "out:\\ \"q\" \\\"\n", "out:a\\\\ b\\\\"},
       {},
       {"two  words", "\\ \"q\" \\\"", "a\\\\ b\\\\", "= 0"}},
      {{"out:Größe \xF0\x9F\x92\xBE %PATH%^&\n"}, {}, {"Größe \xF0\x9F\x92\xBE %PATH%^&", "= 0"}},
      {{"folder"}, {.folder = folder_.path()}, {folder_.path(), "= 0"}},
      {{"value:KEY", "value:zone", "value:SystemRoot", "value:TEMP"},
       {.environment = {"zone=ö", "Key=a b"}},
       {"KEY=a b", "zone=ö", std::string{"SystemRoot="} + root, "TEMP=", "= 0"}},
      {{"file:ONE", "file:TWO", "file:ONE"},
       {.secrets = {{"ONE", "hidden 1\n"}, {"TWO", "hidden 2"}}},
       {"hidden 1", "hidden 2", "= 0"}},
      {{"file:BIG"}, {.secrets = {{"BIG", longest}}}, {longest, "= 0"}},
      {{"out:no end", "err:bad\n\nrest"}, {}, {"no end", "!bad", "!", "!rest", "= 0"}},
      {{"copy:30000", "out:on\nrest"}, {}, {"on", "rest", "= 0"}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(testing::PrintToString(row.steps));
    const auto program = StartTool(row.steps, row.request);
    ASSERT_NE(program, nullptr);
    EXPECT_THAT(RunToEnd(*program), testing::UnorderedElementsAreArray(row.lines));
  }
}

TEST_F(Win32PipedTest, WhatCanNotStartIsNull) {
  ASSERT_TRUE(machine_.files.Write(folder_.path() + "\\text.exe", "no program", IfPresent::kReplace));
  EXPECT_EQ(machine_.processes.Start({.file = ""}), nullptr);
  EXPECT_EQ(machine_.processes.Start({.file = "no-such-program"}), nullptr);
  EXPECT_EQ(machine_.processes.Start({.file = folder_.path() + "\\text.exe"}), nullptr);
  EXPECT_EQ(StartTool({}, {.input = std::string(kPipedTextLimit + 1, 'x')}), nullptr);
  EXPECT_EQ(StartTool({}, {.secrets = {{"S", std::string(kPipedTextLimit + 1, 'x')}}}), nullptr);
}

TEST_F(Win32PipedTest, ItEndsByInterruptByKillAndWithTheObject) {
  auto program = StartTool({"wait"});
  ASSERT_TRUE(program->NextLine(20s));
  EXPECT_EQ(program->ExitCode(), std::nullopt);
  program->Interrupt();
  EXPECT_THAT(RunToEnd(*program), ElementsAre("asked", "= 5"));
  program->Interrupt();

  program = StartTool({"deaf"});
  ASSERT_TRUE(program->NextLine(20s));
  program->Interrupt();
  EXPECT_EQ(program->NextLine(100ms), std::nullopt);
  program->Kill();
  EXPECT_THAT(RunToEnd(*program), ElementsAre("= 4294967295"));

  const std::string copy = folder_.path() + "\\copy.exe";
  ASSERT_TRUE(CopyFileA((FolderOfTests() + "win32_piped_tool.exe").c_str(), copy.c_str(), TRUE));
  program = machine_.processes.Start({.file = copy, .arguments = {"wait"}});
  ASSERT_TRUE(program->NextLine(20s));
  program.reset();
  EXPECT_TRUE(DeleteFileA(copy.c_str()));
}

TEST_F(Win32PipedTest, ALineThatWaitsIsTakenBeforeTheExitCode) {
  const auto program = StartTool({"out:last\n"});
  Sleep(2000);
  EXPECT_EQ(program->ExitCode(), std::nullopt);
  EXPECT_THAT(RunToEnd(*program), ElementsAre("last", "= 0"));
}

// The program that these pipes are for: it is built with another runtime, and asks for the secrets by itself.
TEST_F(Win32PipedTest, ResticFindsItsStoreAndItsPasswordOnPipes) {
  const std::string restic = FolderOfTests() + "..\\..\\windows-tools\\restic.exe";
  if (!machine_.files.Exists(restic)) GTEST_SKIP() << "no restic.exe: run scripts/setup --windows";
  ASSERT_TRUE(machine_.folders.Make(folder_.path() + "\\Größe"));
  ASSERT_TRUE(machine_.files.Write(folder_.path() + "\\Größe\\a.txt", "kept", IfPresent::kReplace));
  const std::string restored = folder_.path() + "\\restored";
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"init"}, {"backup", "Größe"}, {"restore", "latest", "--target", restored}}) {
    PipedRequest request{.file = restic, .arguments = words, .folder = folder_.path()};
    request.secrets = {{"RESTIC_REPOSITORY_FILE", folder_.path() + "\\store"},
                       {"RESTIC_PASSWORD_FILE", "secret"}};
    request.environment = {"TMP=" + folder_.path(), "RESTIC_CACHE_DIR=" + folder_.path() + "\\cache"};
    const auto program = machine_.processes.Start(request);
    ASSERT_NE(program, nullptr);
    const auto lines = RunToEnd(*program);
    ASSERT_EQ(lines.back(), "= 0") << testing::PrintToString(lines);
  }
  EXPECT_EQ(machine_.files.Read(restored + "\\Größe\\a.txt"), "kept");
}

TEST_F(Win32PipedTest, APathIsTheSystemsOwn) {
  EXPECT_EQ(machine_.processes.SystemPath("c:\\Data\\FILE.txt"), "c:\\Data\\FILE.txt");
}

}  // namespace
}  // namespace ondura
