#include "backupset/Exclusions.h"

#include <algorithm>

#include "text/text.h"
#include "text/utf16.h"

namespace ondura {

namespace {

constexpr std::string_view kExcludedFolders = "atbkupExcludelist.txt";
constexpr std::string_view kExcludedFiles = "atbkupExcludeFilePath.txt";

constexpr std::uint64_t kHashPrime = 0x100000001b3;  // FNV-1a
constexpr char32_t kBehindUnicode = 0x110000;

// The next character in lower case. Bytes that are not text stay apart from all characters.
char32_t TakeLower(std::string_view& text) {
  const auto byte = static_cast<unsigned char>(text.front());
  if (byte < 0x80) {
    text.remove_prefix(1);
    return byte >= 'A' && byte <= 'Z' ? byte + 32U : byte;
  }
  const DecodedCharacter next = DecodeUtf8(text);
  text.remove_prefix(next.bytes);
  return next.valid ? LowerOf(next.character) : kBehindUnicode + byte;
}

std::uint64_t HashOn(std::uint64_t hash, char32_t letter) { return (hash ^ letter) * kHashPrime; }

std::uint64_t HashOn(std::uint64_t hash, std::string_view text) {
  while (!text.empty()) hash = HashOn(hash, TakeLower(text));
  return hash;
}

bool IsSamePath(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    if (TakeLower(left) != TakeLower(right)) return false;
  }
  return left.empty() && right.empty();
}

}  // namespace

void Exclusions::Load() {
  Clear();
  LoadList(kExcludedFolders, ExclusionKind::kFolder, folders_);
  LoadList(kExcludedFiles, ExclusionKind::kFile, files_);
  transfer_.Trf_WriteUserNameRegistryProfile(profile_keys::kExcluded, "0");
}

void Exclusions::Clear() {
  folders_.Clear();
  files_.Clear();
  ClearApplied();
  hit_written_ = false;
}

std::string_view Exclusions::FindExclusion(ExclusionKind nKind, std::string_view sPath) {
  if (nKind == ExclusionKind::kFile) return Hit(files_, files_.Find(HashOn(FolderKey{}.hash, sPath), sPath));
  return Hit(folders_, Extend({}, sPath, 0).exclusion);
}

FolderKey Exclusions::KeyOf(std::string_view folder_text) {
  if (folders_.entries.empty() && files_.entries.empty()) return {};
  return Extend({}, folder_text, 0);
}

std::string_view Exclusions::FindFolder(std::string_view folder_text, const FolderKey& folder,
                                        std::string_view name, FolderKey& key) {
  key = folder;
  if (folders_.entries.empty() && files_.entries.empty()) return {};
  path_.assign(folder_text).append(name).append("\\");
  key = Extend(folder, path_, folder_text.size());
  return Hit(folders_, key.exclusion);
}

std::string_view Exclusions::FindFile(std::string_view folder_text, const FolderKey& folder,
                                      std::string_view name) {
  if (files_.entries.empty()) return {};
  const std::uint64_t hash = HashOn(folder.hash, name);
  if (!files_.by_hash.contains(hash)) return {};
  path_.assign(folder_text).append(name);
  return Hit(files_, files_.Find(hash, path_));
}

void Exclusions::AddAppliedExclusion(std::string_view sPath) {
  if (applied_set_.emplace(sPath).second) applied_.emplace_back(sPath);
}

void Exclusions::ClearApplied() {
  applied_.clear();
  applied_set_.clear();
}

void Exclusions::LoadList(std::string_view file_name, ExclusionKind kind, List& list) {
  const auto lines = text_files_.ReadLines(installation_.UserFile(file_name), Encoding::kUtf16);
  if (!lines) return;
  for (const std::string& line : *lines) {
    if (!line.empty()) list.Add(line, kind == ExclusionKind::kFolder ? WithBackslash(line) : line);
  }
}

// Every start of the path that ends in a backslash may be an excluded folder; of several the one that
// is first in the list counts, as it does for somebody who walks the list.
FolderKey Exclusions::Extend(const FolderKey& key, std::string_view path, std::size_t from) const {
  FolderKey extended = key;
  std::string_view rest = path.substr(from);
  while (!rest.empty()) {
    const char32_t letter = TakeLower(rest);
    extended.hash = HashOn(extended.hash, letter);
    if (letter != U'\\') continue;
    const std::string_view start = path.substr(0, path.size() - rest.size());
    extended.exclusion = std::min(extended.exclusion, folders_.Find(extended.hash, start));
  }
  return extended;
}

std::string_view Exclusions::Hit(const List& list, std::uint32_t entry) {
  if (entry == FolderKey::kNone) return {};
  if (!hit_written_) transfer_.Trf_WriteUserNameRegistryProfile(profile_keys::kExcluded, "1");
  hit_written_ = true;
  return list.entries[entry];
}

void Exclusions::List::Clear() {
  entries.clear();
  paths.clear();
  by_hash.clear();
}

void Exclusions::List::Add(std::string entry, std::string path) {
  const std::uint64_t hash = HashOn(FolderKey{}.hash, path);
  if (Find(hash, path) != FolderKey::kNone) return;
  by_hash.emplace(hash, static_cast<std::uint32_t>(entries.size()));
  entries.push_back(std::move(entry));
  paths.push_back(std::move(path));
}

std::uint32_t Exclusions::List::Find(std::uint64_t hash, std::string_view path) const {
  const auto [first, last] = by_hash.equal_range(hash);
  const auto found =
      std::find_if(first, last, [&](const auto& entry) { return IsSamePath(paths[entry.second], path); });
  return found == last ? FolderKey::kNone : found->second;
}

}  // namespace ondura
