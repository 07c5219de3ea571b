#include <gmock/gmock.h>

#include <algorithm>

#include "TemporaryFolder.h"
#include "machines/win32/Win32Machine.h"
#include "machines/win32/handles.h"
#include "support/open_handles.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;
using testing::EndsWith;
using testing::Optional;

constexpr milliseconds kLong{60'000};
constexpr milliseconds kPatience{20'000};

class Win32ProcessesTest : public testing::Test {
 protected:
  std::unique_ptr<Win32Machine> owner_ = MakeWin32Machine();
  const Machine& machine_ = owner_->machine();
  Processes& processes_ = machine_.processes;
  TemporaryFolder folder_;

  [[nodiscard]] ProcessHandle Start(std::string_view name, milliseconds lifetime, int exit_code) const {
    return processes_.Launch(PutTool(folder_.path() + "\\" + std::string{name}, lifetime, exit_code));
  }

  [[nodiscard]] std::string NameOf(ProcessSource source, ProcessId id) const {
    for (const ProcessEntry& entry : processes_.List(source)) {
      if (entry.id == id) return entry.base_name;
    }
    return {};
  }
};

TEST_F(Win32ProcessesTest, BothWalksFindThisProgramUnderItsNumber) {
  for (const ProcessSource source : {ProcessSource::kSnapshot, ProcessSource::kModules}) {
    EXPECT_EQ(NameOf(source, GetCurrentProcessId()), "platform_tests.exe");
  }
  for (const ProcessEntry& entry : processes_.List(ProcessSource::kModules)) {
    EXPECT_THAT(entry.module_path, EndsWith("\\" + entry.base_name));
  }
}

TEST_F(Win32ProcessesTest, AProcessThatMayNotBeOpenedIsInTheSnapshotAlone) {
  const ProcessHandle handle = Start("Guarded.exe", kLong, 0);
  const ProcessId id = processes_.IdOf(handle);
  EXPECT_EQ(NameOf(ProcessSource::kModules, id), "Guarded.exe");
  // A list of rights that grants nobody any.
  ACL rights{};
  SECURITY_DESCRIPTOR guard{};
  ASSERT_TRUE(InitializeAcl(&rights, sizeof rights, ACL_REVISION) != FALSE &&
              InitializeSecurityDescriptor(&guard, SECURITY_DESCRIPTOR_REVISION) != FALSE &&
              SetSecurityDescriptorDacl(&guard, TRUE, &rights, FALSE) != FALSE &&
              SetKernelObjectSecurity(LongToHandle(handle), DACL_SECURITY_INFORMATION, &guard) != FALSE);
  EXPECT_EQ(processes_.OpenById(id, ProcessAccess::kQueryAndRead), kNoProcess);
  EXPECT_EQ(NameOf(ProcessSource::kModules, id), "");
  EXPECT_EQ(NameOf(ProcessSource::kSnapshot, id), "Guarded.exe");
  EXPECT_TRUE(processes_.Terminate(handle, 0));
  processes_.Close(handle);
}

TEST_F(Win32ProcessesTest, AProgramInAFolderWithBlanksAndLettersIsStartedWithItsArguments) {
  const ProcessHandle handle = Start("Größe und Maß.exe", milliseconds{1}, 41);
  EXPECT_EQ(processes_.Wait(handle, kPatience), ProcessWait::kEnded);
  EXPECT_THAT(processes_.ExitCode(handle), Optional(41U)) << "99 for other arguments";
  processes_.Close(handle);
}

TEST_F(Win32ProcessesTest, AHandleOfTheHostsOwnIsAsGoodAsOneOfOurs) {
  const UniqueHandle self{OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId())};
  const ProcessHandle handle = HandleToLong(self.get());
  EXPECT_EQ(processes_.IdOf(handle), GetCurrentProcessId());
  EXPECT_THAT(processes_.ExitCode(handle), Optional(kStillActive));
  processes_.Close(handle);
  EXPECT_EQ(processes_.IdOf(handle), GetCurrentProcessId()) << "only its owner closes it";
}

TEST_F(Win32ProcessesTest, EachRightAllowsItsOwnCallsOnly) {
  for (const auto& [access, tells_exit_code, terminates] :
       {std::tuple{ProcessAccess::kQuery, true, false},
        {ProcessAccess::kQueryAndRead, true, false},
        {ProcessAccess::kTerminate, false, true},
        {ProcessAccess::kQueryAndTerminate, true, true},
        {ProcessAccess::kQueryReadAndTerminate, true, true}}) {
    const ProcessHandle launched = Start("Tool.exe", kLong, 0);
    const ProcessHandle opened = processes_.OpenById(processes_.IdOf(launched), access);
    SCOPED_TRACE(static_cast<std::uint32_t>(access));
    EXPECT_EQ(processes_.ExitCode(opened).has_value(), tells_exit_code);
    EXPECT_EQ(processes_.Terminate(opened, 0), terminates);
    processes_.Terminate(launched, 0);
    EXPECT_EQ(processes_.Wait(launched, kPatience), ProcessWait::kEnded);
    processes_.Close(opened);
    processes_.Close(launched);
  }
}

TEST_F(Win32ProcessesTest, PrivilegesAndPriorityAreThoseOfThisProcess) {
  EXPECT_TRUE(processes_.EnablePrivilege("SeShutdownPrivilege"));
  EXPECT_FALSE(processes_.EnablePrivilege("SeNobodyHasThisPrivilege"));
  processes_.LowerOwnPriority();
  EXPECT_EQ(GetPriorityClass(GetCurrentProcess()), static_cast<DWORD>(BELOW_NORMAL_PRIORITY_CLASS));
  SetPriorityClass(GetCurrentProcess(), NORMAL_PRIORITY_CLASS);
}

TEST_F(Win32ProcessesTest, HandlesLeftOpenCloseWithTheMachine) {
  std::size_t before = 0;
  for (int i = 0; i < 20; ++i) {
    if (i == 1) before = OpenHandles();  // with what the system itself keeps of the first use
    const auto owner = MakeWin32Machine();
    const Machine& machine = owner->machine();
    machine.processes.OpenById(GetCurrentProcessId(), ProcessAccess::kQuery);
    machine.processes.List(ProcessSource::kModules);
    machine.mutexes.Create("Ondura test mutex");
    machine.crypto.Acquire("");
    machine.files.OpenWriter(folder_.path() + "\\open", IfPresent::kReplace);
    machine.watches.Watch(folder_.path() + "\\open")->MayHaveChanged();
    machine.services.State("none", ServiceManagerAccess::kRead);
  }
  EXPECT_EQ(OpenHandles(), before);
}

}  // namespace

}  // namespace ondura
