#include "machines/simulated/CallJournal.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "text/text.h"

namespace ondura {
namespace {

constexpr std::array<std::string_view, 7> kQuiet = {
    "Clock.",         "MessagePump.",       "FileWatch.",           "Crypto.",
    "Processes.Wait", "Processes.ExitCode", "Desktop.FindTopWindow"};

bool SameLetter(char left, char right) {
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  };
  return lower(left) == lower(right);
}

bool MatchesPiece(std::string_view piece, std::string_view text) {
  return text.size() >= piece.size() && std::equal(piece.begin(), piece.end(), text.begin(), SameLetter);
}

bool MatchesFrom(std::string_view pattern, std::string_view text) {
  const std::size_t star = pattern.find('*');
  const std::string_view piece = pattern.substr(0, star);
  if (star == std::string_view::npos) {
    if (!piece.ends_with('$')) return MatchesPiece(piece, text);
    return text.size() + 1 == piece.size() && MatchesPiece(WithoutLast(piece), text);
  }
  if (!MatchesPiece(piece, text)) return false;
  for (std::size_t at = piece.size(); at <= text.size(); ++at) {
    if (MatchesFrom(pattern.substr(star + 1), text.substr(at))) return true;
  }
  return false;
}

}  // namespace

bool MatchesCall(std::string_view pattern, std::string_view text) { return MatchesFrom(pattern, text); }

std::vector<std::string> CallJournal::CallsMatching(std::string_view pattern) const {
  if (dropped_ > 0) throw std::runtime_error("more calls were made than the journal keeps; clear it earlier");
  std::vector<std::string> matching;
  std::copy_if(calls_.begin(), calls_.end(), std::back_inserter(matching),
               [&](const std::string& call) { return MatchesCall(pattern, call); });
  return matching;
}

void CallJournal::ClearCalls() {
  calls_.clear();
  dropped_ = 0;
}

void CallJournal::RecordAlso(std::string_view pattern) { extra_.emplace_back(pattern); }

void CallJournal::Fail(std::string_view pattern, int times) {
  faults_.push_back({std::string(pattern), Verdict::kFail, times, false});
}

void CallJournal::Tear(std::string_view pattern, int times) {
  faults_.push_back({std::string(pattern), Verdict::kTear, times, false});
}

void CallJournal::RandomFaults(std::uint64_t seed, double probability) {
  random_.seed(seed);
  probability_ = probability;
}

std::vector<std::string> CallJournal::UnfiredFaults() const {
  std::vector<std::string> patterns;
  for (const Fault& fault : faults_) {
    if (!fault.fired) patterns.push_back(fault.pattern);
  }
  return patterns;
}

void CallJournal::StopDeadAt(std::size_t n, CutMoment moment) {
  changing_calls_ = 0;
  cut_at_ = n;
  cut_moment_ = moment;
}

bool CallJournal::IsRecorded(std::string_view text) const {
  const auto matches = [&](std::string_view pattern) { return MatchesCall(pattern, text); };
  return std::none_of(kQuiet.begin(), kQuiet.end(), matches) ||
         std::any_of(extra_.begin(), extra_.end(), matches);
}

bool CallJournal::WantsText(std::string_view method) const {
  return !faults_.empty() || !extra_.empty() || IsRecorded(method);
}

Verdict CallJournal::Note(std::string_view text, CallKind kind) {
  if (IsRecorded(text)) {
    if (calls_.size() < kLimit) {
      calls_.emplace_back(text);
    } else {
      ++dropped_;
    }
  }
  if (kind == CallKind::kLook || ++changing_calls_ != cut_at_) return Verdict::kGoOn;
  if (cut_moment_ == CutMoment::kBeforeEffect) {
    StayAlive();
    throw PowerCut{std::string(text)};
  }
  return cut_moment_ == CutMoment::kTorn ? Verdict::kTear : Verdict::kGoOn;
}

Verdict CallJournal::Begin(std::string_view text, CallKind kind) {
  const Verdict verdict = Note(text, kind);
  return verdict == Verdict::kGoOn ? Judge(text) : verdict;
}

Verdict CallJournal::Judge(std::string_view text) {
  for (Fault& fault : faults_) {
    if (fault.times_left <= 0 || !MatchesCall(fault.pattern, text)) continue;
    if (fault.times_left != kAlways) --fault.times_left;
    fault.fired = true;
    return fault.verdict;
  }
  if (probability_ <= 0) return Verdict::kGoOn;
  return std::uniform_real_distribution<double>(0, 1)(random_) < probability_ ? Verdict::kFail
                                                                              : Verdict::kGoOn;
}

void CallJournal::End(std::string_view text, CallKind kind) {
  if (kind == CallKind::kLook || cut_at_ == 0 || changing_calls_ < cut_at_) return;
  StayAlive();
  throw PowerCut{std::string(text)};
}

}  // namespace ondura
