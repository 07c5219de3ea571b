#include "machines/simulated/MemoryDisk.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {
namespace {

constexpr std::uint64_t kRoomyDrive = 100'000'000'000;
// The last character that a folded path can hold; after it the subtree of a folder ends.
constexpr char kBehindAll = '\xFF';

std::string Folded(std::string_view clean_path) { return ToLower(clean_path); }

bool IsUnc(std::string_view clean_path) { return clean_path.starts_with("\\\\"); }

// "C:" or "\\server\share"; empty for a path without a drive.
std::string_view RootOf(std::string_view clean_path) {
  if (IsUnc(clean_path)) {
    const std::size_t share = clean_path.find('\\', 2);
    if (share == std::string_view::npos) return {};
    return clean_path.substr(0, clean_path.find('\\', share + 1));
  }
  const bool has_drive =
      clean_path.size() >= 2 && clean_path[1] == ':' && (clean_path.size() == 2 || clean_path[2] == '\\');
  return has_drive ? clean_path.substr(0, 2) : std::string_view{};
}

std::string_view ParentOf(std::string_view clean_path) {
  return clean_path.substr(0, clean_path.rfind('\\'));
}

std::string_view LeafOf(std::string_view clean_path) { return clean_path.substr(clean_path.rfind('\\') + 1); }

bool IsLegalName(std::string_view name) {
  return !name.empty() && std::none_of(name.begin(), name.end(), [](unsigned char letter) {
    return letter < 32 ||
           std::string_view("<>:\"|?*").find(static_cast<char>(letter)) != std::string_view::npos;
  });
}

// Most paths are; the others may have parts to leave out.
bool IsClean(std::string_view path) {
  return !path.ends_with('\\') && path.find('/') == std::string_view::npos &&
         path.find("\\.") == std::string_view::npos && path.find("\\\\") == std::string_view::npos;
}

bool IsAtOrBelow(std::string_view clean_path, std::string_view folder) {
  const bool ends_a_name = clean_path.size() <= folder.size() || clean_path[folder.size()] == '\\';
  return ends_a_name && StartsWithIgnoringCase(clean_path, folder);
}

}  // namespace

std::string CleanPath(std::string_view path) {
  if (IsClean(path)) return std::string(path);
  std::string clean = path.starts_with("\\\\") ? "\\" : "";
  for (const std::string& name : Split(ReplaceAll(path, "/", "\\"), "\\")) {
    if (name.empty() || name == ".") continue;
    if (name == "..") {
      clean.erase(std::min(clean.rfind('\\'), clean.size()));
    } else {
      if (!clean.empty()) clean += '\\';
      clean += name;
    }
  }
  return clean;
}

MemoryDisk::MemoryDisk(std::function<LocalTime()> now) : now_(std::move(now)) {
  PutDrive("C:\\", DriveKind::kFixed, kRoomyDrive);
}

void MemoryDisk::PutDrive(std::string_view root, DriveKind kind, std::uint64_t free_bytes) {
  const std::string clean = CleanPath(root);
  drives_[Folded(clean)] = {kind, free_bytes, free_bytes};
  if (Find(clean) == nullptr) Make(clean, true);
}

void MemoryDisk::RemoveDrive(std::string_view root) {
  Erase(root);
  drives_.erase(Folded(CleanPath(root)));
}

void MemoryDisk::SetFreeBytes(std::string_view root, std::uint64_t free_bytes) {
  if (Drive* drive = DriveOf(root)) drive->free_bytes = free_bytes;
}

void MemoryDisk::SetTotalBytes(std::string_view root, std::uint64_t total_bytes) {
  if (Drive* drive = DriveOf(root)) drive->total_bytes = total_bytes;
}

void MemoryDisk::PutFile(std::string_view path, std::string_view bytes) {
  const std::string clean = CleanPath(path);
  MakeParents(clean);
  Node* node = FindMutable(clean);
  SetBytes(node != nullptr ? *node : Make(clean, false), {}, bytes);
}

void MemoryDisk::PutFolder(std::string_view path) {
  const std::string clean = CleanPath(path);
  MakeParents(clean);
  if (Find(clean) == nullptr) Make(clean, true);
}

void MemoryDisk::MakeParents(std::string_view clean_path) {
  const std::string_view root = RootOf(clean_path);
  if (Find(root) == nullptr)
    PutDrive(root, IsUnc(root) ? DriveKind::kNetwork : DriveKind::kFixed, kRoomyDrive);
  for (std::size_t at = clean_path.find('\\', root.size() + 1); at != std::string_view::npos;
       at = clean_path.find('\\', at + 1)) {
    if (Find(clean_path.substr(0, at)) == nullptr) Make(clean_path.substr(0, at), true);
  }
}

void MemoryDisk::Erase(std::string_view path) {
  const std::string key = Folded(Resolve(path));
  const auto found = nodes_.find(key);
  if (found == nodes_.end()) return;
  nodes_.erase(nodes_.lower_bound(key + '\\'), nodes_.lower_bound(key + '\\' + kBehindAll));
  EraseNode(found);
}

