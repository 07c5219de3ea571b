#include "platform/posix/ini_store.h"

#include <sys/file.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <limits>

#include "platform/posix/host_time.h"

namespace ondura {

namespace {

constexpr std::size_t kRememberedBytesLimit = std::size_t{8} * 1024 * 1024;

// A process that was stopped in the middle of a change may not hold all others up for good.
constexpr int kLockTries = 200;
constexpr std::chrono::milliseconds kLockPause{10};

std::string FolderOf(const std::string& host_path) { return host_path.substr(0, host_path.rfind('/')); }

// The file that a link leads to, so that a change replaces that and not the link. Empty for a link that leads
// elsewhere or nowhere.
std::string LinkTarget(const std::string& host_path, const std::string& folder) {
  const auto status = StatLink(host_path);
  if (!status || !S_ISLNK(status->st_mode)) return host_path;
  const Fd target = OpenHost(host_path, O_PATH);
  return target.valid() && IsWithin(target, folder) ? RealPathOf(target) : std::string{};
}

bool WriteNewFile(const std::string& path, const std::string& bytes, const struct stat* old) {
  unlink(path.c_str());
  const mode_t mode = old == nullptr ? kNewFileMode : old->st_mode & 07777U;
  Fd file = OpenHost(path, O_WRONLY | O_CREAT | O_EXCL, mode);
  if (!file.valid()) return false;
  if (old != nullptr) {
    // Only the superuser can give a file away, and some file systems have no rights to set; the change
    // counts more than either.
    [[maybe_unused]] const int owner = fchown(file.get(), old->st_uid, old->st_gid);
    [[maybe_unused]] const int rights = fchmod(file.get(), mode);
  }
  const bool written = WriteAll(file, bytes);
  return file.Close() && written;
}

}  // namespace

FolderLock::FolderLock(const std::string& host_file)
    : folder_(OpenHost(FolderOf(host_file), O_RDONLY | O_DIRECTORY)) {
  for (int i = 0; folder_.valid() && i < kLockTries; ++i) {
    if (flock(folder_.get(), LOCK_EX | LOCK_NB) == 0) return;
    Deadline{kLockPause}.SleepUntil();
  }
}

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

bool IniStore::Save(const std::string& host_path, const std::string& folder, const IniText& text) {
  const std::string target = LinkTarget(host_path, folder);
  if (target.empty()) return false;
  const std::string fresh = target + ".new" + std::to_string(getpid());
  const auto old = StatHost(target);
  if (!WriteNewFile(fresh, text.bytes(), old ? &*old : nullptr) ||
      rename(fresh.c_str(), target.c_str()) != 0) {
    unlink(fresh.c_str());
    return false;
  }
  return true;
}

}  // namespace ondura
