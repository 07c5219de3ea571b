#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/posix/posix_machine.h"
#include "profile/ProductConfiguration.h"

namespace ondura {
namespace {

namespace fs = std::filesystem;

// The real host as a real process on a machine in a temporary folder.
class TwinTest : public testing::Test {
 protected:
  TwinTest() {
    fs::create_directories(install_);
    made_ = MakePosixMachine({root_.string(), 1, {}});
    Installation installation;
    const ProductConfiguration configuration(machine(), installation);
    for (const char* key : {"ProductNumber", "ProductName", "ProductInstallationName", "ExeGroup"}) {
      const std::string value = std::string_view{key} == "ProductNumber" ? "3" : "Ondura";
      machine().profiles.WriteString(
          {R"(C:\Program Files\Ondura\Configuration.ini)", "ProductInfo", configuration.StoredForm(key)},
          configuration.StoredForm(value));
    }
  }
  ~TwinTest() override { fs::remove_all(root_); }

  const Machine& machine() { return made_.owner->machine(); }

  bool MachineRuns(std::string_view base_name) {
    const auto table = machine().processes.List(ProcessSource::kModules);
    return std::any_of(table.begin(), table.end(),
                       [&](const ProcessEntry& entry) { return entry.base_name == base_name; });
  }

  bool ComesToRun(std::string_view base_name) {
    for (int look = 0; look < 200 && !MachineRuns(base_name); ++look) {
      std::this_thread::sleep_for(std::chrono::milliseconds{50});
    }
    return MachineRuns(base_name);
  }

  fs::path root_ = fs::temp_directory_path() / ("ondura_twin_" + std::to_string(getpid()));
  fs::path install_ = root_ / "C" / "Program Files" / "Ondura";
  PosixMachineResult made_;
};

TEST_F(TwinTest, IsAProgramOfItsMachineUnderTheConfiguredName) {
  const pid_t twin = fork();
  if (twin == 0) {
    execl(ONDURA_HOST, ONDURA_HOST, "background", "--root", root_.c_str(), nullptr);
    _exit(127);
  }
  EXPECT_TRUE(ComesToRun("OnduraBackground.exe")) << "the service would take over from a twin that lives";
  kill(twin, SIGTERM);
  int status = 0;
  waitpid(twin, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  EXPECT_FALSE(MachineRuns("OnduraBackground.exe"));
}

}  // namespace
}  // namespace ondura