bool MemoryDisk::SetReadOnly(std::string_view path, bool is_read_only) {
  Node* node = FindMutable(path);
  if (node != nullptr) node->is_read_only = is_read_only;
  return node != nullptr;
}

void MemoryDisk::SetForeign(std::string_view path) {
  if (Node* node = FindMutable(path)) node->is_foreign = true;
}

bool MemoryDisk::SetModified(std::string_view path, LocalTime modified) {
  Node* node = FindMutable(path);
  if (node == nullptr) return false;
  node->modified = modified;
  node->version = ++version_;
  return true;
}

bool MemoryDisk::SetRefusing(std::string_view path, bool refuses) {
  Node* node = FindMutable(path);
  if (node != nullptr) node->refuses_access = refuses;
  return node != nullptr;
}

bool MemoryDisk::SetLeadsOffDrive(std::string_view path) {
  Node* node = FindMutable(path);
  if (node != nullptr) node->leads_off_drive = true;
  return SetRefusing(path, true);
}

void MemoryDisk::SetShortPath(std::string_view path, std::string_view short_path) {
  short_paths_[Folded(CleanPath(path))] = CleanPath(short_path);
}

std::string MemoryDisk::Resolve(std::string_view path) const {
  std::string clean = CleanPath(path);
  // The longest one first: a short name may lie in a folder that has one.
  for (auto entry = short_paths_.rbegin(); entry != short_paths_.rend(); ++entry) {
    const auto& [full, brief] = *entry;
    if (IsAtOrBelow(clean, brief)) return full + clean.substr(brief.size());
  }
  return clean;
}

const MemoryDisk::Node* MemoryDisk::Find(std::string_view path) const {
  const auto found = nodes_.find(Folded(Resolve(path)));
  return found != nodes_.end() ? &found->second : nullptr;
}

MemoryDisk::Node* MemoryDisk::FindMutable(std::string_view path) {
  const auto found = nodes_.find(Folded(Resolve(path)));
  return found != nodes_.end() ? &found->second : nullptr;
}

const MemoryDisk::Node* MemoryDisk::FindReadable(std::string_view path) const {
  const Node* node = Find(path);
  return node != nullptr && !node->is_folder && !node->refuses_access ? node : nullptr;
}

bool MemoryDisk::CanBeMade(std::string_view clean_path) const {
  const std::string_view root = RootOf(clean_path);
  if (root.empty() || clean_path.size() <= root.size() || !IsLegalName(LeafOf(clean_path))) return false;
  const Node* parent = Find(ParentOf(clean_path));
  return parent != nullptr && parent->is_folder;
}

MemoryDisk::Node& MemoryDisk::Make(std::string_view clean_path, bool is_folder) {
  Node node;
  const Node* parent = clean_path == RootOf(clean_path) ? nullptr : Find(ParentOf(clean_path));
  node.path =
      parent == nullptr ? std::string(clean_path) : parent->path + '\\' + std::string(LeafOf(clean_path));
  node.is_folder = is_folder;
  node.modified = now_();
  node.version = ++version_;
  return nodes_[Folded(Resolve(clean_path))] = std::move(node);
}

MemoryDisk::Drive* MemoryDisk::DriveOf(std::string_view path) {
  const auto found = drives_.find(Folded(RootOf(CleanPath(path))));
  return found != drives_.end() ? &found->second : nullptr;
}

// What of `bytes` is written when so many of the file's bytes are given up for them.
std::string_view MemoryDisk::WhatFits(std::string_view path, std::string_view bytes,
                                      std::size_t freed_bytes) {
  const Drive* drive = DriveOf(path);
  const std::uint64_t room = drive == nullptr ? 0 : drive->free_bytes + freed_bytes;
  if (bytes.size() <= room) return bytes;
  const std::string_view half = bytes.substr(0, bytes.size() / 2);
  return full_disk_ == FullDisk::kTearsWrites && half.size() <= room ? half : std::string_view{};
}

// `kept` is a beginning of the node's own bytes.
void MemoryDisk::SetBytes(Node& node, std::string_view kept, std::string_view added) {
  const std::size_t old_size = node.bytes.size();
  node.bytes.resize(kept.size());
  node.bytes.append(added);
  node.modified = now_();
  node.version = ++version_;
  if (Drive* drive = DriveOf(node.path)) {
    drive->free_bytes += old_size;
    drive->free_bytes -= std::min<std::uint64_t>(drive->free_bytes, node.bytes.size());
  }
}

bool MemoryDisk::Store(std::string_view path, std::string_view bytes) {
  const std::string clean = CleanPath(path);
  Node* node = FindMutable(clean);
  if (node == nullptr && !CanBeMade(clean)) return false;
  if (node != nullptr && (node->is_folder || node->is_read_only || node->refuses_access)) return false;
  const std::string_view fitting = WhatFits(clean, bytes, node != nullptr ? node->bytes.size() : 0);
  if (fitting.size() == bytes.size() || !fitting.empty()) {
    SetBytes(node != nullptr ? *node : Make(clean, false), {}, fitting);
  }
  return fitting.size() == bytes.size();
}

