#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engines/common/Store.h"
#include "engines/common/SystemView.h"
#include "engines/restic/ResticProgram.h"
#include "engines/restic/restic_messages.h"

namespace ondura::engines {

// One run of `restic backup`: what it is given, and what it says while it runs.
class ResticBackup {
 public:
  // `work_folder` takes the lists that restic reads, without a backslash at its end. No limit on the space
  // where `space_left` is std::nullopt.
  ResticBackup(Client& client, ResticProgram& program, SystemView& view, const std::string& work_folder,
               TransferJournal& journal, StopRequests& stop);

  // Runs restic with the arguments that mark and find the user's snapshots. `parent` is the snapshot to
  // compare with; empty for none.
  EngineResult Run(const TransferRequest& request, const std::vector<std::string>& marks,
                   const std::string& parent, std::optional<std::uint64_t> space_left);

  // True once restic has looked at files: what it sends from then on is in the store.
  [[nodiscard]] bool HasBegun() const { return has_begun_; }

  // The snapshot that was made; empty if none was.
  [[nodiscard]] const std::string& snapshot_id() const { return snapshot_id_; }

  // True when restic no longer knows the parent, and no file has been looked at.
  [[nodiscard]] bool ParentIsGone() const { return parent_is_gone_; }

  // What restic said when it failed. Empty if it did not.
  [[nodiscard]] const std::string& words() const { return words_; }

 private:
  std::vector<std::string> Targets(const TransferRequest& request);
  void AddItem(const TransferRequest& request, const std::string& item, std::vector<std::string>& targets);
  void AddTarget(const std::string& path, std::vector<std::string>& targets);
  void AddWalked(const TransferRequest& request, std::vector<std::string>& targets);
  bool WriteTargets(const std::vector<std::string>& targets);
  bool WriteExclusions(const Selection& selection);
  [[nodiscard]] static bool NeedsWalk(const Selection& selection);

  void Take(const PipedLine& line);
  void Take(const ResticStatus& status);
  void Take(const ResticItem& item);
  void Take(const ResticError& error);
  void Take(const ResticSummary& summary) { snapshot_id_ = summary.snapshot_id; }
  void Fail(const std::string& path, std::string_view reason);

  bool IsOver();
  bool HoldAgainst(CompareList& list, int part_count);
  EngineResult ResultOf(const ResticEnd& end);

  Client& client_;
  ResticProgram& program_;
  SystemView& view_;
  TransferJournal& journal_;
  StopRequests& stop_;
  std::string targets_path_;
  std::string exclusions_path_;

  std::optional<int> part_count_;  // of the compare list, once it has ended
  bool notes_paths_ = false;
  std::vector<std::uint64_t> seen_;  // digests of the paths that restic has reported, with the compare list
  std::unordered_set<std::string> failed_;
  std::uint64_t added_bytes_ = 0;
  std::optional<std::uint64_t> space_left_;
  std::string snapshot_id_;
  bool has_begun_ = false;
  bool is_full_ = false;
  bool parent_is_gone_ = false;
  std::string words_;
};

}  // namespace ondura::engines
