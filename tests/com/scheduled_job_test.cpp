#include <gtest/gtest.h>
#include <process.h>

#include <atomic>
#include <thread>

#include "com_client.h"

namespace ondura_client {
namespace {

// Sets the scene of tests/three_backends, where ann is the first of the users who are due.
bool PrepareScenario() {
  return _spawnl(_P_WAIT, ONDURA_SCENARIO, "scenario", "prepare", ONDURA_ENGINE, ONDURA_DATABASE_MANAGER,
                 nullptr) == 0;
}

TEST(ScheduledJobTest, RunsToItsEndWhileAnotherThreadCallsIn) {
  ASSERT_TRUE(PrepareScenario());
  const Apartment apartment;
  const auto controller = Create<IController>(__uuidof(Controller));
  const auto transfer = Create<ITransfer>(__uuidof(Transfer));
  ASSERT_TRUE(controller && transfer);
  ASSERT_EQ(controller->cont_InitialSch(Text(L"C:\\Scenario\\Install\\")), S_OK);

  // In an apartment of its own, while the first thread runs the job.
  std::atomic<bool> all_went_well = true;
  std::atomic<int> calls_during_job = 0;
  std::jthread onlooker([&](const std::stop_token& stop) {
    const Apartment own;
    const auto own_controller = Create<IController>(__uuidof(Controller));
    const auto own_transfer = Create<ITransfer>(__uuidof(Transfer));
    for (; !stop.stop_requested(); Sleep(20)) {
      Text started;
      Text now;
      const bool went_well = SUCCEEDED(own_transfer->Trf_ReadUserNameProfile(Text(L"Started"), &started)) &&
                             SUCCEEDED(own_controller->GetSystemTime(&now));
      if (!went_well) all_went_well = false;
      if (started.str() == L"1") ++calls_during_job;
    }
  });
  Value nothing;
  EXPECT_EQ(controller->Cont_CheckStandardRunning(&nothing), S_OK);
  onlooker.request_stop();
  onlooker.join();

  EXPECT_TRUE(all_went_well);
  EXPECT_GE(calls_during_job, 2) << "no other thread gets in while a job runs";
  short result = 0;
  transfer->Trf_ReadOutputValue(Text(L"BackupStatus"), Text(L"RetValue"), &result);
  EXPECT_EQ(result, 402);
}

// Serves the calls of other apartments until `event` is set; false when it is not set in time.
bool ServeUntil(HANDLE event) {
  constexpr DWORD kLimitMs = 20'000;
  DWORD woken_by = WAIT_OBJECT_0 + 1;
  while (woken_by == WAIT_OBJECT_0 + 1) {
    woken_by = MsgWaitForMultipleObjects(1, &event, FALSE, kLimitMs, QS_ALLINPUT);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  return woken_by == WAIT_OBJECT_0;
}

// Another thread's object, called through what the type library describes.
TEST(ScheduledJobTest, AnObjectServesAnotherApartment) {
  const Apartment apartment;
  const auto controller = Create<IController>(__uuidof(Controller));
  ASSERT_TRUE(controller);
  ComPtr<IStream> stream;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(__uuidof(IController), controller.Get(), &stream), S_OK);
  const HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  Text size;
  HRESULT result = E_FAIL;
  std::thread other([&] {
    {
      const Apartment own;
      ComPtr<IController> proxy;
      result = CoGetInterfaceAndReleaseStream(stream.Detach(), __uuidof(IController), &proxy);
      if (proxy) result = proxy->GetProperSizeValue(123456, &size);
    }
    SetEvent(done);
  });
  EXPECT_TRUE(ServeUntil(done));
  other.join();
  CloseHandle(done);
  EXPECT_EQ(result, S_OK);
  EXPECT_EQ(size.str(), L"120.5 KB");
}

}  // namespace
}  // namespace ondura_client