bool MemoryDisk::Replace(std::string_view path, std::string_view bytes) {
  const Node* node = Find(path);
  if (node == nullptr || WhatFits(node->path, bytes, node->bytes.size()).size() < bytes.size()) return false;
  return Store(path, bytes);
}

bool MemoryDisk::Extend(std::string_view path, std::string_view bytes) {
  Node* node = FindMutable(path);
  if (node == nullptr || node->is_folder || node->is_read_only || node->refuses_access) return false;
  const std::string_view fitting = WhatFits(node->path, bytes, 0);
  if (!fitting.empty()) SetBytes(*node, node->bytes, fitting);
  return fitting.size() == bytes.size();
}

bool MemoryDisk::Copy(std::string_view from, std::string_view to) {
  const Node* source = FindReadable(from);
  if (source == nullptr || source == Find(to)) return false;
  if (!Store(to, source->bytes)) return false;
  Node* copy = FindMutable(to);
  copy->modified = source->modified;
  copy->is_read_only = source->is_read_only;
  return true;
}

bool MemoryDisk::MakeFolder(std::string_view path) {
  const std::string clean = CleanPath(path);
  if (Find(clean) != nullptr || !CanBeMade(clean)) return false;
  Make(clean, true);
  return true;
}

void MemoryDisk::EraseNode(Nodes::iterator node) {
  if (Drive* drive = DriveOf(node->second.path)) drive->free_bytes += node->second.bytes.size();
  nodes_.erase(node);
}

bool MemoryDisk::RemoveFile(std::string_view path, Removal removal) {
  const auto found = nodes_.find(Folded(Resolve(path)));
  if (found == nodes_.end() || found->second.is_folder || found->second.refuses_access) return false;
  if (found->second.is_read_only && removal == Removal::kPlain) return false;
  EraseNode(found);
  return true;
}

bool MemoryDisk::RemoveFolder(std::string_view path, Removal removal) {
  const Node* folder = Find(path);
  if (folder == nullptr || !folder->is_folder || folder->refuses_access) return false;
  if (folder->path == RootOf(folder->path)) return false;
  bool all_gone = true;
  for (const std::string& child : Children(path)) {
    const bool gone = Find(child)->is_folder ? RemoveFolder(child, removal) : RemoveFile(child, removal);
    all_gone = all_gone && gone;
  }
  if (!all_gone || (folder->is_read_only && removal == Removal::kPlain)) return false;
  EraseNode(nodes_.find(Folded(Resolve(path))));
  return true;
}

std::vector<std::string> MemoryDisk::Children(std::string_view folder) const {
  const std::string prefix = Folded(Resolve(folder)) + '\\';
  std::vector<std::string> children;
  for (auto node = nodes_.lower_bound(prefix); node != nodes_.end() && node->first.starts_with(prefix);) {
    const std::size_t deeper = node->first.find('\\', prefix.size());
    if (deeper == std::string::npos) {
      children.push_back(node->second.path);
      ++node;
    } else {
      node = nodes_.lower_bound(node->first.substr(0, deeper + 1) + kBehindAll);
    }
  }
  if (list_order_ == ListOrder::kReversed) std::reverse(children.begin(), children.end());
  return children;
}

std::vector<std::string> MemoryDisk::FilesUnder(std::string_view folder) const {
  const std::string prefix = Folded(Resolve(folder)) + '\\';
  std::vector<std::string> files;
  for (auto node = nodes_.lower_bound(prefix); node != nodes_.end() && node->first.starts_with(prefix);
       ++node) {
    if (!node->second.is_folder) files.push_back(node->second.path);
  }
  return files;
}

std::vector<std::string> MemoryDisk::Roots() const {
  std::vector<std::string> roots;
  for (const auto& [root, drive] : drives_) {
    if (!IsUnc(root)) roots.push_back(ToUpper(root) + '\\');
  }
  return roots;
}

DriveKind MemoryDisk::KindOf(std::string_view root) const {
  const auto found = drives_.find(Folded(RootOf(CleanPath(root))));
  return found != drives_.end() ? found->second.kind : DriveKind::kUnknown;
}

const MemoryDisk::Drive* MemoryDisk::DriveWith(std::string_view path) const {
  const auto found = drives_.find(Folded(RootOf(CleanPath(path))));
  return found == drives_.end() || Find(path) == nullptr ? nullptr : &found->second;
}

std::optional<std::uint64_t> MemoryDisk::FreeBytes(std::string_view path) const {
  const Drive* drive = DriveWith(path);
  return drive != nullptr ? std::optional{drive->free_bytes} : std::nullopt;
}

std::optional<std::uint64_t> MemoryDisk::TotalBytes(std::string_view path) const {
  const Drive* drive = DriveWith(path);
  return drive != nullptr ? std::optional{drive->total_bytes} : std::nullopt;
}

std::string MemoryDisk::ShortPath(std::string_view path) const {
  const std::string clean = Resolve(path);
  for (auto entry = short_paths_.rbegin(); entry != short_paths_.rend(); ++entry) {
    const auto& [full, brief] = *entry;
    if (IsAtOrBelow(clean, full)) return brief + clean.substr(full.size());
  }
  return std::string(path);
}

}  // namespace ondura
