#pragma once

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ondura {

// The host's error numbers as far as anybody acts on them.
enum class HostError { kNone, kMissing, kPresent, kInterrupted, kBusy, kLink, kOther };

HostError TranslateError(int error_number);

// The error of the last call.
HostError LastError();

// An open file of the host, closed with this object.
class Fd {
 public:
  Fd() = default;
  explicit Fd(int number) : number_(number) {}
  Fd(Fd&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Fd& operator=(Fd&& other) noexcept;
  ~Fd();

  [[nodiscard]] bool valid() const { return number_ >= 0; }
  [[nodiscard]] int get() const { return number_; }

  // False when the host reports at the end that not all was written.
  bool Close();

 private:
  int number_ = -1;
};

// Profiles, logs and dumps are their owner's alone.
inline constexpr mode_t kNewFileMode = 0600;
inline constexpr mode_t kNewFolderMode = 0700;

// A path of the host as the kernel takes it, which refuses more than 4,095 bytes in one call: a longer one is
// a path within an open folder. Both are for the calls that end in "at". The path outlives this object.
class HostPlace {
 public:
  explicit HostPlace(const std::string& path);

  [[nodiscard]] int folder() const;
  [[nodiscard]] const char* name() const { return name_; }

 private:
  Fd folder_;
  const char* name_;
};

// Never waits for the other end of a pipe and is not handed on to started programs.
Fd OpenHost(const std::string& path, int flags, mode_t mode = kNewFileMode);

// The rest of the file, up to `limit_bytes`. std::nullopt for a failure and for what is no regular file.
std::optional<std::string> ReadRest(const Fd& file, std::size_t limit_bytes);

bool WriteAll(const Fd& file, std::string_view bytes);

// std::nullopt where there is nothing. Links are followed.
std::optional<struct stat> StatHost(const std::string& path);

// The same for a link itself.
std::optional<struct stat> StatLink(const std::string& path);

// Where an open file really is, without links. Empty where the host does not say.
std::string RealPathOf(const Fd& file);

// Whether an open file is in `folder` or below, wherever a link to it may be.
bool IsWithin(const Fd& file, const std::string& folder);

// Opens a file whose path may end in a link. A link is followed within `folder` alone: whoever may put one
// into a folder does not choose what this process, which may have more rights, reads or writes elsewhere.
Fd OpenWithin(const std::string& folder, const std::string& path, int flags);

std::optional<struct stat> StatWithin(const std::string& folder, const std::string& path);

// By what two states of a file differ.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = -1;
  std::int64_t modified_ns = 0;
  std::int64_t changed_ns = 0;

  friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

FileStamp StampOf(const struct stat& status);

// True when a later write could carry the same times as this one: the file was written so shortly before
// now that the file system's clock may not have moved on since.
bool IsFresh(const FileStamp& stamp);

// A name in a folder as the host lists it.
struct HostEntry {
  const char* name = nullptr;  // valid during the visit
  unsigned char type = 0;      // DT_REG and so on; DT_UNKNOWN where the file system does not say
};

// Shows every name but "." and ".." until the visitor answers false. False when the folder can't be read.
bool ListHost(const Fd& folder, const std::function<bool(const HostEntry&)>& visit);

}  // namespace ondura
