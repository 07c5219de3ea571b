#include "job/EngineFiles.h"

#include <utility>

#include "engine/engine_files.h"
#include "profile/LightCiphers.h"
#include "text/text.h"

namespace ondura {

namespace {

constexpr int kFirstShortPort = 11810;
constexpr int kLastShortPort = 11812;
constexpr int kFirstPort = 11910;
constexpr int kLastPort = 11930;

std::optional<std::int32_t> ToInt32(std::string_view text) {
  const auto number = ParseInteger(text);
  if (!number || !std::in_range<std::int32_t>(*number)) return std::nullopt;
  return static_cast<std::int32_t>(*number);
}

}  // namespace

EngineFiles::EngineFiles(JobContext& job)
    : job_(job), text_files_(job.machine().files, job.machine().code_page) {}

void EngineFiles::WriteDLLInputFileTempFd(const EngineFileProxy& proxy, std::string_view AsciiRandom) {
  const JobRun& run = job_.state.run;
  LightCiphers ciphers(job_.machine().code_page, job_.machine().pump);
  const std::string path = job_.temp_folder.GetTempFolderPath() + "\\" + std::string{engine_files::kInput};
  job_.machine().files.Remove(path, Removal::kPlain);
  const std::vector<std::string> lines{run.serverip,
                                       run.port,
                                       ciphers.ShiftEncodePlain(run.account.user_name),
                                       ciphers.ShiftEncodePlain(run.account.password),
                                       ciphers.ShiftEncodePlain(run.account.encryption_password),
                                       std::string{AsciiRandom},
                                       std::to_string(proxy.proxyexistsflag),
                                       std::to_string(proxy.proxytype),
                                       proxy.proxyserverip,
                                       proxy.proxyserverport,
                                       proxy.proxyserveruname,
                                       proxy.proxyserverpwd};
  text_files_.Append(path, Join(lines, kLineEnd).append(kLineEnd), Encoding::kCodePage, IfMissing::kFail);
}

EngineFileResult EngineFiles::ResdDLLOutputFileTempFd() {
  return ReadResult(job_.temp_folder.GetTempFolderPath() + "\\" + std::string{engine_files::kOutput});
}

EngineFileResult EngineFiles::ResdDLLOutputFile() {
  return ReadResult(job_.installation().UserFile(engine_files::kOutput));
}

EngineFileResult EngineFiles::ReadResult(const std::string& path) {
  return ReadEngineResultFile(text_files_, path);
}

bool EngineFiles::ReadScheduleStatusFile() {
  const auto status = StatusWordOf(job_.keys.Read(profile_keys::kStatus));
  return status == StatusWord::kStarting || status == StatusWord::kInteractive;
}

void EngineFiles::CallIPPORTCheckFull() { job_.state.run.port = job_.installation().DefaultPort; }

void EngineFiles::Trf_WritePORTNumbers(std::int32_t nCount) {
  std::vector<std::string>& ports = job_.state.memory.ports;
  ports.clear();
  const bool is_short = nCount == 2;
  const int last = is_short ? kLastShortPort : kLastPort;
  for (int port = is_short ? kFirstShortPort : kFirstPort; port <= last; ++port) {
    ports.push_back(std::to_string(port));
  }
}

EngineFileResult ReadEngineResultFile(TextFiles& text_files, const std::string& path) {
  const auto lines = text_files.ReadLines(path, Encoding::kCodePage);
  if (!lines) return {};
  EngineFileResult result{true, std::nullopt, std::nullopt};
  if (!lines->empty()) result.lValue = ToInt32(lines->at(0));
  if (lines->size() > 1) result.strDescrip = lines->at(1);
  return result;
}

}  // namespace ondura
