#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "com_client.h"
#include "util/date_text.h"

namespace ondura_client {
namespace {

namespace fs = std::filesystem;

const fs::path kHome = "C:\\EarlyBound";
const fs::path kInstall = kHome / "Program";
const fs::path kData = kHome / "Data";
const fs::path kUser = kData / "Onduraann";
const fs::path kDocs = kHome / "Docs";

void Write(const fs::path& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }

std::string Read(const fs::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

std::string WideBytes(const std::wstring& text) {
  return "\xFF\xFE" + std::string{reinterpret_cast<const char*>(text.data()), 2 * text.size()};
}

// The form in which the product configuration is kept.
std::string Paired(const std::string& text) {
  std::string pairs;
  for (const char letter : text) pairs.append({static_cast<char>(letter + 2), static_cast<char>(letter + 3)});
  return pairs;
}

void MakeInstallation() {
  fs::remove_all(kHome);
  for (const auto& folder : {kInstall, kUser, kDocs}) fs::create_directories(folder);
  fs::copy_file(ONDURA_ENGINE, kInstall / "CppClsClient.exe");
  Write(kInstall / "UserName.ini", "[Registry]\r\nVirtualPath=" + kData.string() + "\\\r\n");
  std::string product = "[ProductInfo]\r\n";
  for (const auto& [key, value] :
       {std::pair{"ProductNumber", "3"}, std::pair{"ProductName", "Ondura"},
        std::pair{"ProductInstallationName", "Ondura"}, std::pair{"ExeGroup", "Cpp"}}) {
    product += Paired(key) + "=" + Paired(value) + "\r\n";
  }
  Write(kData / "Configuration.ini", product);
  Write(kData / "UserName.ini",
        "[Registry]\r\nDefault User name=cpp\r\nStandbyBackup=0\r\n"
        "[Tolmera]\r\nStandard=0\r\nStarted=0\r\n[ScanType]\r\nDB=0\r\n");
  Write(kData / "userlist.ini", "ann;\r\n");
  Write(kUser / "atbkupfolderlist.txt", WideBytes(kDocs.wstring() + L"\\\r\n"));
  Write(kDocs / "a.txt", "hello");
}

ondura::LocalTime ThisMinute() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return ondura::ToLocalTime({now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute});
}

std::string RecordLine(ondura::LocalTime due) {
  return "1\b\bNightly\b\b" + ondura::FormatDate(ondura::kShortHourPicture, due) +
         "\b\bnow\b\b0\b\bevery day\b\b\b\b0\b\b0\b\b" + ondura::FormatDate("yyyymmddHHmm", due) +
         "\b\b6\b\b1111111\r\n";
}

short StatusNumber(ITransfer& transfer, const wchar_t* key) {
  short value = 0;
  transfer.Trf_ReadOutputValue(Text(L"BackupStatus"), Text(key), &value);
  return value;
}

// Another thread of the host, in an apartment of its own, while the first one runs the job.
class Onlooker {
 public:
  Onlooker() : thread_([this] { Run(); }) {}
  ~Onlooker() { Stop(); }
  Onlooker(const Onlooker&) = delete;
  Onlooker& operator=(const Onlooker&) = delete;

  void Stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
  }
  [[nodiscard]] int calls_during_job() const { return calls_during_job_; }
  [[nodiscard]] bool all_went_well() const { return all_went_well_; }

 private:
  void Run() {
    const Apartment apartment;
    const auto controller = Create<IController>(__uuidof(Controller));
    const auto transfer = Create<ITransfer>(__uuidof(Transfer));
    while (!stop_) {
      Text started;
      Text now;
      const bool went_well = SUCCEEDED(transfer->Trf_ReadUserNameProfile(Text(L"Started"), &started)) &&
                             SUCCEEDED(controller->GetSystemTime(&now));
      if (!went_well) all_went_well_ = false;
      if (started.str() == L"1") ++calls_during_job_;
      Sleep(20);
    }
  }

  std::atomic<bool> stop_ = false;
  std::atomic<bool> all_went_well_ = true;
  std::atomic<int> calls_during_job_ = 0;
  std::thread thread_;
};

TEST(ScheduledJobTest, RunsToItsEndWhileAnotherThreadCallsIn) {
  MakeInstallation();
  const Apartment apartment;
  const auto controller = Create<IController>(__uuidof(Controller));
  const auto transfer = Create<ITransfer>(__uuidof(Transfer));
  ASSERT_TRUE(controller && transfer);
  ASSERT_EQ(controller->cont_InitialSch(Text(kInstall.wstring())), S_OK);
  for (const auto& [key, value] : {std::pair{L"username", L"ann"}, std::pair{L"password", L"secret"},
                                   std::pair{L"serverip", L"localhost"}, std::pair{L"port", L"11905"}}) {
    transfer->Trf_WriteUserProfile(Text(key), Text(value));
  }
  transfer->Trf_WriteUserProfileDefault(Text(L"Tolmera"), Text(L"encpasswordnew"), Text(L"a2V5"));
  const ondura::LocalTime due = ThisMinute();
  Write(kUser / "scheduleData.txt", "0\r\n" + RecordLine(due));

  Onlooker onlooker;
  for (int tick = 0; tick < 3 && StatusNumber(*transfer.Get(), L"Status") != 4; ++tick) {
    Value nothing;
    EXPECT_EQ(controller->Cont_CheckStandardRunning(&nothing), S_OK);
  }
  onlooker.Stop();

  EXPECT_TRUE(onlooker.all_went_well());
  EXPECT_GE(onlooker.calls_during_job(), 2) << "no other thread gets in while a job runs";
  EXPECT_EQ(Read(kData / "Vault" / "ann" / "C" / kDocs.relative_path() / "a.txt"), "hello");
  EXPECT_EQ(StatusNumber(*transfer.Get(), L"RetValue"), 402);
  EXPECT_EQ(Read(kUser / "SchStatus.txt"),
            WideBytes(L"View the log to know the status of the backup job.\r\n"));
  EXPECT_EQ(Read(kUser / "scheduleData.txt"), "0\r\n" + RecordLine(due + std::chrono::days{1}));
  EXPECT_FALSE(fs::is_empty(kUser / "Session"));
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
