#include "engines/restic/restic_messages.h"

#include <nlohmann/json.hpp>

namespace ondura::engines {

namespace {

using Json = nlohmann::json;

// Not an object if the text is not JSON.
Json Parsed(std::string_view text) { return Json::parse(text, nullptr, false); }

std::string Text(const Json& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string{};
}

std::uint64_t Number(const Json& object, const char* name) {
  const auto found = object.find(name);
  return found != object.end() && found->is_number_unsigned() ? found->get<std::uint64_t>() : 0;
}

std::vector<std::string> Texts(const Json& object, const char* name) {
  std::vector<std::string> texts;
  const auto found = object.find(name);
  if (found == object.end() || !found->is_array()) return texts;
  for (const Json& entry : *found) {
    if (entry.is_string()) texts.push_back(entry.get<std::string>());
  }
  return texts;
}

std::optional<ResticItem> ItemOf(const Json& message) {
  const std::string action = Text(message, "action");
  ResticItem item{ResticItem::Action::kNew, Text(message, "item"), Number(message, "data_size_in_repo")};
  if (action == "modified") {
    item.action = ResticItem::Action::kModified;
  } else if (action == "unchanged") {
    item.action = ResticItem::Action::kUnchanged;
  } else if (action != "new") {
    return std::nullopt;
  }
  return item;
}

ResticStatus StatusOf(const Json& message) {
  ResticStatus status{Number(message, "total_files"),
                      Number(message, "total_bytes"),
                      Number(message, "files_done"),
                      Number(message, "bytes_done"),
                      {}};
  auto current = Texts(message, "current_files");
  if (!current.empty()) status.current_file = std::move(current.front());
  return status;
}

}  // namespace

std::optional<ResticMessage> ParseResticMessage(std::string_view line) {
  if (!line.starts_with('{')) return std::nullopt;
  const Json message = Parsed(line);
  if (!message.is_object()) return std::nullopt;
  const std::string type = Text(message, "message_type");
  // The end of the scan is a status with an action, in which the figures are other ones.
  if (type == "status" && !message.contains("action")) return StatusOf(message);
  if (type == "verbose_status") {
    if (auto item = ItemOf(message)) return *std::move(item);
  }
  if (type == "error") return ResticError{Text(message, "item")};
  if (type == "summary") return ResticSummary{Text(message, "snapshot_id")};
  return std::nullopt;
}

std::optional<std::vector<ResticSnapshot>> ParseSnapshots(std::string_view text) {
  const Json list = Parsed(text);
  if (list.is_null()) return std::vector<ResticSnapshot>{};  // restic's list of none
  if (!list.is_array()) return std::nullopt;
  std::vector<ResticSnapshot> snapshots;
  for (const Json& row : list) {
    if (!row.is_object()) return std::nullopt;
    snapshots.push_back(
        {Text(row, "id"), Text(row, "time"), Text(row, "hostname"), Texts(row, "paths"), Texts(row, "tags")});
  }
  return snapshots;
}

std::optional<ResticNode> ParseNode(std::string_view line) {
  if (!line.starts_with('{')) return std::nullopt;
  const Json row = Parsed(line);
  if (!row.is_object() || Text(row, "struct_type") != "node") return std::nullopt;
  return ResticNode{Text(row, "path"), Text(row, "type"), Number(row, "size"), Text(row, "mtime")};
}

std::optional<std::uint64_t> ParseTotalSize(std::string_view text) {
  const Json stats = Parsed(text);
  if (!stats.is_object() || !stats.contains("total_size")) return std::nullopt;
  return Number(stats, "total_size");
}

std::string ParseRepositoryId(std::string_view text) {
  const Json configuration = Parsed(text);
  return configuration.is_object() ? Text(configuration, "id") : std::string{};
}

}  // namespace ondura::engines
