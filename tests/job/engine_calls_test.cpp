// The engine's runs outside a job.

#include <gmock/gmock.h>

#include "job/CDummyCall.h"
#include "job/RemoteCall.h"
#include "job_house.h"

namespace ondura {
namespace {

using namespace std::chrono_literals;

class EngineCall : public testing::Test, protected JobHouse {
 protected:
  EngineCall() {
    machine.InstallProgram("C:\\exe\\OxClsClient.exe", [this](ProgramRun& run) {
      parameters = run.parameters();
      folder = run.folder();
      run.After(5s, [this] { SetProfile("BackupStatus", "RetValue", " 402"); });
    });
  }

  std::string parameters = "<no run>";
  std::string folder;
};

TEST_F(EngineCall, TheDummyCallServesAUserOfItsOwnAndLeavesNothingButItsSchedulePath) {
  CDummyCall call(services);
  EXPECT_EQ(call.DoDummycall("OxClsClient.exe"), 402);
  EXPECT_EQ(parameters, " 12<C:\\all data\\Acmeschusername\\Temp\\12_30_00_300d>");
  EXPECT_EQ(folder, "C:\\all data");
  EXPECT_EQ(schedule_file.ScheduleFilePath, "C:\\all data\\Acmeschusername");
  EXPECT_FALSE(ports.folders.Exists("C:\\all data\\Acmeschusername"));
  EXPECT_EQ(machine.Elapsed(), 8s);
  EXPECT_EQ(machine.OpenHandles(), 0U);
}

TEST_F(EngineCall, TheDummyCallsFailureComesWithItsDescription) {
  CDummyCall call(services);
  call.CreateTempFolder("ann", "d");
  const auto answer = [&] {
    const EngineFileResult result = call.ResdDLLOutputFile();
    return std::string{result.bResult ? "good " : "bad "} +
           (result.lValue ? std::to_string(*result.lValue) : "as before") + " " +
           result.strDescrip.value_or("as before");
  };
  EXPECT_EQ(answer(), "bad as before as before");
  machine.PutFile(call.GetTempFolderPath() + "\\DLLOutputInfo.txt", "-403\r\nwrong password\r\n");
  EXPECT_EQ(answer(), "bad -403 wrong password");
  machine.PutFile(call.GetTempFolderPath() + "\\DLLOutput.txt", "402\r\nmore\r\n");
  EXPECT_EQ(answer(), "good 402 as before");
}

TEST_F(EngineCall, ANewInstallationMakesTheEngineRunOnceWithoutBrackets) {
  const std::string left_over = "C:\\all data\\UserName.txt";
  for (const std::string& path : {left_over, UserFile("DLLInput.txt"), UserFile("DLLOutputInfo.txt")}) {
    machine.PutFile(path, "old");
  }
  transfer.Trf_WriteUserProfile("serverip", "10.0.0.9");
  RemoteCall call(job, connection);
  call.CallDummy();
  EXPECT_EQ(parameters, "<no run>");
  machine.PutFile("C:\\all data\\NewInstallation.txt", "");
  call.CallDummy();
  EXPECT_EQ(parameters, " 17");
  EXPECT_EQ(job.state.run.serverip + ":" + job.state.run.port, "first.example:11905");
  EXPECT_EQ(job.state.run.proxy.Proxyset, "0");
  for (const std::string& path : {left_over, UserFile("DLLInput.txt"), UserFile("DLLOutputInfo.txt")}) {
    EXPECT_EQ(Bytes(path), "<none>");
  }
  EXPECT_THAT(Text("ScheduleTraceFile.txt"), testing::HasSubstr("  Finished API_REMOTE  402\r\n"));
  parameters = "<no run>";
  call.CallDummy();
  EXPECT_EQ(parameters, "<no run>");
}

TEST_F(EngineCall, ALoginThatNeverEndsHoldsTheCallForFiveHundredSeconds) {
  machine.PutFile(UserFile("LoginProgress.txt"), "");
  RemoteCall(job, connection).CallDummy();
  EXPECT_EQ(machine.Elapsed(), 500100ms);
}

TEST(ProxyProfile, IsReadAsFarAsItsSwitchesSay) {
  struct Row {
    std::string set, auth, want;
  };
  for (const Row& row :
       {Row{"", "1", "0//"}, Row{"0", "1", "0//"}, Row{"1", "0", "1/proxy/"}, Row{"1", "", "1/proxy/"},
        Row{"1", "1", "1/proxy/me"}, Row{"1", "True", "1/proxy/me"}}) {
    JobHouse house;
    const auto set = [&](std::string_view key, std::string_view value) {
      house.SetProfile("Proxy", house.ciphers.ShiftEncode(key), house.ciphers.ShiftEncode(value));
    };
    set("Proxyset", row.set);
    set("ProxyAuthOn", row.auth);
    set("ProxyName", "proxy");
    set("ProxyUser", "me");
    house.connection.ReadProxy();
    const ProxyProfile& proxy = house.job.state.run.proxy;
    EXPECT_EQ(proxy.Proxyset + "/" + proxy.ProxyName + "/" + proxy.ProxyUser, row.want) << row.auth;
  }
}

}  // namespace
}  // namespace ondura
