#include "contract.h"
#include "win32_drive.h"
#include "win32_fixture.h"

namespace ondura {

namespace {

// Where Wine's own implementation of the calls differs from Windows.
constexpr std::string_view kNotKeptByWine[] = {
    "a line without a sign is no key",
    "a new key goes behind the last of its section",  // and the blank line after it is lost
    "keys beyond ASCII match in both cases",
    "what has ended can't be ended",
};

class Win32UnderTest : public TestedMachine {
 public:
  const Machine& machine() override { return first_.machine(); }
  const Machine& other() override { return second_.machine(); }

  LaunchRequest PutProgram(std::string_view path, std::chrono::milliseconds lifetime,
                           int exit_code) override {
    LaunchRequest request = PutTool(drive_.In(path), lifetime, exit_code);
    request.file = path;
    request.folder = "C:";
    return request;
  }

  [[nodiscard]] bool Excuses(std::string_view story) const override {
    return IsWine() && std::ranges::find(kNotKeptByWine, story) != std::end(kNotKeptByWine);
  }

 private:
  TemporaryFolder folder_;
  TestDrive drive_{folder_.path()};
  DriveMachine first_{drive_};
  DriveMachine second_{drive_};
};

std::unique_ptr<TestedMachine> MakeWin32UnderTest() { return std::make_unique<Win32UnderTest>(); }

INSTANTIATE_TEST_SUITE_P(Win32, PlatformContract, testing::Values(&MakeWin32UnderTest));

}  // namespace

}  // namespace ondura
