#include "util/Programs.h"

#include <gtest/gtest.h>

#include "support/CheckedMachine.h"
#include "util/FolderNames.h"
#include "util/clsIPResolve.h"
#include "util/cls_ExitWindows.h"
#include "util/waits.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class TraceLines : public TraceSink {
 public:
  void WriteTrace(std::string_view TraceMsg) override { user.emplace_back(TraceMsg); }
  void WriteTraceMain(std::string_view TraceMsg) override { main.emplace_back(TraceMsg); }

  std::vector<std::string> user;
  std::vector<std::string> main;
};

class SystemTest : public testing::Test {
 protected:
  TidyMachine machine_;
  TraceLines trace_;
  MachineFacts system_{machine_.machine(), trace_};
  Programs programs_{machine_.machine(), system_, trace_};
};

TEST_F(SystemTest, ANameMatchesWholeBareAndInAnyLetterCase) {
  const auto id = machine_.PutProcess("C:\\i\\AcmeEngine.exe");
  for (const auto& [platform_id, name, by_path, by_module] : {std::tuple{2, "acmeENGINE.exe", true, true},
                                                              {2, "C:\\i\\AcmeEngine.exe", false, false},
                                                              {2, "Engine.exe", false, false},
                                                              {2, "AcmeEngine", false, false},
                                                              {1, "acmeengine.EXE", true, true},
                                                              {3, "AcmeEngine.exe", false, true}}) {
    machine_.surroundings().version.platform_id = platform_id;
    EXPECT_EQ(programs_.IsProcessRunningByPath(name, Kill::kNo), by_path) << name;
    EXPECT_EQ(programs_.FindEngineProcessId(name), by_path ? std::optional{id} : std::nullopt) << name;
    EXPECT_EQ(programs_.IsProcessRunningByModule(name, Kill::kNo), by_module) << name;
  }
  EXPECT_THAT(trace_.main, ElementsAre("Return ture: acmeENGINE.exe", "Return false: ", "Return false: ",
                                       "Return false: ", "Return ture: acmeengine.EXE", "Return false: "));
}

TEST_F(SystemTest, EndingByNameSparesNoneOfTheNameNoOtherAndLeaksNoHandle) {
  for (const bool by_module : {false, true}) {
    for (const char* path : {"C:\\a\\engine.exe", "C:\\a\\other.exe", "C:\\b\\ENGINE.exe"}) {
      machine_.PutProcess(path);
    }
    const auto last = machine_.PutProcess("C:\\b\\engine.exe");
    EXPECT_EQ(programs_.FindEngineProcessId("engine.exe"), last);
    EXPECT_TRUE(by_module ? programs_.IsProcessRunningByModule("engine.exe", Kill::kYes)
                          : programs_.IsProcessRunningByPath("engine.exe", Kill::kYes));
    EXPECT_FALSE(machine_.IsRunning("engine.exe"));
    EXPECT_TRUE(machine_.IsRunning("other.exe"));
  }
}

TEST_F(SystemTest, TerminationTakesTheProcessOfAWindowAndElseTheId) {
  const auto by_id = machine_.PutProcess("C:\\a\\id.exe");
  const auto by_window = machine_.PutProcess("C:\\a\\window.exe");
  machine_.surroundings().windows[77].process = by_window;
  ProcessId id = 0;
  EXPECT_FALSE(programs_.ProcessTerminate(id, 0)) << "neither id nor window";
  EXPECT_THAT(machine_.EnabledPrivileges(), ElementsAre());
  id = by_id;
  EXPECT_TRUE(programs_.ProcessTerminate(id, 77));
  EXPECT_EQ(id, by_window);
  id = by_id;
  EXPECT_TRUE(programs_.ProcessTerminate(id, 1)) << "1 is no window, so the id holds";
  EXPECT_FALSE(programs_.ProcessTerminate(id, 1)) << "has ended already";
  EXPECT_THAT(machine_.EnabledPrivileges(), testing::Contains("SeDebugPrivilege"));
}

TEST_F(SystemTest, OnlyTheOneServerVersionIsAskedToElevate) {
  using Version = SystemVersion;
  for (const auto& [version, is_vista, verb] : {std::tuple{Version{2, 6, 0, false}, true, "runas"},
                                                {Version{2, 6, 0, true}, true, "open"},
                                                {Version{2, 6, 1, false}, true, "open"},
                                                {Version{2, 6, 3, true}, true, "open"},
                                                {Version{2, 6, 4, false}, false, "open"},
                                                {Version{2, 10, 0, false}, false, "open"},
                                                {Version{1, 6, 0, false}, false, "open"}}) {
    machine_.surroundings().version = version;
    EXPECT_EQ(system_.IsVista(), is_vista) << version.major << "." << version.minor;
    EXPECT_EQ(programs_.LaunchHidden("C:\\i\\missing.exe", " 24<>", "C:\\data", 0), kNoProcess);
    EXPECT_EQ(machine_.Launches().back().verb, verb) << version.major << "." << version.minor;
  }
}

