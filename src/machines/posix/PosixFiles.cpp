#include <unistd.h>

#include <array>
#include <limits>

#include "machines/posix/host_replace.h"
#include "machines/posix/ports.h"

namespace ondura {

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kCopyStepBytes = std::size_t{256} * 1024;

class PosixFileWriter : public FileWriter {
 public:
  explicit PosixFileWriter(Fd file) : file_(std::move(file)) {}

  bool Append(std::string_view bytes) override { return WriteAll(file_, bytes); }

 private:
  Fd file_;
};

bool CopyBytes(const Fd& source, const Fd& target) {
  std::string buffer(kCopyStepBytes, '\0');
  while (true) {
    const ssize_t got = read(source.get(), buffer.data(), buffer.size());
    if (got < 0 && LastError() == HostError::kInterrupted) continue;
    if (got <= 0) return got == 0;
    if (!WriteAll(target, std::string_view{buffer}.substr(0, static_cast<std::size_t>(got)))) return false;
  }
}

class PosixFiles : public Files {
 public:
  PosixFiles(PathMap& paths, LocalZone& zone) : paths_(paths), zone_(zone) {}

  bool Exists(std::string_view path) override { return Status(path).has_value(); }

  std::optional<std::uint64_t> Size(std::string_view path) override {
    const auto status = Status(path);
    return status ? std::optional{static_cast<std::uint64_t>(status->st_size)} : std::nullopt;
  }

  std::optional<LocalTime> Modified(std::string_view path) override {
    const auto status = Status(path);
    return status ? std::optional{zone_.ToLocal(status->st_mtim.tv_sec)} : std::nullopt;
  }

  std::optional<std::string> Read(std::string_view path) override { return ReadHead(path, kNoLimit); }

  // The host's root and the account of this process have every right on the machine in a folder.
  std::optional<std::string> ReadTrusted(std::string_view path) override {
    const Fd file = paths_.OpenExisting(path, O_RDONLY);
    struct stat status {};
    if (!file.valid() || fstat(file.get(), &status) != 0) return std::nullopt;
    const bool is_trusted = status.st_uid == 0 || status.st_uid == geteuid();
    return is_trusted ? ReadRest(file, kNoLimit) : std::nullopt;
  }

  std::optional<std::string> ReadHead(std::string_view path, std::size_t limit_bytes) override {
    const Fd file = paths_.OpenExisting(path, O_RDONLY);
    return file.valid() ? ReadRest(file, limit_bytes) : std::nullopt;
  }

  std::optional<std::string> ReadPart(std::string_view path, std::uint64_t offset,
                                      std::size_t limit_bytes) override {
    const Fd file = paths_.OpenExisting(path, O_RDONLY);
    if (!file.valid() || lseek(file.get(), static_cast<off_t>(offset), SEEK_SET) < 0) return std::nullopt;
    return ReadRest(file, limit_bytes);
  }

  bool Write(std::string_view path, std::string_view bytes, IfPresent if_present) override {
    if (if_present == IfPresent::kReplace) {
      const Fd old = paths_.OpenExisting(path, O_WRONLY);
      if (old.valid()) return ReplaceContent(old, bytes);
    }
    Fd file = OpenNew(path, if_present);
    const bool written = file.valid() && WriteAll(file, bytes);
    return file.Close() && written;
  }

  bool Append(std::string_view path, std::string_view bytes, IfMissing if_missing) override {
    Fd file = OpenEnd(path, if_missing);
    const bool written = file.valid() && WriteAll(file, bytes);
    return file.Close() && written;
  }

  bool Patch(std::string_view path, std::uint64_t offset, std::string_view bytes) override {
    Fd file = paths_.OpenExisting(path, O_WRONLY);
    const bool written =
        file.valid() && lseek(file.get(), static_cast<off_t>(offset), SEEK_SET) >= 0 && WriteAll(file, bytes);
    return file.Close() && written;
  }

  std::unique_ptr<FileWriter> OpenWriter(std::string_view path, IfPresent if_present) override {
    return WriterFor(OpenNew(path, if_present));
  }

  std::unique_ptr<FileWriter> OpenAppender(std::string_view path, IfMissing if_missing) override {
    return WriterFor(OpenEnd(path, if_missing));
  }

  bool Remove(std::string_view path, Removal removal) override {
    const auto host = paths_.FindExisting(path);
    const auto status = host ? StatHost(*host) : std::nullopt;
    if (!status || !S_ISREG(status->st_mode)) return false;
    if (removal == Removal::kPlain && (status->st_mode & S_IWUSR) == 0) return false;
    const HostPlace place{*host};
    return unlinkat(place.folder(), place.name(), 0) == 0;
  }

  bool Copy(std::string_view from, std::string_view to) override {
    const Fd source = paths_.OpenExisting(from, O_RDONLY);
    struct stat status {};
    if (!source.valid() || fstat(source.get(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
    const auto old = paths_.StatExisting(to);
    if (old && old->st_dev == status.st_dev && old->st_ino == status.st_ino) return false;
    Fd target = OpenNew(to, IfPresent::kReplace);
    if (!target.valid()) return false;
    if (!CopyBytes(source, target)) {
      // As on Windows, where a copy that fails leaves no half of itself on a full disk.
      if (!old) Remove(to, Removal::kPlain);
      return false;
    }
    // A program stays one, and what is read-only stays so. Some file systems have no rights to set.
    [[maybe_unused]] const int rights = fchmod(target.get(), status.st_mode & 0777U);
    const std::array<timespec, 2> times{status.st_atim, status.st_mtim};
    futimens(target.get(), times.data());
    return target.Close();
  }

 private:
  std::optional<struct stat> Status(std::string_view path) {
    auto status = paths_.StatExisting(path);
    return status && S_ISREG(status->st_mode) ? status : std::nullopt;
  }

  static std::unique_ptr<FileWriter> WriterFor(Fd file) {
    return file.valid() ? std::make_unique<PosixFileWriter>(std::move(file)) : nullptr;
  }

  Fd OpenNew(std::string_view path, IfPresent if_present) {
    return paths_.OpenForCreation(path, O_WRONLY | (if_present == IfPresent::kFail ? O_EXCL : O_TRUNC));
  }

  Fd OpenEnd(std::string_view path, IfMissing if_missing) {
    Fd file = paths_.OpenExisting(path, O_WRONLY | O_APPEND);
    if (file.valid() || if_missing == IfMissing::kFail || LastError() != HostError::kMissing) return file;
    return paths_.OpenForCreation(path, O_WRONLY | O_APPEND);
  }

  PathMap& paths_;
  LocalZone& zone_;
};

}  // namespace

std::unique_ptr<Files> MakePosixFiles(PathMap& paths, LocalZone& zone) {
  return std::make_unique<PosixFiles>(paths, zone);
}

}  // namespace ondura
