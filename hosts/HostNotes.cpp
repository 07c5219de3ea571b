#include "HostNotes.h"

#include <chrono>

#include "util/date_text.h"

namespace ondura {

namespace {

constexpr std::string_view kFile = "HostState.ini";
constexpr std::string_view kHost = "Host";
constexpr std::string_view kEngineEnded = "EngineEnded";
// Passes are much closer together than that, and the file need not be written for each.
constexpr std::chrono::minutes kTickNoteAge{10};

}  // namespace

std::optional<LocalTime> HostNotes::LastTick() const { return ParseFixedDate(Read(kHost, "LastTick")); }

void HostNotes::NoteTick(LocalTime now) {
  const auto noted = LastTick();
  if (noted && *noted <= now && now - *noted < kTickNoteAge) return;
  Write(kHost, "LastTick", FormatDate(kStampPicture, now));
}

std::string HostNotes::Waits() const { return Read(kHost, "Waits"); }

void HostNotes::NoteWait(std::string_view reason) {
  if (reason != Waits()) Write(kHost, "Waits", reason);
}

std::string HostNotes::EngineEnded(std::string_view user) const { return Read(kEngineEnded, user); }

void HostNotes::NoteEngineEnded(std::string_view user, std::string_view what) {
  if (what != EngineEnded(user)) Write(kEngineEnded, user, what);
}

std::string HostNotes::Read(std::string_view section, std::string_view key) const {
  return machine_.profiles.ReadString({installation_.DataFile(kFile), section, key});
}

void HostNotes::Write(std::string_view section, std::string_view key, std::string_view value) {
  machine_.profiles.WriteString({installation_.DataFile(kFile), section, key}, value);
}

}  // namespace ondura
