#include <algorithm>
#include <nlohmann/json.hpp>

#include "Journal.h"
#include "util/iso_time.h"

namespace ondura {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::pair<JournalEvent, std::string_view>, 6> kEvents = {{
    {JournalEvent::kHostStarted, "host_started"},
    {JournalEvent::kHostLeft, "host_left"},
    {JournalEvent::kHostWaits, "host_waits"},
    {JournalEvent::kBegan, "began"},
    {JournalEvent::kOutcome, "outcome"},
    {JournalEvent::kNotice, "notice"},
}};

void PutText(Json& json, const char* name, std::string_view text) {
  if (!text.empty()) json[name] = text;
}

void PutTime(Json& json, const char* name, const std::optional<LocalTime>& time, Clock& clock) {
  if (time) json[name] = IsoTime(clock, *time);
}

std::string TextOf(const Json& json, const char* name) {
  const auto found = json.find(name);
  return found != json.end() && found->is_string() ? found->get<std::string>() : "";
}

std::optional<LocalTime> TimeOf(const Json& json, const char* name) {
  return ParseIsoTime(TextOf(json, name));
}

template <class Number>
std::optional<Number> NumberOf(const Json& json, const char* name) {
  const auto found = json.find(name);
  if (found == json.end() || !found->is_number_integer()) return std::nullopt;
  return found->get<Number>();
}

void ReadBecause(const Json& json, JournalEntry& entry) {
  const auto found = json.find("because");
  if (found == json.end() || !found->is_object()) return;
  for (const auto& [name, value] : found->items()) {
    if (value.is_string()) entry.because.emplace_back(name, value.get<std::string>());
  }
}

}  // namespace

const OutcomeRow& RowOf(Outcome outcome) {
  return *std::ranges::find(kOutcomes, outcome, &OutcomeRow::outcome);
}

std::string JournalLine(const JournalEntry& entry, Clock& clock) {
  Json json;
  json["at"] = IsoTime(clock, entry.at);
  json["event"] =
      std::ranges::find(kEvents, entry.event, &std::pair<JournalEvent, std::string_view>::first)->second;
  PutText(json, "host", entry.host);
  PutText(json, "user", entry.user);
  PutText(json, "kind", entry.kind);
  PutText(json, "name", entry.name);
  PutTime(json, "due", entry.due, clock);
  if (entry.outcome) json["outcome"] = RowOf(*entry.outcome).word;
  if (entry.code) json["code"] = *entry.code;
  PutText(json, "words", entry.words);
  PutTime(json, "began", entry.began, clock);
  PutTime(json, "ended", entry.ended, clock);
  if (entry.files) json["files"] = *entry.files;
  if (entry.bytes) json["bytes"] = *entry.bytes;
  for (const auto& [name, value] : entry.because) json["because"][name] = value;
  // A name that is no UTF-8 must not cost the line.
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::optional<JournalEntry> EntryOfLine(std::string_view line) {
  const Json json = Json::parse(line, nullptr, false);
  if (!json.is_object()) return std::nullopt;
  const auto at = TimeOf(json, "at");
  const auto event =
      std::ranges::find(kEvents, TextOf(json, "event"), &std::pair<JournalEvent, std::string_view>::second);
  if (!at || event == kEvents.end()) return std::nullopt;
  JournalEntry entry;
  entry.at = *at;
  entry.event = event->first;
  entry.host = TextOf(json, "host");
  entry.user = TextOf(json, "user");
  entry.kind = TextOf(json, "kind");
  entry.name = TextOf(json, "name");
  entry.due = TimeOf(json, "due");
  const auto outcome = std::ranges::find(kOutcomes, TextOf(json, "outcome"), &OutcomeRow::word);
  if (outcome != kOutcomes.end()) entry.outcome = outcome->outcome;
  if (entry.event == JournalEvent::kOutcome && !entry.outcome) return std::nullopt;
  entry.code = NumberOf<int>(json, "code");
  entry.words = TextOf(json, "words");
  entry.began = TimeOf(json, "began");
  entry.ended = TimeOf(json, "ended");
  entry.files = NumberOf<std::uint64_t>(json, "files");
  entry.bytes = NumberOf<std::uint64_t>(json, "bytes");
  ReadBecause(json, entry);
  return entry;
}

}  // namespace ondura