TEST_F(SystemTest, ACommandLineIsSplitWhereItsProgramEnds) {
  const std::string tool = "C:\\My Tools\\t.exe";
  machine_.PutFile(tool, "");
  for (const auto& [line, program, parameters] :
       {std::tuple{"\"" + tool + "\" -a \"b c\"", tool, "-a \"b c\""},
        {tool + "  -a b", tool, "-a b"},
        {tool, tool, ""},
        {" NTBACKUP backup ", "NTBACKUP", "backup"},
        {"\"open", "open", ""}}) {
    EXPECT_EQ(programs_.StartCommandLine(line, "C:\\data"), kNoProcess);
    EXPECT_EQ(machine_.Launches().back().file, program);
    EXPECT_EQ(machine_.Launches().back().parameters, parameters);
  }
}

TEST_F(SystemTest, AWaitListensInPassesAndLeavesAStoppedProgramRunning) {
  machine_.InstallProgram("C:\\i\\engine.exe", [](ProgramRun& run) { run.ExitAfter(1s, 0); });
  const auto start = [&] {
    return ProcessWatch{machine_.machine().processes,
                        programs_.LaunchHidden("C:\\i\\engine.exe", "", "C:\\", 0)};
  };
  int pumps = 0;
  machine_.OnPump([&] { ++pumps; });
  ProcessWatch watch = start();
  WaitUntilEnded(machine_.machine(), watch, 3ms);
  EXPECT_EQ(machine_.Elapsed(), 1000ms) << "in the fourth pass, which the end cuts short";
  EXPECT_EQ(pumps, 3) << "one behind each whole pass";
  watch = start();
  int tests = 0;
  const StopTest second_test = [&] { return ++tests == 2; };
  EXPECT_EQ(WaitUntilEndedOrStopped(machine_.machine(), watch, 100ms, second_test), WaitOutcome::kStopped);
  EXPECT_EQ(machine_.Elapsed(), 1800ms);
  EXPECT_TRUE(machine_.IsRunning("engine.exe"));
  watch = ProcessWatch{machine_.machine().processes, kNoProcess};
  tests = 0;
  EXPECT_EQ(WaitUntilEndedOrStoppedIfStarted(machine_.machine(), watch, 100ms, second_test),
            WaitOutcome::kEnded);
  EXPECT_EQ(WaitUntilEndedOrStopped(machine_.machine(), watch, 100ms, second_test), WaitOutcome::kStopped);
  EXPECT_EQ(machine_.Elapsed(), 2600ms) << "a program that did not start never ends";
}

TEST_F(SystemTest, APathIsAFolderWhenTheFirstMatchOfItsNameIs) {
  machine_.PutFile("C:\\docs\\plan.txt", "x");
  machine_.PutFile("C:\\docs\\report.txt", "x");
  machine_.PutFile("C:\\docs\\report\\a.txt", "x");
  machine_.PutFile("C:\\docs\\zeta 1.txt", "x");
  machine_.PutFolder("C:\\docs\\zeta 2");
  for (const char* path : {"", "C:\\", "C:", "C:\\docs", "C:\\docs\\", "C:\\docs\\REPORT", "C:\\docs\\rep"}) {
    EXPECT_TRUE(FolderNames(machine_.machine()).IsFolderPath(path)) << path;
  }
  for (const char* path : {"Q:\\", "C:\\docs\\plan.txt", "C:\\docs\\plan.txt\\", "C:\\docs\\zeta",
                           "C:\\docs\\none", "C:\\none\\none", "none"}) {
    EXPECT_FALSE(FolderNames(machine_.machine()).IsFolderPath(path)) << path;
  }
}

TEST_F(SystemTest, UnknownDrivesAreNotListedAndSpaceBeyondFourGigabytesIsWhole) {
  machine_.disk().PutDrive("E:\\", DriveKind::kNetwork, 3'298'534'883'328);
  machine_.disk().PutDrive("D:\\", DriveKind::kUnknown, 1);
  EXPECT_EQ(system_.DriveListText(), "C:|E:|");
  EXPECT_EQ(system_.GetFreeDiskBytes("E:\\"), 3298534883328.0);
  EXPECT_EQ(system_.GetFreeDiskBytes("Q:\\none"), 0.0);
}

TEST_F(SystemTest, ConnectionLinesTellTheFlagsAndTheVerdictOfASecondQuestion) {
  machine_.surroundings().connected_state = {true, 18, "Office"};
  EXPECT_TRUE(system_.LogConnectionState());
  machine_.surroundings().connected_state = {false, 32, ""};
  machine_.surroundings().is_connected = false;
  EXPECT_FALSE(system_.LogConnectionState());
  EXPECT_THAT(
      trace_.user,
      ElementsAre(
          "11-14-2026 12:30:00 Return Val from ConnectedState : 18. You are connected to Internet via a "
          "Office",
          "11-14-2026 12:30:00 Firewall is blocking the Exe.",
          "11-14-2026 12:30:00 Return Val from ConnectedState : 32. You are not connected to internet",
          "11-14-2026 12:30:00 There's no internet connection."));
}

