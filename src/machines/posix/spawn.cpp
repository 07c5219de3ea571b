#include "machines/posix/spawn.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include "machines/posix/host_io.h"

namespace ondura {

namespace {

// What a shell reports for a program that could not be started.
constexpr int kNotStarted = 126;

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

// A program that was started without one of the three streams gets their numbers for its own files.
Fd AboveStreams(int number) {
  Fd file{number};
  if (number > STDERR_FILENO) return file;
  return Fd{fcntl(number, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)};
}

// What the new process is made of, put together before it exists: between fork and exec nothing may be asked
// of the heap.
struct Image {
  const char* file;
  const char* folder;
  char* const* arguments;
  char* const* environment;
  pid_t starter;
  Lifetime lifetime;
  const std::array<int, 3>& streams;
  const std::vector<int>& passed;
};

void ResetSignals() {
  struct sigaction usual {};
  usual.sa_handler = SIG_DFL;
  for (int number = 1; number < NSIG; ++number) sigaction(number, &usual, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

// A stream of the new process may have the number of one that the next step overwrites; all that are given
// are above the three, so that none does.
bool SetStreams(const std::array<int, 3>& streams) {
  const int nothing = open("/dev/null", O_RDWR);
  int stream = STDIN_FILENO;
  for (const int given : streams) {
    const int source = given >= 0 ? given : nothing;
    if (source < 0 || dup2(source, stream++) < 0) return false;
  }
  return nothing <= STDERR_FILENO || close(nothing) == 0;
}

bool Pass(const std::vector<int>& files) {
  return std::ranges::all_of(files, [](int file) { return fcntl(file, F_SETFD, 0) == 0; });
}

// The starter may have ended before the wish to end with it was known.
bool TieToStarter(pid_t starter) { return prctl(PR_SET_PDEATHSIG, SIGKILL) == 0 && getppid() == starter; }

// In the new process. Returns when it can't become the program.
void Become(const Image& image) {
  setsid();
  if (!SetStreams(image.streams) || !Pass(image.passed)) return;
  if (*image.folder != '\0' && chdir(image.folder) != 0) return;
  if (image.lifetime == Lifetime::kEndsWithStarter && !TieToStarter(image.starter)) return;
  ResetSignals();
  execve(image.file, image.arguments, image.environment);
}

}  // namespace

Pipe::Pipe() {
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return;
  out = AboveStreams(ends[0]);
  in = AboveStreams(ends[1]);
}

std::optional<pid_t> Spawn(const SpawnRequest& request) {
  std::vector<std::string> arguments = request.arguments;
  arguments.insert(arguments.begin(), request.file);
  std::vector<std::string> environment =
      request.whole_environment ? request.environment : Environment(request.environment);
  const std::vector<char*> argument_pointers = Pointers(arguments);
  const std::vector<char*> environment_pointers = Pointers(environment);
  const Image image{request.file.c_str(),
                    request.folder.c_str(),
                    argument_pointers.data(),
                    environment_pointers.data(),
                    getpid(),
                    request.lifetime,
                    request.streams,
                    request.passed};
  // Ends without a byte when the program has begun.
  Pipe failure;
  if (!failure.out.valid()) return std::nullopt;
  const pid_t id = fork();
  if (id < 0) return std::nullopt;
  if (id == 0) {
    Become(image);
    constexpr char kFailed = 1;
    _exit(write(failure.in.get(), &kFailed, 1) == 1 ? kNotStarted : kNotStarted + 1);
  }
  failure.in.Close();
  char answer = 0;
  ssize_t length = 0;
  do length = read(failure.out.get(), &answer, 1);
  while (length < 0 && LastError() == HostError::kInterrupted);
  if (length == 0) return id;
  waitpid(id, nullptr, 0);
  return std::nullopt;
}

bool RunShellCommand(const std::string& command) {
  SpawnRequest request;
  request.file = "/bin/sh";
  request.arguments = {"-c", command};
  const auto id = Spawn(request);
  if (!id) return false;
  int status = 0;
  while (waitpid(*id, &status, 0) < 0) {
    if (LastError() != HostError::kInterrupted) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace ondura
