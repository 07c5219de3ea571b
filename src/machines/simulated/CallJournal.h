#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace ondura {

// Thrown out of a port call when the component is stopped dead. Only a test catches it.
struct PowerCut {
  std::string call;  // the call at which it happened
};

// Whether the call at which the component is stopped still takes effect. A torn write leaves its first
// half; a torn call that writes no bytes has no effect.
enum class CutMoment { kBeforeEffect, kAfterEffect, kTorn };

// A call that changes what others see, or one that only looks.
enum class CallKind { kLook, kChange };

enum class Verdict { kGoOn, kFail, kTear };

// The record of a component's port calls, and the script of what goes wrong with them.
//
// A call is the text "Port.Method argument": "Files.Read C:\data\x.txt", "ProfileFiles.WriteString
// C:\data\UserName.ini [Tolmera] Started=1". A pattern matches a call that begins with it, letter case
// ignored; "*" in it matches any run of characters, and "$" as its last character the call's end.
class CallJournal {
 public:
  static constexpr int kAlways = std::numeric_limits<int>::max();

  // How many calls are kept at most. Asking for calls after more have been made throws, because the answer
  // would be wrong.
  static constexpr std::size_t kLimit = 250'000;

  // The recorded calls, oldest first. Polling and pure conversion (Clock, MessagePump, FileWatch, Crypto,
  // Processes.Wait, Processes.ExitCode, Desktop.FindTopWindow) is left out until RecordAlso names it.
  std::vector<std::string> Calls() const { return CallsMatching(""); }
  std::vector<std::string> CallsMatching(std::string_view pattern) const;
  void ClearCalls();

  // Records what matches from now on, such as "Clock.Sleep".
  void RecordAlso(std::string_view pattern);

  // The next `times` matching calls return their nothing-value without effect.
  void Fail(std::string_view pattern, int times = 1);

  // The next `times` matching writes leave the first half of their bytes and report failure.
  void Tear(std::string_view pattern, int times = 1);

  // Every call that can fail does so with this probability, decided by the seed. 0 ends it.
  void RandomFaults(std::uint64_t seed, double probability);

  // Patterns of faults that no call has met.
  std::vector<std::string> UnfiredFaults() const;
  void ClearFaults() { faults_.clear(); }

  // Throws PowerCut at the `n`-th changing call from now on (from 1).
  void StopDeadAt(std::size_t n, CutMoment moment = CutMoment::kBeforeEffect);
  void StayAlive() { cut_at_ = 0; }

  // How many changing calls have been made since the journal was made or StopDeadAt was called.
  std::size_t ChangingCalls() const { return changing_calls_; }

  // For the recording ports. A call is Begin, its effect as the verdict says, and End; a call that can't
  // fail is Note in place of Begin. `text` may be the method alone where WantsText denies.
  bool WantsText(std::string_view method) const;
  Verdict Begin(std::string_view text, CallKind kind);
  Verdict Note(std::string_view text, CallKind kind);
  void End(std::string_view text, CallKind kind);

 private:
  struct Fault {
    std::string pattern;
    Verdict verdict = Verdict::kFail;
    int times_left = 0;
    bool fired = false;
  };

  bool IsRecorded(std::string_view text) const;
  Verdict Judge(std::string_view text);

  std::vector<std::string> calls_;
  std::size_t dropped_ = 0;
  std::vector<std::string> extra_;
  std::deque<Fault> faults_;
  std::mt19937_64 random_;
  double probability_ = 0;
  std::size_t changing_calls_ = 0;
  std::size_t cut_at_ = 0;
  CutMoment cut_moment_ = CutMoment::kBeforeEffect;
};

// Whether `text` matches `pattern` as the class comment of CallJournal says.
bool MatchesCall(std::string_view pattern, std::string_view text);

}  // namespace ondura
