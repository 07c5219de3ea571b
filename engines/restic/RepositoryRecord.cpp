#include "engines/restic/RepositoryRecord.h"

#include <charconv>
#include <chrono>

#include "text/text.h"
#include "util/date_text.h"

namespace ondura::engines {

namespace {

constexpr auto kMeetingLasts = std::chrono::minutes{10};
constexpr auto kUsageLasts = std::chrono::days{7};

// A clock that was set back makes a note useless, one that was set ahead old.
bool IsYoung(const std::optional<LocalTime>& time, LocalTime now, LocalTime::duration age) {
  return time && *time <= now && now - *time < age;
}

}  // namespace

RepositoryRecord::RepositoryRecord(Client& client, const std::string& work_folder)
    : profiles_(client.machine().profiles), path_(work_folder + "\\Store.ini") {}

bool RepositoryRecord::WasMetLately(std::string_view address, LocalTime now) const {
  return Read("Contact", "Address") == address &&
         IsYoung(ParseFixedDate(Read("Contact", "Time")), now, kMeetingLasts);
}

void RepositoryRecord::NoteMeeting(std::string_view address, LocalTime now) {
  NoteNewest("");
  Write("Contact", "Address", address);
  Write("Contact", "Time", FormatDate(kStampPicture, now));
}

std::optional<std::uint64_t> RepositoryRecord::Used(LocalTime now) const {
  if (!IsYoung(ParseFixedDate(Read("Usage", "Time")), now, kUsageLasts)) return std::nullopt;
  const std::string text = Read("Usage", "Bytes");
  std::uint64_t bytes = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bytes);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return bytes;
}

void RepositoryRecord::NoteUsed(std::uint64_t bytes, LocalTime now) {
  Write("Usage", "Time", FormatDate(kStampPicture, now));
  Write("Usage", "Bytes", std::to_string(bytes));
}

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
