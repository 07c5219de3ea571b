#include "machines/posix/IniStore.h"

#include <limits>

namespace ondura {

namespace {

constexpr std::size_t kRememberedBytesLimit = std::size_t{8} * 1024 * 1024;

// The file that a link leads to, so that a change replaces that and not the link. Empty for a link that leads
// elsewhere or nowhere.
std::string LinkTarget(const std::string& host_path, const std::string& folder) {
  const auto status = StatLink(host_path);
  if (!status || !S_ISLNK(status->st_mode)) return host_path;
  const Fd target = OpenHost(host_path, O_PATH);
  return target.valid() && IsWithin(target, folder) ? RealPathOf(target) : std::string{};
}

}  // namespace

std::shared_ptr<const IniText> IniStore::Load(const std::string& host_path, const std::string& folder) {
  const auto status = StatWithin(folder, host_path);
  if (!status) return nullptr;
  const auto known = parsed_.find(host_path);
  if (known != parsed_.end() && known->second.stamp == StampOf(*status)) return known->second.text;
  const Fd file = OpenWithin(folder, host_path, O_RDONLY);
  struct stat opened {};
  if (!file.valid() || fstat(file.get(), &opened) != 0) return nullptr;
  const FileStamp stamp = StampOf(opened);
  const bool settled = !IsFresh(stamp);
  auto bytes = ReadRest(file, std::numeric_limits<std::size_t>::max());
  if (!bytes) return nullptr;
  const bool is_kept = settled && bytes->size() <= kRememberedBytesLimit / 8;
  auto text = std::make_shared<const IniText>(*std::move(bytes), code_page_,
                                              is_kept ? IniUse::kManyKeys : IniUse::kOneKey);
  if (is_kept) Remember(host_path, {stamp, text});
  return text;
}

void IniStore::Remember(const std::string& host_path, Parsed parsed) {
  const std::size_t size = parsed.text->bytes().size();
  if (remembered_bytes_ + size > kRememberedBytesLimit) {
    parsed_.clear();
    remembered_bytes_ = 0;
  }
  remembered_bytes_ += size;
  parsed_[host_path] = std::move(parsed);
}

bool IniStore::Save(const std::string& host_path, const std::string& folder, const IniText& text,
                    const FolderLock& lock) {
  const std::string target = LinkTarget(host_path, folder);
  if (target.empty()) return false;
  if (WriteBeside(target, text.bytes(), lock, OnDisk::kSoon)) return true;
  // On a full disk a job still has to take back the result of the one before.
  const Fd old = OpenHost(target, O_WRONLY | O_NOFOLLOW);
  return old.valid() && WriteInPlace(old, text.bytes());
}

}  // namespace ondura
