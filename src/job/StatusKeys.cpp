#include "job/StatusKeys.h"

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

namespace {

constexpr std::string_view kSection = "BackupStatus";

}  // namespace

void StatusKeys::Write(std::string_view key, std::string_view value) {
  transfer_.Trf_WriteUserProfileDefault(kSection, key, value);
}

std::string StatusKeys::Read(std::string_view key) { return store_.ReadProfileValue(kSection, key); }

void StatusKeys::AddFailureDay() {
  const double days = ParseNumber(Read("BackupFailureDays")).value_or(0);
  Write("BackupFailureDays", NumberText(days + 1));
}

void StatusKeys::StampEnd() { Write("SchEndTime", FormatDate(kStampPicture, clock_.Now())); }

void StatusKeys::WriteKilled() {
  WriteStatus(StatusWord::kIdle);
  Write("ProgStatus", "0");
  Write("Cancel", "0");
}

}  // namespace ondura
