#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "machines/posix/host_io.h"

namespace ondura {

// Where the machine's paths lie on the host.
//
// Names match whatever their letter case. The form as it is given is tried first, so that a path in its own
// letter case costs nothing; folders that had to be searched are remembered until they change.
class PathMap {
 public:
  // `drives` maps letters to folders of the host; all others are folders of the root. The root is absolute.
  PathMap(std::string root, std::map<char, std::string> drives);

  [[nodiscard]] const std::string& root() const { return root_; }

  // The folder of a drive, whether it exists or not.
  [[nodiscard]] std::string DriveFolder(char letter) const;

  // The host's form of a path in the letter case as given. Empty for a path that names no drive.
  [[nodiscard]] std::string ToHost(std::string_view path) const;

  // True for "C:" and what else names a drive alone.
  [[nodiscard]] bool IsDriveRoot(std::string_view path) const;

  // What is there under the path in another letter case, for a path that is not there as given.
  std::optional<std::string> FindOtherCase(std::string_view path);

  // What is there under the path, in whatever letter case.
  std::optional<std::string> FindExisting(std::string_view path);

  // FindExisting, or else the place where the path can be made. Empty for a path that names no drive.
  std::string ForCreation(std::string_view path);

  // To be told at once of a file or folder that was made at a place of ForCreation: without it each one that
  // is made in a folder costs a look at all that are in there.
  void NoteMade(const std::string& host_path);

  // The file opened, or an invalid descriptor. A file that a link leads to counts where it is on the same
  // drive; folders may be anywhere.
  Fd OpenExisting(std::string_view path, int flags);
  std::optional<struct stat> StatExisting(std::string_view path);

  // The same, and made where it is missing.
  Fd OpenForCreation(std::string_view path, int flags);

  // The folder of the drive that the path names; empty for a path that names none.
  [[nodiscard]] std::string DriveFolderOf(std::string_view path) const;

  // The path of something in the root folder. std::nullopt for what lies elsewhere.
  [[nodiscard]] std::optional<std::string> UnderRoot(std::string_view host_path) const;

  // The machine's form of a host path on the drive that `path` names.
  [[nodiscard]] std::string OnDriveOf(std::string_view path, std::string_view host_path) const;

 private:
  // Folded name to name on the host.
  using Names = std::unordered_map<std::string, std::string>;

  using Instant = std::chrono::steady_clock::time_point;

  struct Listing {
    FileStamp stamp;
    bool settled = false;  // a change from now on shows in the stamp
    Instant read_at;
    Instant trusted_until;  // though not settled: the last changes were this machine's own
    std::shared_ptr<Names> names;
  };

  struct Parts {
    std::string folder;  // of the drive
    std::vector<std::string_view> names;
    bool is_mapped = false;  // its folder is not the machine's own, and others may put links into it
  };

  [[nodiscard]] std::optional<Parts> Split(std::string_view path) const;
  static std::string Joined(const Parts& parts, std::size_t count);
  std::string PlaceOfMissing(std::string_view path);
  std::optional<std::string> SearchParent(const Parts& parts, std::size_t count);
  std::optional<std::string> Search(const Parts& parts, std::size_t count);
  std::shared_ptr<const Names> NamesIn(const std::string& host_folder);
  static std::shared_ptr<Names> ReadNames(const std::string& host_folder);
  void Remember(const std::string& host_folder, Listing listing);

  std::string root_;
  std::map<char, std::string> drives_;
  std::unordered_map<std::string, Listing> listings_;
  std::size_t remembered_names_ = 0;
};

}  // namespace ondura
