#include "machines/posix/PathMap.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "machines/posix/host_names.h"

namespace ondura {

namespace {

// About ten megabytes of names. A folder of more is remembered alone.
constexpr std::size_t kRememberedNamesLimit = 100'000;

// What another process makes in a folder at the very moment of an own change is seen after this time at
// the latest. Shorter, and a folder that fills up is read again and again.
constexpr std::chrono::milliseconds kOwnChangesTrusted{200};

constexpr std::string_view kLongPathPrefix = R"(\\?\)";

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

// 0 for a character that is not a letter.
char DriveLetter(char c) {
  if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
  return c >= 'A' && c <= 'Z' ? c : '\0';
}

std::string_view WithoutPrefix(std::string_view path) {
  return path.starts_with(kLongPathPrefix) ? path.substr(kLongPathPrefix.size()) : path;
}

void AddPart(std::vector<std::string_view>& names, std::string_view part) {
  if (part.empty() || part == ".") return;
  if (part != "..") {
    names.push_back(part);
  } else if (!names.empty()) {
    names.pop_back();
  }
}

// What is too deep for the host to name it is not where a link leads.
bool StaysWithin(const Fd& file, const std::string& folder) {
  return RealPathOf(file).empty() || IsWithin(file, folder);
}

std::string ToWindowsForm(char letter, std::string_view host_rest) {
  std::string path{letter};
  path += ":";
  std::string scratch;
  while (!host_rest.empty()) {
    const std::size_t end = std::min(host_rest.find('/'), host_rest.size());
    if (end > 0) path.append("\\").append(WindowsName(host_rest.substr(0, end), scratch));
    host_rest.remove_prefix(std::min(end + 1, host_rest.size()));
  }
  return path.size() == 2 ? path + "\\" : path;
}

}  // namespace

PathMap::PathMap(std::string root, std::map<char, std::string> drives)
    : root_(std::move(root)), drives_(std::move(drives)) {}

std::string PathMap::DriveFolder(char letter) const {
  const auto mapped = drives_.find(letter);
  return mapped != drives_.end() ? mapped->second : root_ + "/" + letter;
}

std::optional<PathMap::Parts> PathMap::Split(std::string_view path) const {
  path = WithoutPrefix(path);
  if (path.size() < 2 || path[1] != ':' || DriveLetter(path[0]) == '\0') return std::nullopt;
  if (path.find('\0') != std::string_view::npos) return std::nullopt;
  const char letter = DriveLetter(path[0]);
  Parts parts{DriveFolder(letter), {}, drives_.contains(letter)};
  path.remove_prefix(2);
  while (!path.empty()) {
    std::size_t end = 0;
    while (end < path.size() && !IsSeparator(path[end])) ++end;
    AddPart(parts.names, path.substr(0, end));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

std::string PathMap::Joined(const Parts& parts, std::size_t count) {
  std::string host = parts.folder;
  for (std::size_t i = 0; i < count; ++i) {
    host += '/';
    AppendHostName(host, parts.names[i]);
  }
  return host;
}

std::string PathMap::ToHost(std::string_view path) const {
  const auto parts = Split(path);
  return parts ? Joined(*parts, parts->names.size()) : std::string{};
}

bool PathMap::IsDriveRoot(std::string_view path) const {
  const auto parts = Split(path);
  return parts && parts->names.empty();
}

// The first `count` names in whatever letter case; their form as given is known to be missing.
std::optional<std::string> PathMap::Search(const Parts& parts, std::size_t count) {
  if (count == 0) return std::nullopt;
  const auto parent = SearchParent(parts, count);
  if (!parent) return std::nullopt;
  const auto names = NamesIn(*parent);
  if (!names) return std::nullopt;
  const auto found = names->find(FoldedName(parts.names[count - 1]));
  return found == names->end() ? std::nullopt : std::optional{*parent + "/" + found->second};
}

std::optional<std::string> PathMap::SearchParent(const Parts& parts, std::size_t count) {
  std::string as_given = Joined(parts, count - 1);
  if (NamesIn(as_given)) return as_given;
  return Search(parts, count - 1);
}

std::optional<std::string> PathMap::FindOtherCase(std::string_view path) {
  const auto parts = Split(path);
  return parts ? Search(*parts, parts->names.size()) : std::nullopt;
}

std::optional<std::string> PathMap::FindExisting(std::string_view path) {
  std::string host = ToHost(path);
  if (host.empty()) return std::nullopt;
  if (StatHost(host)) return host;
  return FindOtherCase(path);
}

std::string PathMap::ForCreation(std::string_view path) {
  if (auto existing = FindExisting(path)) return *std::move(existing);
  return PlaceOfMissing(path);
}

std::string PathMap::PlaceOfMissing(std::string_view path) {
  const auto parts = Split(path);
  if (!parts || parts->names.empty()) return {};
  const auto parent = SearchParent(*parts, parts->names.size());
  if (!parent) return Joined(*parts, parts->names.size());
  std::string host = *parent + "/";
  AppendHostName(host, parts->names.back());
  return host;
}

Fd PathMap::OpenExisting(std::string_view path, int flags) {
  const auto parts = Split(path);
  if (!parts) return Fd{};
  const auto open = [&](const std::string& host) {
    Fd file = (flags & O_DIRECTORY) != 0 ? OpenHost(host, flags) : OpenWithin(parts->folder, host, flags);
    if (!parts->is_mapped || !file.valid() || StaysWithin(file, parts->folder)) return file;
    errno = EACCES;
    return Fd{};
  };
  Fd file = open(Joined(*parts, parts->names.size()));
  if (file.valid() || LastError() != HostError::kMissing) return file;
  const auto other = Search(*parts, parts->names.size());
  return other ? open(*other) : Fd{};
}

std::optional<struct stat> PathMap::StatExisting(std::string_view path) {
  const auto parts = Split(path);
  if (!parts) return std::nullopt;
  if (auto status = StatWithin(parts->folder, Joined(*parts, parts->names.size()))) return status;
  if (LastError() != HostError::kMissing) return std::nullopt;
  const auto other = Search(*parts, parts->names.size());
  return other ? StatWithin(parts->folder, *other) : std::nullopt;
}

Fd PathMap::OpenForCreation(std::string_view path, int flags) {
  const std::string drive = DriveFolderOf(path);
  if (const auto existing = FindExisting(path)) return OpenWithin(drive, *existing, flags | O_CREAT);
  const std::string host = PlaceOfMissing(path);
  if (host.empty()) return Fd{};
  Fd file = OpenWithin(drive, host, flags | O_CREAT);
  if (file.valid()) NoteMade(host);
  return file;
}

std::string PathMap::DriveFolderOf(std::string_view path) const {
  const auto parts = Split(path);
  return parts ? parts->folder : std::string{};
}

std::optional<std::string> PathMap::UnderRoot(std::string_view host_path) const {
  if (!host_path.starts_with(root_)) return std::nullopt;
  host_path.remove_prefix(root_.size());
  const bool on_drive = host_path.size() > 3 && host_path[0] == '/' && host_path[2] == '/' &&
                        DriveLetter(host_path[1]) == host_path[1];
  if (!on_drive) return std::nullopt;
  return ToWindowsForm(host_path[1], host_path.substr(2));
}

std::string PathMap::OnDriveOf(std::string_view path, std::string_view host_path) const {
  const char letter = DriveLetter(WithoutPrefix(path)[0]);
  return ToWindowsForm(letter, host_path.substr(DriveFolder(letter).size()));
}

std::shared_ptr<const PathMap::Names> PathMap::NamesIn(const std::string& host_folder) {
  const auto status = StatHost(host_folder);
  if (!status || !S_ISDIR(status->st_mode)) return nullptr;
  const FileStamp stamp = StampOf(*status);
  const Instant now = std::chrono::steady_clock::now();
  const auto known = listings_.find(host_folder);
  if (known != listings_.end() && known->second.stamp == stamp &&
      (known->second.settled || now < known->second.trusted_until)) {
    return known->second.names;
  }
  const bool settled = !IsFresh(stamp);
  auto names = ReadNames(host_folder);
  if (names) Remember(host_folder, {stamp, settled, now, {}, names});
  return names;
}

void PathMap::Remember(const std::string& host_folder, Listing listing) {
  const std::size_t added = listing.names->size() + 1;
  if (const auto old = listings_.find(host_folder); old != listings_.end()) {
    remembered_names_ -= std::min(remembered_names_, old->second.names->size() + 1);
    listings_.erase(old);
  }
  if (remembered_names_ + added > kRememberedNamesLimit) {
    listings_.clear();
    remembered_names_ = 0;
  }
  remembered_names_ += added;
  listings_[host_folder] = std::move(listing);
}

// The look of ForCreation found the listing up to date or made it so.
void PathMap::NoteMade(const std::string& host_path) {
  const std::size_t slash = host_path.rfind('/');
  const auto known = listings_.find(host_path.substr(0, slash));
  if (known == listings_.end()) return;
  const auto status = StatHost(known->first);
  if (!status) return;
  Listing& listing = known->second;
  const std::string name = host_path.substr(slash + 1);
  std::string scratch;
  remembered_names_ +=
      listing.names->try_emplace(FoldedName(WindowsName(name, scratch)), name).second ? 1 : 0;
  listing.stamp = StampOf(*status);
  listing.settled = false;
  listing.trusted_until = listing.read_at + kOwnChangesTrusted;
}

std::shared_ptr<PathMap::Names> PathMap::ReadNames(const std::string& host_folder) {
  const Fd folder = OpenHost(host_folder, O_RDONLY | O_DIRECTORY);
  auto names = std::make_shared<Names>();
  std::string scratch;
  const bool listed = folder.valid() && ListHost(folder, [&](const HostEntry& entry) {
                        const std::string name = entry.name;
                        auto [at, is_new] = names->try_emplace(FoldedName(WindowsName(name, scratch)), name);
                        // Of two names that differ in letter case alone the same one answers every time.
                        if (!is_new && name < at->second) at->second = name;
                        return true;
                      });
  return listed ? names : nullptr;
}

}  // namespace ondura
