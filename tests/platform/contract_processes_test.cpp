#include <gmock/gmock.h>

#include <algorithm>

#include "contract.h"

namespace ondura {

namespace {

using std::chrono::milliseconds;
using testing::Optional;

// A story, pass phrase, salt, clear text and what becomes of it.
using CipherCase =
    std::tuple<const char*, std::string_view, std::string_view, std::string_view, std::string_view>;

constexpr std::string_view kSalt = "\xD1\xD2\xD3\xD5\xD8\xD9\xDA\xDC\xDD\xDE\xDF";

// The cipher under the first five bytes of the SHA-1 and eleven of the salt, worked out apart.
constexpr CipherCase kCipherCases[] = {
    {"a short salt is filled up with zeros", "pass phrase", "salt", "clear text",
     "\xE0\xC1\x02\xC3\x8E\x8E\xA0\x54\x17\x0F"},
    {"no pass phrase is one too", "", kSalt, "clear text", {"\x00\x66\x4C\x57\xEB\x16\xF7\x38\x8E\x13", 10}},
    {"any byte can be hidden", "CedarSmoke", kSalt, {"\x00\x7F\x80\xFF", 4}, "\xBE\x5E\xA8\x31"},
    {"a long pass phrase is one key", "a longer pass phrase than the key has bytes", kSalt, "x", "r"},
    {"a long salt is cut", "k", "more salt than eleven bytes", "clear text",
     "\x46\xDF\xFF\x8C\x52\x5E\xA0\x78\x2F\xBE"},
};

constexpr milliseconds kPatience{20'000};
constexpr milliseconds kLong{60'000};

std::vector<ProcessEntry> Running(const Machine& machine, std::string_view base_name) {
  auto entries = machine.processes.List(ProcessSource::kModules);
  std::erase_if(entries, [&](const ProcessEntry& entry) { return entry.base_name != base_name; });
  return entries;
}

// The system may show a process a moment after its start, and hold it for a moment after its end.
bool IsSoon(const Machine& machine, const std::function<bool()>& is_so) {
  constexpr milliseconds kPause{10};
  for (milliseconds waited{}; !is_so() && waited < kPatience; waited += kPause) machine.clock.Sleep(kPause);
  return is_so();
}

TEST_P(PlatformContract, AProcessRunsEndsAndTellsItsExitCode) {
  const LaunchRequest request = tested_->PutProgram(At("Tool.exe"), milliseconds{300}, 7);
  const ProcessHandle handle = machine_.processes.Launch(request);
  ASSERT_GT(handle, 0);
  EXPECT_EQ(machine_.processes.Wait(handle, milliseconds{1}), ProcessWait::kTimedOut);
  EXPECT_THAT(machine_.processes.ExitCode(handle), Optional(kStillActive));
  std::vector<ProcessEntry> running;
  ASSERT_TRUE(IsSoon(machine_, [&] { return (running = Running(machine_, "Tool.exe")).size() == 1; }));
  EXPECT_EQ(running[0].module_path, At("Tool.exe"));
  EXPECT_EQ(running[0].id, machine_.processes.IdOf(handle));
  EXPECT_EQ(machine_.processes.Wait(handle, kPatience), ProcessWait::kEnded);
  EXPECT_THAT(machine_.processes.ExitCode(handle), Optional(7U));
  EXPECT_TRUE(Running(machine_, "Tool.exe").empty());
  if (!tested_->Excuses("what has ended can't be ended")) {
    EXPECT_FALSE(machine_.processes.Terminate(handle, 1));
  }
  machine_.processes.Close(handle);
  EXPECT_EQ(machine_.processes.ExitCode(handle), std::nullopt);
}

TEST_P(PlatformContract, AnotherProcessFindsAndEndsARunningOne) {
  const LaunchRequest request = tested_->PutProgram(At("Tool.exe"), kLong, 0);
  const ProcessHandle handle = machine_.processes.Launch(request);
  const ProcessId id = machine_.processes.IdOf(handle);
  const ProcessHandle looked = other_.processes.OpenById(id, ProcessAccess::kQueryAndRead);
  ASSERT_NE(looked, kNoProcess);
  EXPECT_FALSE(other_.processes.Terminate(looked, 0)) << "the right is missing";
  const ProcessHandle held = other_.processes.OpenById(id, ProcessAccess::kQueryReadAndTerminate);
  EXPECT_TRUE(other_.processes.Terminate(held, 3));
  EXPECT_EQ(machine_.processes.Wait(handle, kPatience), ProcessWait::kEnded);
  EXPECT_THAT(other_.processes.ExitCode(held), Optional(3U));
  EXPECT_TRUE(Running(machine_, "Tool.exe").empty());
  other_.processes.Close(looked);
  other_.processes.Close(held);
  machine_.processes.Close(handle);
  EXPECT_TRUE(IsSoon(other_, [&] {
    const ProcessHandle late = other_.processes.OpenById(id, ProcessAccess::kTerminate);
    other_.processes.Close(late);
    return late == kNoProcess;
  }));
}

TEST_P(PlatformContract, ATerminatedProcessKeepsTheCodeItWasGiven) {
  const ProcessHandle handle = machine_.processes.Launch(tested_->PutProgram(At("Tool.exe"), kLong, 0));
  EXPECT_TRUE(machine_.processes.Terminate(handle, 0));
  EXPECT_EQ(machine_.processes.Wait(handle, kPatience), ProcessWait::kEnded);
  EXPECT_THAT(machine_.processes.ExitCode(handle), Optional(0U));
}

TEST_P(PlatformContract, ABareNameIsLookedUpInTheWorkingFolderAndThenTheSystems) {
  machine_.folders.Make(At("Windows"));
  machine_.folders.Make(At(R"(Windows\system32)"));
  LaunchRequest request = tested_->PutProgram(At(R"(Windows\system32\regsvr32.exe)"), milliseconds{1}, 0);
  for (const char* name : {"REGSVR32.exe", "RegSvr32"}) {
    request.file = name;
    const ProcessHandle handle = machine_.processes.Launch(request);
    EXPECT_EQ(machine_.processes.Wait(handle, kPatience), ProcessWait::kEnded) << name;
  }
  tested_->PutProgram(At("local.exe"), milliseconds{1}, 0);
  request.file = "local.exe";
  EXPECT_TRUE(machine_.processes.OpenForUser(request));
}

TEST_P(PlatformContract, WhatIsNoProgramIsNotStarted) {
  LaunchRequest request = tested_->PutProgram(At("Tool.exe"), milliseconds{1}, 0);
  for (const std::string& file : {At("none.exe"), std::string{"none.exe"}, At(""), std::string{}}) {
    request.file = file;
    EXPECT_EQ(machine_.processes.StateOf(file), ProgramState::kMissing) << file;
    EXPECT_EQ(machine_.processes.Launch(request), kNoProcess) << file;
    EXPECT_FALSE(machine_.processes.OpenForUser(request)) << file;
  }
  EXPECT_EQ(machine_.processes.StateOf(At("TOOL.exe")), ProgramState::kStartable);
  machine_.files.Write(At("text.exe"), "no program", IfPresent::kReplace);
  EXPECT_EQ(machine_.processes.StateOf(At("text.exe")), ProgramState::kRefused);
}

TEST_P(PlatformContract, NoProcessIsWaitedForInVain) {
  EXPECT_EQ(machine_.processes.Wait(kNoProcess, milliseconds{1}), ProcessWait::kTimedOut);
  EXPECT_EQ(machine_.processes.ExitCode(kNoProcess), std::nullopt);
  EXPECT_EQ(machine_.processes.IdOf(0), 0U);
  EXPECT_FALSE(machine_.processes.Terminate(kNoProcess, 0));
  EXPECT_EQ(machine_.processes.OpenById(0x7FFFFFF0, ProcessAccess::kTerminate), kNoProcess);
}

TEST_P(PlatformContract, AMutexBelongsToItsMakerUntilReleased) {
  NamedMutexes& first = machine_.mutexes;
  const MutexHandle mine = first.Create(R"(Global\Ondura scan)");
  const MutexHandle theirs = other_.mutexes.Create(R"(Global\Ondura scan)");
  const auto others_wait = [&] {
    bool is_theirs = false;
    tested_->AsOther([&] { is_theirs = other_.mutexes.Wait(theirs, milliseconds{10}); });
    return is_theirs;
  };
  ASSERT_NE(mine, 0);
  ASSERT_NE(theirs, 0);
  EXPECT_FALSE(others_wait());
  EXPECT_TRUE(first.Wait(mine, milliseconds{10})) << "the owner may take it again";
  first.Release(mine);
  EXPECT_FALSE(others_wait()) << "and has to release it as often";
  first.Release(mine);
  EXPECT_TRUE(others_wait());
  EXPECT_FALSE(first.Wait(mine, milliseconds{10}));
  tested_->AsOther([&] { other_.mutexes.Close(theirs); });
  first.Close(mine);
  EXPECT_FALSE(first.Wait(mine, milliseconds{10})) << "a closed handle";
  EXPECT_NE(first.Create("another"), 0);
}

TEST_P(PlatformContract, RegistryValuesKeepTypeAndContent) {
  const RegistryValue kValues[] = {{RegistryType::kText, " a=b; \"c\" 100% \r\nÄ ", 0},
                                   {RegistryType::kText, "", 0},
                                   {RegistryType::kDword, "", 0xFFFFFFFF},
                                   {RegistryType::kBinary, "", 200}};
  for (const RegistryValue& value : kValues) {
    const RegistryName name{RegistryRoot::kLocalMachine, kRegistryFolder, "A=[Value]"};
    ASSERT_TRUE(machine_.registry.Write(name, value));
    const RegistryName same{RegistryRoot::kLocalMachine, R"(SOFTWARE\ondura TESTS\)", "a=[value]"};
    const auto read = other_.registry.Read(same, RegistryAccess::kQueryValue);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(read->type, value.type);
    EXPECT_EQ(read->text, value.text);
    EXPECT_EQ(read->number, value.number);
    const RegistryName user{RegistryRoot::kCurrentUser, name.key, name.value};
    EXPECT_EQ(machine_.registry.Read(user, RegistryAccess::kAll), std::nullopt);
  }
}

TEST_P(PlatformContract, SleepSpendsAtLeastItsTime) {
  const LocalTime before = machine_.clock.Now();
  machine_.clock.Sleep(milliseconds{1100});
  EXPECT_GE(machine_.clock.Now() - before, std::chrono::seconds{1});
  machine_.clock.Sleep(milliseconds{-5});
}

TEST_P(PlatformContract, TheDefaultsDescribeOneMachine) {
  EXPECT_EQ(machine_.locale.Text(kLocaleShortDate), "M/d/yyyy");
  EXPECT_EQ(machine_.locale.Text(kLocaleTimeFormat), "h:mm:ss tt");
  EXPECT_EQ(machine_.locale.Text(kLocaleDecimal), ".");
  EXPECT_EQ(machine_.locale.Text(999), "");
  EXPECT_EQ(machine_.system.Version().platform_id, 2);
  EXPECT_EQ(machine_.system.Version().major, 6);
  EXPECT_TRUE(machine_.system.Version().is_workstation);
  const bool is_64_bit_process = sizeof(void*) == 8;
  EXPECT_FALSE(is_64_bit_process && machine_.system.IsWow64());
  EXPECT_EQ(machine_.system.Is64Bit(), is_64_bit_process || machine_.system.IsWow64());
  EXPECT_TRUE(machine_.internet.IsConnected());
  EXPECT_TRUE(machine_.internet.ExtendedState().connected);
  EXPECT_EQ(machine_.services.State("Ondura Service", ServiceManagerAccess::kRead), 0);
  EXPECT_EQ(machine_.desktop.ProcessOfWindow(12345), 0U);
  EXPECT_EQ(machine_.desktop.FindTopWindow("#32770", "No such title"), 0);
  EXPECT_FALSE(machine_.desktop.Show(12345, WindowShow::kHide));
  EXPECT_FALSE(machine_.desktop.Post(12345, kCloseMessage));
}

TEST_P(PlatformContract, AnAddressIsWhatReadsAsOne) {
  for (const auto& [text, want] : {std::pair{"127.0.0.1", true},
                                   {"127.1", true},
                                   {"0x7f.1", true},
                                   {"017700000001", true},
                                   {"127.0.0.1 x", true},
                                   {" ", true},
                                   {"", false},
                                   {"no address", false},
                                   {"256.0.0.1", false},
                                   {"1.2.3.4.5", false},
                                   {"1.2.3.", false},
                                   {"127.0.0.1x", false},
                                   {"255.255.255.255", false}}) {
    if (tested_->Excuses(text)) continue;
    EXPECT_EQ(machine_.names.NameOf(text).is_address, want) << text;
  }
}

TEST_P(PlatformContract, EveryCodePageByteGoesThereAndBack) {
  std::string bytes;
  for (int i = 0; i < 256; ++i) bytes += static_cast<char>(i);
  EXPECT_EQ(machine_.code_page.FromUtf8(machine_.code_page.ToUtf8(bytes)), bytes);
  EXPECT_EQ(machine_.code_page.FromUtf8("€ Ä Ж \xFF"), "\x80 \xC4 ? ?");
  EXPECT_EQ(machine_.code_page.FromUtf8("a😀b"), "a??b") << "one for each UTF-16 unit";
  EXPECT_EQ(machine_.code_page.ToUtf8("\x80\x81"), "€\xC2\x81");
}

TEST_P(PlatformContract, DigestAndCipherMatchKnownAnswers) {
  const auto digest = machine_.crypto.Md5("abc");
  ASSERT_TRUE(digest.has_value());
  EXPECT_EQ((*digest)[0], 0x90);
  EXPECT_EQ((*digest)[15], 0x72);
  const CryptoProvider provider = machine_.crypto.Acquire("Microsoft Base Cryptographic Provider v1.0");
  EXPECT_NE(provider, 0);
  EXPECT_EQ(machine_.crypto.Acquire("Nobody's Provider"), 0);
  for (const auto& [story, pass_phrase, salt, clear, secret] : kCipherCases) {
    const StreamCipherKey key{pass_phrase, salt};
    const auto hidden = machine_.crypto.StreamCipher(provider, key, clear, CipherDirection::kEncrypt);
    const auto shown = machine_.crypto.StreamCipher(provider, key, secret, CipherDirection::kDecrypt);
    EXPECT_THAT(hidden, Optional(std::string{secret})) << story;
    EXPECT_THAT(shown, Optional(std::string{clear})) << story;
  }
  const StreamCipherKey key{"pass phrase", "salt"};
  EXPECT_EQ(machine_.crypto.StreamCipher(0, key, "x", CipherDirection::kEncrypt), std::nullopt);
  machine_.crypto.Release(provider);
  EXPECT_EQ(machine_.crypto.StreamCipher(provider, key, "x", CipherDirection::kEncrypt), std::nullopt);
}

}  // namespace

}  // namespace ondura
