#include "job/StatusKeys.h"

#include "text/text.h"
#include "util/date_text.h"

namespace ondura {

void StatusKeys::Write(const ProfileKey& key, std::string_view value) {
  transfer_.Trf_WriteUserProfileDefault(key, value);
}

std::string StatusKeys::Read(const ProfileKey& key) { return store_.ReadProfileValue(key); }

void StatusKeys::AddFailureDay() {
  const double days = ParseNumber(Read(profile_keys::kBackupFailureDays)).value_or(0);
  Write(profile_keys::kBackupFailureDays, NumberText(days + 1));
}

void StatusKeys::StampEnd() { Write(profile_keys::kSchEndTime, FormatDate(kStampPicture, clock_.Now())); }

void StatusKeys::WriteKilled() {
  WriteStatus(StatusWord::kIdle);
  Write(profile_keys::kProgStatus, "0");
  Write(profile_keys::kCancel, "0");
}

}  // namespace ondura
