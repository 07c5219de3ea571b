#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Files.h"
#include "platform/machine.h"
#include "profile/ProfileStore.h"
#include "reporting/Trace.h"

namespace ondura {

// A network share: six fields, of which the second names it in traces. Missing fields are empty.
using UNCEntry = std::array<std::string, 6>;

// Folders still to be walked, in the form of the mapped drive and in the other form, at the same places.
struct FolderPairQueues {
  std::deque<std::string> source;
  std::deque<std::string> target;
};

// The table of network shares that a backup set may name. Nothing is connected here: that is the engine's
// or the user interface's.
class NetworkPaths {
 public:
  // A larger count is a damaged one: the table takes this many rows.
  static constexpr std::int64_t kMostEntries = 10'000;

  NetworkPaths(const Machine& machine, const ProfileStore& store, Trace& trace)
      : machine_(machine), store_(store), trace_(trace) {}

  // `UNCCount` of the machine key, as text; empty where it is missing.
  [[nodiscard]] std::string ReadProfilefromRegistryUNCCountSch() const;

  // Fill the table anew from the machine key, and from the shared state. A count that is not a number above 0
  // gives no rows.
  void ReadProfilefromRegistryUNCSch();
  void ReadUNCListfromRegistryProfile();

  // Traces the count of the shared state and fills the table from there.
  void ReadUNCTable();

  // Row n holds entry n + 1.
  [[nodiscard]] const std::vector<UNCEntry>& UNCPath() const { return table_; }
  [[nodiscard]] std::int64_t UNCCount() const { return static_cast<std::int64_t>(table_.size()); }

  // Walks one folder of a share under two names: a compare-list line for each file into `stream`, which is
  // UTF-16, and each subfolder into both queues. Where `sTarget` can't be listed, `sSource` is; lines name
  // `sSource` in both cases. Moves `index`, the place of the folder in the queues, on by one.
  void ScanMappedPair(FileWriter& stream, std::string_view sSource, std::string_view sTarget,
                      FolderPairQueues& queues, std::size_t& index);

 private:
  void SizeTable(std::string_view count);
  static UNCEntry Parse(std::string_view text);

  Machine machine_;
  const ProfileStore& store_;
  Trace& trace_;
  std::vector<UNCEntry> table_;
};

}  // namespace ondura
