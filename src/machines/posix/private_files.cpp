#include "machines/posix/private_files.h"

#include <sys/stat.h>

#include "machines/posix/host_io.h"

namespace ondura {

namespace {

constexpr mode_t kOfOthers = 077;

}  // namespace

void KeepFilesPrivate() { umask(kOfOthers); }

std::string MendFolderRights(const std::string& root) {
  const auto status = StatHost(root);
  if (!status || (status->st_mode & kOfOthers) == 0) return {};
  if (chmod(root.c_str(), status->st_mode & 07700U) == 0) {
    return "the folder '" + root +
           "' was open to other accounts and is its owner's alone now (0700), as it " + "holds passwords";
  }
  return "the folder '" + root +
         "' is open to other accounts although it holds passwords, and its rights can't " +
         "be changed; as its owner run: chmod 700 '" + root + "'";
}

}  // namespace ondura
