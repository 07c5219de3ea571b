#include <gmock/gmock.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "TemporaryRoot.h"
#include "contract.h"
#include "machines/posix/command_line.h"
#include "machines/posix/host_io.h"
#include "machines/posix/host_time.h"

namespace ondura {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Optional;
using testing::UnorderedElementsAre;

constexpr milliseconds kPatience{20'000};

class PosixMachineTest : public testing::Test {
 protected:
  TemporaryRoot root_;
  PosixMachineResult made_ = root_.Make();
  const Machine& machine_ = made_.owner->machine();
};

TEST_F(PosixMachineTest, NamesThatWindowsCannotHoldGoThereAndBack) {
  const std::string host_names[] = {"a:b*c?\"<>|\\d", "line\nbreak", std::string("latin\xE9"),
                                    "\xEF\x80\xBA"};
  for (const std::string& name : host_names) root_.Put("C/d/" + name, name);
  const auto shown = NamesIn(machine_, R"(C:\d)");
  ASSERT_EQ(shown.size(), std::size(host_names));
  std::vector<std::string> contents;
  for (const std::string& name : shown) {
    EXPECT_EQ(name.find_first_of("\\/:*?\"<>|\n"), std::string::npos);
    contents.push_back(machine_.files.Read(R"(C:\d\)" + name).value_or("unreadable"));
  }
  EXPECT_THAT(contents, testing::UnorderedElementsAreArray(host_names));
}

TEST_F(PosixMachineTest, LinksToFilesAreFilesAndLinksToFoldersAreLeftOut) {
  root_.Put("C/d/file", "12345");
  const auto folder = root_.path() / "C/d";
  std::filesystem::create_symlink("file", folder / "link");
  std::filesystem::create_symlink("..", folder / "loop");
  std::filesystem::create_symlink("nowhere", folder / "broken");
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_THAT(NamesIn(machine_, R"(C:\d)"), UnorderedElementsAre("file", "link"));
  EXPECT_THAT(machine_.files.Size(R"(C:\d\LINK)"), Optional(5U));
  EXPECT_EQ(machine_.files.Read(R"(C:\d\pipe)"), std::nullopt) << "and no wait for a writer";
}

TEST_F(PosixMachineTest, LinksToFilesOffTheDriveAreShownAsSuchAndOpenNothing) {
  root_.Put("secret", "x");
  root_.Put("C/d/file", "12345");
  const auto folder = root_.path() / "C/d";
  std::filesystem::create_symlink(root_.path() / "secret", folder / "planted");
  std::filesystem::create_symlink(root_.path() / "made", folder / "dangling");
  machine_.folders.List(R"(C:\d)", [](const FolderEntry& entry) {
    EXPECT_EQ(entry.leads_off_drive, entry.name == "planted");
    return Visit::kContinue;
  });
  for (const std::string path : {R"(C:\d\planted)", R"(C:\d\PLANTED)", R"(C:\d\dangling)"}) {
    EXPECT_FALSE(machine_.files.Exists(path));
    EXPECT_EQ(machine_.files.Size(path), std::nullopt);
    EXPECT_EQ(machine_.files.Read(path), std::nullopt);
    EXPECT_FALSE(machine_.files.Copy(path, R"(C:\d\copy)"));
    EXPECT_FALSE(machine_.files.Patch(path, 0, "y"));
    EXPECT_FALSE(machine_.files.Append(path, "y", IfMissing::kCreate));
    EXPECT_EQ(machine_.files.OpenWriter(path, IfPresent::kReplace), nullptr);
    EXPECT_FALSE(machine_.profiles.WriteString({path, "S", "Key"}, "y"));
    EXPECT_EQ(machine_.profiles.ReadString({path, "S", "Key"}), "");
  }
  EXPECT_EQ(root_.Bytes("secret"), "x");
  EXPECT_FALSE(std::filesystem::exists(root_.path() / "made"));
}

TEST_F(PosixMachineTest, NothingIsOpenedBehindALinkToAFolderThatLeadsOffAMappedDrive) {
  root_.Put("outside/secret", "x");
  root_.Put("disk/inner/file", "y");
  root_.Put("machine.ini", "[Drives]\nD=" + (root_.path() / "disk").string() + "\n");
  std::filesystem::create_directory_symlink(root_.path() / "outside", root_.path() / "disk/out");
  std::filesystem::create_directory_symlink("inner", root_.path() / "disk/in");
  const PosixMachineResult made = root_.Make();
  const Machine& machine = made.owner->machine();
  EXPECT_FALSE(machine.folders.List(R"(D:\out)", [](const FolderEntry&) { return Visit::kContinue; }));
  EXPECT_EQ(machine.files.Read(R"(D:\out\secret)"), std::nullopt);
  EXPECT_FALSE(machine.files.Copy(R"(D:\OUT\secret)", R"(D:\copy)"));
  EXPECT_TRUE(machine.folders.List("D:\\", [](const FolderEntry&) { return Visit::kContinue; }));
  EXPECT_THAT(machine.files.Read(R"(D:\in\file)"), Optional(std::string{"y"}));
}

// A limit on the size of files stands for a full disk: what is beyond it is not written.
class SizeLimit {
 public:
  explicit SizeLimit(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_);
    const rlimit limit{bytes, old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_);
    signal(SIGXFSZ, handler_);
  }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  void (*handler_)(int);
  rlimit old_{};
};

TEST_F(PosixMachineTest, AReplacedFileIsWholeAndKeepsItsRightsAndNames) {
  root_.Put("C/d/file", "old");
  const auto host = root_.path() / "C/d/file";
  std::filesystem::permissions(host, std::filesystem::perms{0640});
  const std::string path = R"(C:\d\File)";
  struct stat before {};
  stat(host.c_str(), &before);
  const Fd reader{open(host.c_str(), O_RDONLY)};
  EXPECT_TRUE(machine_.files.Write(path, "new content", IfPresent::kReplace));
  EXPECT_EQ(ReadRest(reader, 99), "old") << "who has it open goes on with what was there";
  struct stat after {};
  stat(host.c_str(), &after);
  EXPECT_EQ(after.st_mode, before.st_mode);
  {
    const SizeLimit full{11};
    EXPECT_FALSE(machine_.files.Write(path, "longer content", IfPresent::kReplace));
  }
  EXPECT_EQ(root_.Bytes("C/d/file"), "new content");
  std::filesystem::create_hard_link(host, root_.path() / "C/d/other");
  EXPECT_TRUE(machine_.files.Write(path, "for both", IfPresent::kReplace));
  EXPECT_EQ(root_.Bytes("C/d/other"), "for both");
  {
    const SizeLimit full{8};
    EXPECT_FALSE(machine_.files.Write(path, "too long for it", IfPresent::kReplace));
    root_.Put("C/long", "eight or");
    const SizeLimit fuller{4};
    EXPECT_FALSE(machine_.files.Copy(R"(C:\long)", R"(C:\d\half)"));
  }
  EXPECT_EQ(root_.Bytes("C/d/other"), "for both");
  EXPECT_THAT(NamesIn(machine_, R"(C:\d)"), UnorderedElementsAre("file", "other"));
}

TEST_F(PosixMachineTest, ADamagedIniFileOfManyLinesHasItsFirstKeysAndTakesOneMore) {
  std::string text = "[S]\r\nKey=1\r\n[Other]\r\n";
  for (int line = 0; line < 200'000; ++line) text += "x=" + std::to_string(line) + "\r\n";
  root_.Put("C/User.ini", text);
  const IniKey key{R"(C:\User.ini)", "s", "KEY"};
  EXPECT_EQ(machine_.profiles.ReadString(key), "1");
  EXPECT_EQ(machine_.profiles.ReadString({key.file, "Other", "X"}), "0");
  EXPECT_EQ(machine_.profiles.ReadString({key.file, "S", "x"}), "") << "a key of another section";
  EXPECT_TRUE(machine_.profiles.WriteString({key.file, "S", "New"}, "2"));
  EXPECT_TRUE(machine_.profiles.WriteString(key, "3"));
  EXPECT_EQ(root_.Bytes("C/User.ini"), "[S]\r\nKey=3\r\nNew=2\r\n" + text.substr(12));
}

TEST_F(PosixMachineTest, TheFileOfAnotherAccountIsNotTrusted) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give a file away; the build service runs as root";
  root_.Put("C/d/file", "12345");
  EXPECT_THAT(machine_.files.ReadTrusted(R"(C:\d\file)"), Optional(std::string{"12345"}));
  ASSERT_EQ(chown((root_.path() / "C/d/file").c_str(), 65534, 65534), 0);
  EXPECT_EQ(machine_.files.ReadTrusted(R"(C:\d\file)"), std::nullopt);
  EXPECT_THAT(machine_.files.Read(R"(C:\d\file)"), Optional(std::string{"12345"}));
}

TEST_F(PosixMachineTest, RemovingAFolderDoesNotFollowItsLinks) {
  root_.Put("C/keep/file", "x");
  root_.Put("C/d/file", "x");
  std::filesystem::create_symlink("../keep", root_.path() / "C/d/link");
  EXPECT_TRUE(machine_.folders.Remove(R"(C:\d)", Removal::kForce));
  EXPECT_EQ(root_.Bytes("C/keep/file"), "x");
  EXPECT_FALSE(machine_.folders.Remove("C:\\", Removal::kForce));
  EXPECT_EQ(root_.Bytes("C/keep/file"), "x") << "a drive is no folder to remove";
}

TEST_F(PosixMachineTest, PathsStayWithinTheirDrive) {
  root_.Put("outside", "x");
  EXPECT_FALSE(machine_.files.Exists(R"(C:\..\outside)"));
  EXPECT_FALSE(machine_.files.Exists("C:\\../../outside"));
  EXPECT_FALSE(machine_.files.Exists(std::string("C:\\\xEF\x80\xAF..\xEF\x80\xAFoutside")));
}

TEST_F(PosixMachineTest, AnIniWriteKeepsRightsAndLinkAndTouchesNothingWithoutNeedOrRoom) {
  root_.Put("C/real.ini", "[S]\r\nKey=1\r\n");
  const auto file = root_.path() / "C/real.ini";
  chmod(file.c_str(), 0640);
  std::filesystem::create_symlink("real.ini", root_.path() / "C/User.ini");
  EXPECT_TRUE(machine_.profiles.WriteString({R"(C:\User.ini)", "S", "Key"}, "2"));
  EXPECT_EQ(root_.Bytes("C/real.ini"), "[S]\r\nKey=2\r\n");
  EXPECT_TRUE(std::filesystem::is_symlink(root_.path() / "C/User.ini"));
  struct stat before {};
  struct stat after {};
  ASSERT_EQ(stat(file.c_str(), &before), 0);
  EXPECT_EQ(before.st_mode & 0777U, 0640U);
  EXPECT_TRUE(machine_.profiles.WriteString({R"(C:\User.ini)", "S", "key "}, "2"));
  ASSERT_EQ(stat(file.c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
  {
    const SizeLimit full{13};
    EXPECT_FALSE(machine_.profiles.WriteString({R"(C:\User.ini)", "S", "Key"}, "longer than before"));
  }
  EXPECT_EQ(root_.Bytes("C/real.ini"), "[S]\r\nKey=2\r\n");
  EXPECT_THAT(NamesIn(machine_, "C:\\"), UnorderedElementsAre("real.ini", "User.ini"))
      << "nothing is left beside it";
}

TEST_F(PosixMachineTest, AnIniWriteThatHasNoRoomBesideItsFileGoesIntoIt) {
  root_.Put("C/User.ini", "[S]\r\nKey=402\r\n");
  root_.Put("C/" + std::string{kNewContentPrefix} + "User.ini/in the way", "");
  EXPECT_TRUE(machine_.profiles.WriteString({R"(C:\User.ini)", "S", "Key"}, "0"));
  EXPECT_EQ(root_.Bytes("C/User.ini"), "[S]\r\nKey=0\r\n");
}

TEST_F(PosixMachineTest, ChangesOfTwoProcessesToOneIniFileAreBothKept) {
  constexpr int kWrites = 200;
  const pid_t child = fork();
  const std::string key = child == 0 ? "Child" : "Parent";
  for (int i = 1; i <= kWrites; ++i) {
    machine_.profiles.WriteString({R"(C:\User.ini)", "S", key + std::to_string(i)}, "x");
  }
  if (child == 0) _exit(0);
  waitpid(child, nullptr, 0);
  for (const char* name : {"Child", "Parent"}) {
    for (int i = 1; i <= kWrites; ++i) {
      EXPECT_EQ(machine_.profiles.ReadString({R"(C:\User.ini)", "S", name + std::to_string(i)}), "x");
    }
  }
}

TEST_F(PosixMachineTest, AWatchSeesEachWriteOfItsFileAtTheVeryNextLookAndOutlivesItsFolder) {
  root_.Put("C/d/Status.ini", "");
  const auto watch = machine_.watches.Watch(R"(C:\d\Status.ini)");
  for (int i = 0; i < 50; ++i) {
    root_.Put("C/d/Status.ini", std::to_string(i % 10));
    EXPECT_TRUE(watch->MayHaveChanged()) << i;
  }
  watch->MayHaveChanged();
  root_.Put("C/d/Other.ini", "x");
  EXPECT_FALSE(watch->MayHaveChanged()) << "a neighbour's change";
  std::filesystem::remove_all(root_.path() / "C/d");
  EXPECT_TRUE(watch->MayHaveChanged());
  root_.Put("C/d/Status.ini", "2");
  EXPECT_TRUE(watch->MayHaveChanged());
}

TEST_F(PosixMachineTest, ProgramsOutsideOfTheRootAreNeitherShownNorOpened) {
  EXPECT_TRUE(machine_.processes.List(ProcessSource::kSnapshot).empty());
  EXPECT_EQ(machine_.processes.OpenById(static_cast<ProcessId>(getpid()), ProcessAccess::kTerminate),
            kNoProcess);
}

TEST_F(PosixMachineTest, AChildThatRunsAProgramOfTheHostByNowCanBeOpenedAndEnded) {
  root_.Put("C/Engine.exe", "#!/bin/sh\nexec sleep 60\n");
  std::filesystem::permissions(root_.path() / "C/Engine.exe", std::filesystem::perms::owner_all);
  Processes& processes = machine_.processes;
  const ProcessHandle handle = processes.Launch({.file = R"(C:\Engine.exe)", .parameters = {}, .folder = {}});
  const ProcessHandle opened = processes.OpenById(processes.IdOf(handle), ProcessAccess::kQueryAndTerminate);
  EXPECT_TRUE(processes.Terminate(opened, 0));
  EXPECT_EQ(processes.Wait(handle, kPatience), ProcessWait::kEnded);
}

TEST_F(PosixMachineTest, AnotherAccountsProcessIsInTheSnapshotAlone) {
  if (getuid() != 0) GTEST_SKIP() << "only root can act as another account; the build service runs as root";
  root_.PutPerl(R"(C:\Tool.exe)");
  Processes& processes = machine_.processes;
  const ProcessHandle handle = processes.Launch(TemporaryRoot::PerlRequest(R"(C:\Tool.exe)", "sleep 60"));
  const pid_t observer = fork();
  if (observer == 0) {
    const bool is_other = setuid(65534) == 0;
    const auto seen = processes.List(ProcessSource::kSnapshot);
    _exit(is_other && processes.List(ProcessSource::kModules).empty() && seen.size() == 1 &&
                  seen.front().base_name == "Tool.exe"
              ? 0
              : 1);
  }
  int status = 0;
  waitpid(observer, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(processes.Terminate(handle, 0));
}

TEST_F(PosixMachineTest, AChildGetsItsArgumentsFolderAndMachine) {
  root_.Put("C/Work/x", "");
  root_.PutPerl(R"(C:\Tool.exe)");
  const PosixMachineResult quick = root_.Make(50);
  LaunchRequest request = TemporaryRoot::PerlRequest(
      R"(C:\TOOL.EXE)",
      "open F, '>', 'out'; print F join('|', @ARGV, $ENV{ONDURA_ROOT}, $ENV{ONDURA_SPEED})");
  request.parameters += R"( 51<\a "b c")";
  request.folder = R"(C:\work)";
  Processes& processes = quick.owner->machine().processes;
  const ProcessHandle handle = processes.Launch(request);
  EXPECT_EQ(processes.Wait(handle, kPatience * 50), ProcessWait::kEnded);
  EXPECT_EQ(root_.Bytes("C/Work/out"), R"(51<\a|b c|)" + root_.path().string() + "|50");
}

TEST_F(PosixMachineTest, EndedChildrenLeaveNoZombiesAndNoDescriptors) {
  root_.PutPerl(R"(C:\Tool.exe)");
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator{"/proc/self/fd"}, {});
  };
  const auto before = open_files();
  for (int i = 0; i < 5; ++i) {
    const ProcessHandle handle =
        machine_.processes.Launch(TemporaryRoot::PerlRequest(R"(C:\Tool.exe)", "exit 0"));
    EXPECT_EQ(machine_.processes.Wait(handle, kPatience), ProcessWait::kEnded);
  }
  EXPECT_EQ(open_files(), before) << "though no handle was closed";
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(PosixMachineTest, RehearsalSpeedShortensWaits) {
  const PosixMachineResult quick = root_.Make(1000);
  const auto begin = std::chrono::steady_clock::now();
  quick.owner->machine().clock.Sleep(milliseconds{61'000});
  quick.owner->machine().processes.Wait(kNoProcess, milliseconds{61'000});
  const auto spent = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(spent, milliseconds{122});
  EXPECT_LT(spent, milliseconds{5000});
}

TEST(MachineSettings, TheFileDescribesTheMachine) {
  const TemporaryRoot root;
  root.Put("elsewhere/File.txt", "mapped");
  root.Put("machine.ini",
           "; a rehearsal\n[Drives]\nd = elsewhere/\n[Locale]\nShortDate=dd.MM.yyyy\nTimeFormat=HH:mm:ss\n"
           "Decimal=,\n[System]\nCodePage=1251\nVersion=10.0\nWorkstation=0\nWow64=1\n"
           "[Internet]\nConnected=0\nFlags=32\nConnection=Modem\n[Services]\nOndura Service=4\n");
  const PosixMachineResult made = root.Make();
  ASSERT_TRUE(made.owner) << made.error;
  const Machine& machine = made.owner->machine();
  EXPECT_THAT(machine.files.Read(R"(D:\file.TXT)"), Optional(std::string{"mapped"}));
  EXPECT_EQ(machine.drives.LongPath(R"(d:\FILE.txt)"), R"(D:\File.txt)");
  EXPECT_THAT(machine.drives.Roots(), ElementsAre("C:\\", "D:\\"));
  EXPECT_EQ(machine.locale.Text(kLocaleShortDate), "dd.MM.yyyy");
  EXPECT_EQ(machine.locale.Text(kLocaleDecimal), ",");
  EXPECT_EQ(machine.code_page.FromUtf8("Ж"), "\xC6");
  EXPECT_EQ(machine.system.Version().major, 10);
  EXPECT_FALSE(machine.system.Version().is_workstation);
  EXPECT_TRUE(machine.system.IsWow64());
  EXPECT_FALSE(machine.internet.IsConnected());
  EXPECT_EQ(machine.internet.ExtendedState().flags, 32U);
  EXPECT_EQ(machine.services.State("ONDURA service", ServiceManagerAccess::kRead), 4);
}

TEST(MachineSettings, AFaultIsReportedWithItsLine) {
  for (const auto& [text, want] : std::map<std::string, std::string>{
           {"[Nothing]", "line 1: there is no section [Nothing]"},
           {"\n[System]\nColour=1", "line 3: there is no setting Colour in [System]"},
           {"[System]\nCodePage=437", "line 2: \"437\" is no value for CodePage"},
           {"[Internet]\nTimeout=0", "line 2: \"0\" is no value for Timeout"},
           {"[System]\nWow64=yes", "line 2: \"yes\" is no value for Wow64"},
           {"[Drives]\nDD=/x", "line 2: \"/x\" is no value for DD"},
           {"[Services]\nx=8", "line 2: \"8\" is no value for x"},
           {"junk", "line 1: it is neither a [section] nor a name=value"},
           {"[Locale]\nDecimal=\xE9", "is no UTF-8 text"}}) {
    const TemporaryRoot root;
    root.Put("machine.ini", text);
    const PosixMachineResult made = root.Make();
    EXPECT_FALSE(made.owner) << text;
    EXPECT_THAT(made.error, HasSubstr(want));
  }
  EXPECT_THAT(MakePosixMachine({"/nowhere/at/all", 1, {}}).error, HasSubstr("is no folder"));
}

TEST(CommandLine, ParametersAreSplitAsTheCRuntimeDoes) {
  for (const auto& [parameters, want] : std::map<std::string, std::vector<std::string>>{
           {"", {}},
           {"  \t ", {}},
           {" 17", {"17"}},
           {R"( 51<\8_5_03_503>)", {R"(51<\8_5_03_503>)"}},
           {R"( 16<C:\Program Files\x>)", {R"(16<C:\Program)", R"(Files\x>)"}},
           {R"("a b" c)", {"a b", "c"}},
           {R"(a" "b)", {"a b"}},
           {R"("" x)", {"", "x"}},
           {R"(a\\\b d"e f"g h)", {R"(a\\\b)", "de fg", "h"}},
           {R"(a\\\"b c)", {R"(a\"b)", "c"}},
           {R"(a\\"b c" d)", {R"(a\b c)", "d"}},
           {R"("say ""hi""" x)", {R"(say "hi")", "x"}},
           {R"("open end)", {"open end"}},
           {R"(C:\folder\)", {R"(C:\folder\)"}}}) {
    EXPECT_EQ(SplitCommandLine(parameters), want) << parameters;
  }
}

TEST(LocalZone, OffsetsFollowTheZoneOverItsChanges) {
  setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  LocalZone zone;
  const std::pair<std::time_t, TimeFields> kCases[] = {
      {1774745999, {2026, 3, 29, 1, 59, 59}}, {1774746000, {2026, 3, 29, 3, 0, 0}},
      {1774746001, {2026, 3, 29, 3, 0, 1}},   {1792889999, {2026, 10, 25, 2, 59, 59}},
      {1792890000, {2026, 10, 25, 2, 0, 0}},  {1767225600, {2026, 1, 1, 1, 0, 0}},
      {1782864000, {2026, 7, 1, 2, 0, 0}},    {-86400, {1969, 12, 31, 1, 0, 0}},
  };
  for (int round = 0; round < 2; ++round) {
    for (const auto& [utc, want] : kCases) EXPECT_EQ(ToFields(zone.ToLocal(utc)), want) << utc;
  }
  unsetenv("TZ");
  tzset();
}

}  // namespace
}  // namespace ondura
