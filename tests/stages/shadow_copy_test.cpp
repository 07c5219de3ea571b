#include "stages/ShadowCopy.h"

#include <gtest/gtest.h>

#include "support/CheckedMachine.h"
#include "text/utf16.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::Optional;

const std::string kHelper32 = "C:\\install\\AcmeVSS_Vista32.exe";
const std::string kHelper64 = "C:\\install\\AcmeVSS_Vista64.exe";
const std::string kRequest = "C:\\data\\OpenFileLaunchStatus.txt";
const std::string kReport = "C:\\data\\VssBackupStatus.txt";

class ShadowCopyStory : public testing::Test {
 protected:
  ShadowCopyStory() {
    installation_.VirtualPath = "C:\\data\\";
    installation_.ExeLocation = "C:\\install\\";
    installation_.ProductInstallationName = "Acme";
    installation_.CurrentUser = "ann";
    installation_.VssVista32Exe = "AcmeVSS_Vista32.exe";
    installation_.VssVista64Exe = "AcmeVSS_Vista64.exe";
    machine_.PutFolder("C:\\data\\Acmeann");
    machine_.surroundings().is_64_bit = false;
  }

  // A request as its writers leave it, with a command that carries blanks around it.
  void Request() {
    machine_.PutFile(kRequest, "1\r\n");
    machine_.PutFile("C:\\data\\OpenFileCmd.txt", std::string{kUtf16Mark} + ToUtf16(" -c C:\\ t\xC3\xBCr  "));
  }

  std::string Trace(std::string_view path) { return FromUtf16(machine_.FileBytes(path).value_or("")); }
  std::string UserTrace() { return Trace("C:\\data\\Acmeann\\ScheduleTraceFile.txt"); }
  std::string MainTrace() { return Trace("C:\\data\\ScheduleTraceFile.txt"); }

  TidyMachine machine_;
  Installation installation_;
  Options options_{machine_.machine(), installation_};
  ondura::Trace trace_{options_, machine_.machine().clock};
  MachineFacts facts_{machine_.machine(), options_};
  Programs programs_{machine_.machine(), facts_, options_};
  ShadowCopy shadow_{machine_.machine(), installation_, trace_, facts_, programs_};
};

TEST_F(ShadowCopyStory, ClosingMakesItsFilesAndResettingPassesOverWhatIsNotThere) {
  machine_.PutFile("C:\\data\\OxVSSCommonStatusDll.txt", "1\r\n1\r\n");
  shadow_.ResetLaunchStatus();
  shadow_.CheckAndCloseVSS();
  EXPECT_EQ(machine_.FileBytes("C:\\data\\OxVSSCommonStatus.txt"), std::nullopt);
  EXPECT_EQ(machine_.FileBytes(kRequest), std::nullopt);
  EXPECT_THAT(machine_.FileBytes("C:\\data\\OxVSSCommonStatusDll.txt"), Optional(std::string{"0\r\n"}));
  shadow_.CloseVSS();
  EXPECT_THAT(machine_.FileBytes("C:\\data\\OxVSSCommonStatus.txt"), Optional(std::string{"0\r\n"}));
  EXPECT_EQ(machine_.FileBytes(kRequest), std::nullopt);
  EXPECT_EQ(UserTrace(), "11-14-2026 12:30:00 VSS files are reset\r\n11-14-2026 12:30:05 VSS Closed\r\n");
  EXPECT_EQ(machine_.Elapsed(), 10s);
}

TEST_F(ShadowCopyStory, TheSmallHelperIsServedUntilItsProcessIsGone) {
  Request();
  machine_.InstallProgram(kHelper32, [](ProgramRun& run) {
    run.AppearsAfter(3200ms);  // later than the first look
    run.ExitAfter(3500ms, 0);
  });
  machine_.OnPump([&] { shadow_.Cont_LaunchAdminProcess(); });  // the host calls again and again
  shadow_.Cont_LaunchAdminProcess();
  ASSERT_EQ(machine_.Launches().size(), 1U);
  EXPECT_EQ(machine_.Launches()[0].file, kHelper32);
  EXPECT_EQ(machine_.Launches()[0].parameters, " -c C:\\ t\xC3\xBCr");
  EXPECT_EQ(machine_.Launches()[0].folder, "C:\\data");
  EXPECT_EQ(machine_.Elapsed(), 2000ms + 2 * 1000ms + 2000ms);
  EXPECT_THAT(machine_.FileBytes(kRequest), Optional(std::string{"2\r\n"}));
  EXPECT_EQ(UserTrace(), "sCmdLine  -c C:\\ t\xC3\xBCr\r\nlaunching VSS\r\n");
  EXPECT_EQ(MainTrace(),
            "launched the exe... C:\\data\\AcmeVSS_Vista32.exe -c C:\\ t\xC3\xBCr\r\n[VSS] Backup "
            "completed\r\n");
  shadow_.Cont_LaunchAdminProcess();
  EXPECT_EQ(machine_.Launches().size(), 1U) << "a request that is done stays done";
}

TEST_F(ShadowCopyStory, TheLargeHelperIsServedUntilItReportsExactlyOne) {
  Request();
  machine_.surroundings().is_64_bit = true;
  machine_.InstallProgram(kHelper64, [](ProgramRun& run) {
    run.After(70s, [&run] { run.machine().PutFile(kReport, "1\r\n"); });  // a line end is not exactly "1"
    run.After(80s, [&run] { run.machine().PutFile(kReport, "1"); });
  });
  shadow_.Cont_LaunchAdminProcess();
  EXPECT_EQ(machine_.Elapsed(), 2s + 59s + 7 * 3s + 2s);
  EXPECT_THAT(machine_.FileBytes(kRequest), Optional(std::string{"2\r\n"}));
  EXPECT_THAT(MainTrace(), testing::StartsWith("[OS] Vista 64bit\r\nlaunched the exe... "));
  EXPECT_THAT(UserTrace(), testing::EndsWith("launching VSS\r\n[64bit OS]\r\n"));
}

TEST_F(ShadowCopyStory, WithoutANewProcessToStartTheRequestIsDoneInItsTime) {
  const auto serve = [&](std::chrono::seconds want) {
    const auto before = machine_.Elapsed();
    shadow_.Cont_LaunchAdminProcess();
    EXPECT_EQ(machine_.Elapsed() - before, want);
    EXPECT_THAT(machine_.Launches(), testing::IsEmpty());
    EXPECT_THAT(machine_.FileBytes(kRequest), Optional(std::string{"2\r\n"}));
  };
  machine_.PutFile(kRequest, " 1 \r\n0\r\n");
  serve(2s + 1s + 2s);  // no command
  Request();
  const ProcessId running = machine_.PutProcess(kHelper32);
  machine_.After(10s, [&] { machine_.EndProcess(running); });
  serve(2s + 8s + 2s);  // the helper runs already
}

TEST_F(ShadowCopyStory, WhatIsNoRequestIsLeftUnchanged) {
  shadow_.Cont_LaunchAdminProcess();
  for (const std::string text : {"", "0\r\n", "2\r\n", "11\r\n", "x\r\n1\r\n"}) {
    machine_.PutFile(kRequest, text);
    shadow_.Cont_LaunchAdminProcess();
    EXPECT_THAT(machine_.FileBytes(kRequest), Optional(text));
  }
  EXPECT_EQ(machine_.Elapsed(), 0s);
}

}  // namespace
}  // namespace ondura
