#include "platform/posix/spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "platform/posix/host_io.h"

namespace ondura {

namespace {

std::string_view NameOf(std::string_view variable) { return variable.substr(0, variable.find('=')); }

std::vector<std::string> Environment(const std::vector<std::string>& own) {
  std::vector<std::string> all = own;
  for (char* const* variable = environ; *variable != nullptr; ++variable) {
    const bool replaced = std::ranges::any_of(
        own, [&](const std::string& other) { return NameOf(other) == NameOf(*variable); });
    if (!replaced) all.emplace_back(*variable);
  }
  return all;
}

std::vector<char*> Pointers(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// How the new process differs from this one.
class Setup {
 public:
  explicit Setup(const std::string& folder) {
    posix_spawnattr_init(&attributes_);
    posix_spawn_file_actions_init(&actions_);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes_, &none);
    posix_spawnattr_setsigdefault(&attributes_, &all);
    posix_spawnattr_setflags(&attributes_,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions_, folder.c_str());
  }
  ~Setup() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&actions_);
  }
  Setup(const Setup&) = delete;
  Setup& operator=(const Setup&) = delete;

  [[nodiscard]] const posix_spawnattr_t* attributes() const { return &attributes_; }
  [[nodiscard]] const posix_spawn_file_actions_t* actions() const { return &actions_; }

 private:
  posix_spawnattr_t attributes_{};
  posix_spawn_file_actions_t actions_{};
};

}  // namespace

std::optional<pid_t> Spawn(const SpawnRequest& request) {
  std::vector<std::string> arguments = request.arguments;
  arguments.insert(arguments.begin(), request.file);
  std::vector<std::string> environment = Environment(request.environment);
  const Setup setup{request.folder};
  pid_t id = 0;
  const int error = posix_spawn(&id, request.file.c_str(), setup.actions(), setup.attributes(),
                                Pointers(arguments).data(), Pointers(environment).data());
  return error == 0 ? std::optional{id} : std::nullopt;
}

bool RunShellCommand(const std::string& command) {
  const auto id = Spawn({"/bin/sh", {"-c", command}, {}, {}});
  if (!id) return false;
  int status = 0;
  while (waitpid(*id, &status, 0) < 0) {
    if (LastError() != HostError::kInterrupted) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace ondura
