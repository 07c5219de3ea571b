#include "engines/common/ProgressFile.h"

#include <algorithm>

#include "engine/engine_files.h"
#include "text/text.h"

namespace ondura::engines {

namespace {

// More steps than these nobody sees; a run over many files does not pay for them.
constexpr std::uint64_t kSteps = 250;

std::string ClockText(std::int64_t seconds) {
  return Padded(static_cast<int>(seconds / 3600), 2) + ":" + Padded(static_cast<int>(seconds / 60 % 60), 2) +
         ":" + Padded(static_cast<int>(seconds % 60), 2);
}

std::uint64_t Percent(std::uint64_t done, std::uint64_t total) {
  return total == 0 ? 100 : done * 100 / total;
}

std::string KilobyteText(std::uint64_t bytes) { return std::to_string((bytes + 1023) / 1024) + " KB"; }

}  // namespace

ProgressFile::ProgressFile(Client& client)
    : client_(client),
      path_(client.installation().UserFile(engine_files::kProgress)),
      start_(client.machine().clock.Now()) {}

void ProgressFile::Begin(const TransferFigures& total) {
  total_ = total;
  next_shown_ = 0;
  Write("BackupInProgress", "1");
}

void ProgressFile::Show(std::string_view path, const TransferFigures& done) {
  if (done.files < next_shown_) return;
  next_shown_ = done.files + std::max<std::uint64_t>(1, total_.files / kSteps);
  Write("FileName", FileNameOf(path));
  Write("FilePath", path);
  Write("FilePer", "0");
  ShowFigures(done, Percent(done.files, total_.files));
}

void ProgressFile::ShowRun(std::string_view path, const TransferFigures& done, const TransferFigures& total) {
  total_ = total;
  if (!path.empty()) {
    Write("FileName", FileNameOf(path));
    Write("FilePath", path);
  }
  ShowFigures(done, std::min<std::uint64_t>(99, Percent(done.bytes, total.bytes)));
}

void ProgressFile::Finish(const TransferFigures& done) {
  Write("FilePer", "100");
  ShowFigures(done, Percent(done.files, total_.files));
}

void ProgressFile::ShowFigures(const TransferFigures& done, std::uint64_t percent) {
  const std::int64_t seconds = (client_.machine().clock.Now() - start_).count();
  const std::uint64_t left = total_.files - std::min(done.files, total_.files);
  const auto remaining =
      done.files == 0 ? 0 : seconds * static_cast<std::int64_t>(left) / static_cast<std::int64_t>(done.files);
  Write("Percentage", std::to_string(percent));
  Write("Backedup Files", std::to_string(done.files) + " of " + std::to_string(total_.files));
  Write("Total Progress", KilobyteText(done.bytes) + " of " + KilobyteText(total_.bytes));
  Write("Time Elapsed", ClockText(seconds));
  Write("Est Time", ClockText(remaining));
  Write("Tans Rate",
        KilobyteText(done.bytes / static_cast<std::uint64_t>(std::max<std::int64_t>(1, seconds))) + "/s");
}

void ProgressFile::End() { Write("BackupInProgress", "0"); }

void ProgressFile::Write(std::string_view key, std::string_view value) {
  client_.machine().profiles.WriteString({path_, kBackupProgressSection, key}, value);
}

}  // namespace ondura::engines
