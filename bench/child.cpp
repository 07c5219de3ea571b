#include "bench/child.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>

extern char** environ;

namespace ondura {

namespace {

constexpr double kKibibyte = 1024;

std::string ReadAll(int pipe) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t count = read(pipe, block.data(), block.size());
    if (count <= 0) return text;
    text.append(block.data(), static_cast<std::size_t>(count));
  }
}

// What the child's standard streams are; the reader's end of the pipe stays with us.
class Streams {
 public:
  explicit Streams(const std::string& output_file) {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    if (!output_file.empty()) {
      posix_spawn_file_actions_addopen(&actions_, STDOUT_FILENO, output_file.c_str(),
                                       O_CREAT | O_TRUNC | O_WRONLY, 0644);
    } else if (pipe2(ends_.data(), O_CLOEXEC) == 0) {
      posix_spawn_file_actions_adddup2(&actions_, ends_[1], STDOUT_FILENO);
    }
  }
  ~Streams() {
    posix_spawn_file_actions_destroy(&actions_);
    CloseWriter();
    if (ends_[0] >= 0) close(ends_[0]);
  }
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

  const posix_spawn_file_actions_t* actions() const { return &actions_; }
  std::string Output() {
    CloseWriter();
    return ends_[0] >= 0 ? ReadAll(ends_[0]) : std::string{};
  }

 private:
  void CloseWriter() {
    if (ends_[1] >= 0) close(ends_[1]);
    ends_[1] = -1;
  }

  posix_spawn_file_actions_t actions_{};
  std::array<int, 2> ends_{-1, -1};
};

}  // namespace

ChildRun RunChild(const std::vector<std::string>& command, const std::string& output_file) {
  std::vector<std::string> words = command;
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);

  ChildRun run;
  Streams streams{output_file};
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (posix_spawnp(&child, arguments[0], streams.actions(), nullptr, arguments.data(), environ) != 0) {
    return run;
  }
  run.output = streams.Output();
  int status = 0;
  waitpid(child, &status, 0);
  run.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  if (WIFEXITED(status)) run.exit_code = WEXITSTATUS(status);
  return run;
}

std::string OwnPath() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

std::optional<double> PeakMemory() {
  // The kernel's figure for a finished child also covers what the parent held before the start, so each
  // process looks at its own.
  std::ifstream status{"/proc/self/status"};
  for (std::string word; status >> word;) {
    double kibibytes = 0;
    if (word == "VmHWM:" && status >> kibibytes) return kibibytes * kKibibyte;
  }
  return std::nullopt;
}

}  // namespace ondura
