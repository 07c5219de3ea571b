#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engines/common/Client.h"
#include "engines/common/candidate.h"

namespace ondura::engines {

// A line of the list: path, size, time, the time an hour later and an hour earlier, separated by "/".
// std::nullopt for a line of another form.
std::optional<Candidate> ParseCompareLine(std::string_view line);

// The lines of one list file that grows, collected as they come.
//
// The list of the job before may still be there when the engine starts, and is replaced under its eyes: a
// file that is shorter than what has been read counts as a new one, and so does one that turns out to begin
// otherwise when it is complete.
class GrowingPart {
 public:
  explicit GrowingPart(std::string path) : path_(std::move(path)) {}

  const std::string& path() const { return path_; }

  // Reads the whole lines after those known. True if the file held anything new.
  bool Follow(Files& files);

  // Reads the file once more up to where it is known. False when it is not what was read: then nothing is
  // known any more.
  bool IsAsRead(Files& files);

  // Takes in the next whole lines, at most about a million bytes. False if there are none.
  bool TakeChunk(Files& files);

  // Where the last whole line that was read ends.
  std::uint64_t end() const { return end_; }

  // The files of all lines since the last call.
  std::vector<Candidate> Take() { return std::exchange(candidates_, {}); }

 private:
  void Forget();

  std::string path_;
  std::uint64_t end_ = 0;  // of the last whole line
  std::uint64_t digest_ = 0;
  std::vector<Candidate> candidates_;
};

struct CompareListPart {
  std::vector<Candidate> files;
  bool is_last = false;
};

// Follows the list files CompareListInput<N>.txt that the job writes while the engine runs.
//
// The job says how far it is by two keys that it writes one after the other:
//
//   CompareListCount   StatusCheckCount
//   "0"                "0"                 nothing is complete
//   "1"                N                   the parts up to N are complete, more are to come
//   "0" or "2"         N, from 1 on        the list is complete and has N parts
//
// Between the two writes the keys show none of these states: at a rollover an end that has not
// come, at the end the old number of parts. So an end counts only when keys and file are the same at two
// looks and no further part exists.
class CompareList {
 public:
  explicit CompareList(Client& client) : client_(client) {}

  // Waits for the end of the list and reads none of it. How many parts it has; std::nullopt as for NextPart.
  std::optional<int> WaitForEnd(const std::function<bool()>& is_over);

  // Shows each file of a list that is complete, a line at a time. False if a part can't be read.
  bool ForEach(int part_count, const std::function<void(const Candidate&)>& visit);

  // The next part, when it is complete. std::nullopt when `is_over` says so, when the part is announced and
  // missing, or when the job has shown no sign of life for ten minutes: neither in the list and its keys nor
  // in the user's trace.
  std::optional<CompareListPart> NextPart(const std::function<bool()>& is_over);

 private:
  enum class Progress { kGrowing, kComplete, kLast };

  struct Look {
    std::string list_count;
    std::string part_count;

    friend bool operator==(const Look&, const Look&) = default;
  };

  // Waits until `part`, the next one, is complete.
  template <typename Part>
  std::optional<Progress> WaitFor(Part& part, const std::function<bool()>& is_over);

  Look ReadKeys();
  [[nodiscard]] bool JobTracedWithin(std::chrono::seconds limit) const;
  [[nodiscard]] Progress ProgressOf(int number, const Look& look) const;
  [[nodiscard]] std::string PathOf(int number) const;

  Client& client_;
  int taken_ = 0;
};

}  // namespace ondura::engines