TEST_F(SystemTest, AnUnknownServiceStateKeepsTheFlagAndOnlyRunningSetsIt) {
  machine_.surroundings().service_states["acme service"] = 4;
  EXPECT_EQ(system_.ServiceState("Acme Service"), 4);
  for (int state = 0; state <= 7; ++state) {
    machine_.surroundings().service_states["acme service"] = state;
    for (const bool before : {false, true}) {
      bool flag = before;
      system_.CheckServiceRunning("Acme Service", flag);
      EXPECT_EQ(flag, state == 4 || (state == 0 && before)) << state;
    }
  }
}

TEST_F(SystemTest, TheWriteTestLeavesNothingBehindAndAnswersTrueInAnyCase) {
  machine_.PutFolder("C:\\temp");
  std::vector<std::string> meanwhile;
  machine_.After(5ms, [&] { meanwhile = machine_.FilesUnder("C:\\temp"); });
  EXPECT_TRUE(system_.CheckForWriteAccessPermission("C:\\temp\\"));
  EXPECT_THAT(meanwhile, ElementsAre("C:\\temp\\tmp.mtp"));
  EXPECT_THAT(machine_.FilesUnder("C:\\temp"), ElementsAre());
  EXPECT_TRUE(system_.CheckForWriteAccessPermission("C:\\none\\"));
}

TEST_F(SystemTest, ARegistryValueIsFoundBehindABackslashAndMustBeOfAKnownType) {
  const auto read = [&](std::string_view key, std::string_view name) {
    return system_.ReadRegistryValue(RegistryRoot::kCurrentUser, key, name);
  };
  machine_.PutRegistryValue({RegistryRoot::kCurrentUser, "a\\b", "text"},
                            {RegistryType::kText, "t\xC3\xBCr"});
  machine_.PutRegistryValue({RegistryRoot::kCurrentUser, "a\\b", "other"}, {RegistryType::kOther, "x"});
  for (const char* key : {"a\\b", "\\A\\B"}) EXPECT_EQ(read(key, "text")->text, "t\xC3\xBCr") << key;
  EXPECT_THAT(machine_.Calls(),
              ElementsAre("Registry.Read HKCU\\a\\b\\text", "Registry.Read HKCU\\A\\B\\text"));
  EXPECT_FALSE(read("a\\b", "other"));
  EXPECT_FALSE(read("a\\b", "none"));
}

TEST_F(SystemTest, ADataFileIsReadWholeAndAMissingOneAsEmpty) {
  machine_.PutFile("C:\\data\\x.txt", "t\xFCr\r\n\r\n");
  EXPECT_EQ(system_.ReadDataFile("C:\\data\\", "x.txt"), "t\xC3\xBCr\r\n\r\n");
  EXPECT_EQ(system_.ReadDataFile("C:\\data\\", "y.txt"), "");
}

TEST_F(SystemTest, WindowsEndsByForceUnderItsPrivilege) {
  cls_ExitWindows{machine_.machine().processes, machine_.machine().power}.ExitWindows(kExitPowerOff);
  EXPECT_THAT(machine_.surroundings().windows_exits, ElementsAre(12U));
  EXPECT_THAT(machine_.EnabledPrivileges(), ElementsAre("SeShutdownPrivilege"));
}

TEST(IPAddress, IsValidWithFourPartsWhateverTheyAre) {
  for (const char* text : {"192.0.2.7", "a.b.c.d", "..."}) EXPECT_TRUE(clsIPResolve::IsValidIPAddress(text));
  for (const char* text : {"", "192.0.2", "192.0.2.7.", "192:0:2:7"}) {
    EXPECT_FALSE(clsIPResolve::IsValidIPAddress(text)) << text;
  }
}

TEST_F(SystemTest, AFailedLookUpShowsItsBoxAndAnEmptyOneForATextThatIsNoAddress) {
  auto& around = machine_.surroundings();
  around.addresses["vault.example"] = "192.0.2.7";
  clsIPResolve resolve{machine_.machine().names, machine_.machine().desktop};
  EXPECT_EQ(resolve.GetIPFromHostName("vault.example"), "192.0.2.7");
  EXPECT_EQ(resolve.GetHostNameFromIP("192.0.2.7"), "vault.example");
  for (const char* unknown : {"192.0.2.8", "127.1", "0xC0.2"}) {
    EXPECT_EQ(resolve.GetHostNameFromIP(unknown), "") << unknown;
  }
  EXPECT_THAT(around.messages, ElementsAre());
  EXPECT_EQ(resolve.GetIPFromHostName("none.example"), "");
  EXPECT_EQ(resolve.GetHostNameFromIP("a.b.c.d"), "");
  around.name_resolution_cleans_up = false;
  EXPECT_EQ(resolve.GetIPFromHostName("vault.example"), "192.0.2.7");
  around.name_resolution_starts = false;
  EXPECT_EQ(resolve.GetHostNameFromIP("192.0.2.7"), "");
  std::vector<std::string> texts;
  for (const ShownMessage& message : around.messages) texts.push_back(message.text);
  EXPECT_THAT(texts, ElementsAre("Failed to open Socket", "", "Error calling apiWSACleanup.",
                                 "Failed to open Socket"));
}

}  // namespace
}  // namespace ondura
