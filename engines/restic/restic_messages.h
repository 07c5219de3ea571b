#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ondura::engines {

// The messages of `restic backup --json -v`, one a line, as far as the engine uses them.

// How far the run is: what has been read, of what the scan has found so far.
struct ResticStatus {
  std::uint64_t total_files = 0;
  std::uint64_t total_bytes = 0;
  std::uint64_t files_done = 0;
  std::uint64_t bytes_done = 0;
  std::string current_file;  // the first; empty if none is named
};

// One file or folder has been dealt with.
struct ResticItem {
  enum class Action { kNew, kModified, kUnchanged };
  Action action = Action::kNew;
  std::string item;               // "/D/Documents/x"; a folder ends in "/"
  std::uint64_t added_bytes = 0;  // to the store
};

// Something could not be read.
struct ResticError {
  std::string item;
};

struct ResticSummary {
  std::string snapshot_id;
};

using ResticMessage = std::variant<ResticStatus, ResticItem, ResticError, ResticSummary>;

// std::nullopt for a line that is no message, or one of another kind.
std::optional<ResticMessage> ParseResticMessage(std::string_view line);

// One row of `restic snapshots --json`.
struct ResticSnapshot {
  std::string id;
  std::string time;  // RFC 3339
  std::string host;
  std::vector<std::string> paths;
  std::vector<std::string> tags;
};

// Oldest first, as restic lists them. std::nullopt if the text is not such a list.
std::optional<std::vector<ResticSnapshot>> ParseSnapshots(std::string_view text);

// One row of `restic ls --json`.
struct ResticNode {
  std::string path;
  std::string type;  // "file", "dir", "symlink" ...
  std::uint64_t size_bytes = 0;
  std::string modified;  // RFC 3339
};

// std::nullopt for the heading and for any other line.
std::optional<ResticNode> ParseNode(std::string_view line);

// `total_size` of `restic stats --json`.
std::optional<std::uint64_t> ParseTotalSize(std::string_view text);

// `id` of `restic cat config`, which is a hex number. Empty if the text is not a configuration.
std::string ParseRepositoryId(std::string_view text);

}  // namespace ondura::engines
