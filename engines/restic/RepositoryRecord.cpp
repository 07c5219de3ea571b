#include "engines/restic/RepositoryRecord.h"

#include "text/text.h"
#include "util/date_text.h"

namespace ondura::engines {

RepositoryRecord::RepositoryRecord(Client& client, const std::string& work_folder)
    : profiles_(client.machine().profiles), path_(work_folder + "\\Store.ini") {}

std::optional<LocalTime> RepositoryRecord::LastCheck() const { return ParseFixedDate(Read("Check", "Last")); }

int RepositoryRecord::LastPart() const { return ParseInt16(Read("Check", "Part")).value_or(0); }

void RepositoryRecord::NoteCheck(LocalTime time, int part, std::string_view outcome) {
  Write("Check", "Last", FormatDate(kStampPicture, time));
  Write("Check", "Part", std::to_string(part));
  Write("Check", "Outcome", outcome);
}

std::string RepositoryRecord::Read(std::string_view section, std::string_view key) const {
  return profiles_.ReadString({path_, section, key});
}

bool RepositoryRecord::Write(std::string_view section, std::string_view key, std::string_view value) {
  return profiles_.WriteString({path_, section, key}, value);
}

}  // namespace ondura::engines
