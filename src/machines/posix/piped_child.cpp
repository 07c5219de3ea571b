#include "machines/posix/piped_child.h"

#include <poll.h>
#include <signal.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <utility>

#include "machines/posix/HostProcess.h"
#include "machines/posix/host_io.h"
#include "machines/posix/host_time.h"
#include "machines/posix/spawn.h"
#include "text/text.h"

namespace ondura {

namespace {

using std::chrono::nanoseconds;

constexpr std::string_view kUsualPath = "/usr/local/bin:/usr/bin:/bin";
constexpr std::size_t kChunkBytes = 65536;

// The end of a pipe that the text is read from; the other one is closed after the text.
Fd FilledPipe(const std::string& text) {
  Pipe pipe;
  if (text.size() > kPipedTextLimit || !pipe.out.valid() || !WriteAll(pipe.in, text)) return Fd{};
  return std::move(pipe.out);
}

std::string FindProgram(const std::string& file) {
  if (file.find('/') != std::string::npos) return file;
  const char* const folders = std::getenv("PATH");
  for (const std::string& folder : Split(folders != nullptr ? folders : kUsualPath, ":")) {
    std::string path = folder;
    path.append("/").append(file);
    if (!folder.empty() && access(path.c_str(), X_OK) == 0) return path;
  }
  return {};
}

// Cuts what comes through one pipe into lines.
class LineReader {
 public:
  LineReader(Fd pipe, PipeStream stream) : pipe_(std::move(pipe)), stream_(stream) {}

  [[nodiscard]] const Fd& pipe() const { return pipe_; }

  // Takes in what is there.
  void Read(std::deque<PipedLine>& lines) {
    std::array<char, kChunkBytes> chunk;
    const ssize_t length = read(pipe_.get(), chunk.data(), chunk.size());
    if (length < 0 && LastError() == HostError::kInterrupted) return;
    if (length <= 0) return Finish(lines);
    rest_.append(chunk.data(), static_cast<std::size_t>(length));
    std::size_t begin = 0;
    for (auto end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n', begin)) {
      lines.push_back({stream_, rest_.substr(begin, end - begin)});
      begin = end + 1;
    }
    rest_.erase(0, begin);
  }

  // Closes the pipe and hands out a last line that has no end.
  void Finish(std::deque<PipedLine>& lines) {
    pipe_.Close();
    if (!rest_.empty()) lines.push_back({stream_, std::exchange(rest_, {})});
  }

 private:
  Fd pipe_;
  PipeStream stream_;
  std::string rest_;
};

class PipedChild : public PipedProgram {
 public:
  PipedChild(pid_t id, Fd output, Fd error)
      : process_(id, HostProcess::Kinship::kChild),
        output_(std::move(output), PipeStream::kOutput),
        error_(std::move(error), PipeStream::kError) {}
  ~PipedChild() override { process_.Kill(0); }
  PipedChild(const PipedChild&) = delete;
  PipedChild& operator=(const PipedChild&) = delete;

  std::optional<PipedLine> NextLine(std::chrono::milliseconds limit) override {
    const Deadline deadline{limit};
    while (lines_.empty() && IsOpen()) {
      const nanoseconds left = deadline.Left();
      if (!WaitForOutput(std::max(left, nanoseconds{0})) && left <= nanoseconds{0}) return std::nullopt;
    }
    if (lines_.empty()) {
      process_.WaitForEnd(std::max(deadline.Left(), nanoseconds{0}));
      return std::nullopt;
    }
    PipedLine line = std::move(lines_.front());
    lines_.pop_front();
    return line;
  }

  std::optional<std::uint32_t> ExitCode() override {
    while (lines_.empty() && IsOpen() && WaitForOutput(nanoseconds{0})) continue;
    if (!lines_.empty() || IsOpen() || !process_.HasEnded()) return std::nullopt;
    return process_.exit_code();
  }

  // By number: a program that has ended keeps its own until it has been collected here.
  void Interrupt() override {
    if (!process_.HasEnded()) kill(process_.id(), SIGINT);
  }

  void Kill() override { process_.Kill(static_cast<std::uint32_t>(-1)); }

 private:
  [[nodiscard]] bool IsOpen() const { return output_.pipe().valid() || error_.pipe().valid(); }

  // Takes in what comes within the time. A program of its own that the child has started may hold the pipes
  // open: once the child has ended, what is in them by then is all.
  bool WaitForOutput(nanoseconds limit) {
    std::array<pollfd, 2> questions{pollfd{output_.pipe().get(), POLLIN, 0},
                                    pollfd{error_.pipe().get(), POLLIN, 0}};
    const bool has_ended = process_.HasEnded();
    const timespec left = ToTimespec(has_ended ? nanoseconds{0} : std::min(limit, nanoseconds{kLook}));
    const int answer = ppoll(questions.data(), questions.size(), &left, nullptr);
    if (answer == 0 && has_ended) {
      output_.Finish(lines_);
      error_.Finish(lines_);
    }
    if (answer <= 0) return false;
    LetLinesGather();
    if (questions[0].revents != 0) output_.Read(lines_);
    if (questions[1].revents != 0) error_.Read(lines_);
    return true;
  }

  // A child that writes a line for each of many thousand files would be stopped for each of them by our
  // waking.
  void LetLinesGather() {
    const auto now = std::chrono::steady_clock::now();
    if (now - last_read_ < kBusy) {
      const timespec pause = ToTimespec(kGather);
      nanosleep(&pause, nullptr);
    }
    last_read_ = std::chrono::steady_clock::now();
  }

  static constexpr std::chrono::milliseconds kLook{100};
  static constexpr std::chrono::milliseconds kBusy{20};
  static constexpr std::chrono::milliseconds kGather{5};

  HostProcess process_;
  LineReader output_;
  LineReader error_;
  std::deque<PipedLine> lines_;
  std::chrono::steady_clock::time_point last_read_;
};

}  // namespace

std::unique_ptr<PipedProgram> StartPiped(const PipedRequest& request) {
  SpawnRequest spawn;
  spawn.file = FindProgram(request.file);
  spawn.arguments = request.arguments;
  spawn.folder = request.folder;
  spawn.environment = request.environment;
  spawn.whole_environment = true;
  spawn.lifetime = Lifetime::kEndsWithStarter;
  const Fd input = FilledPipe(request.input);
  std::vector<Fd> secrets;
  for (const PipedSecret& secret : request.secrets) {
    secrets.push_back(FilledPipe(secret.text));
    if (!secrets.back().valid()) return nullptr;
    spawn.passed.push_back(secrets.back().get());
    const std::string path = "/dev/fd/" + std::to_string(secrets.back().get());
    if (secret.option.empty()) {
      spawn.environment.push_back(secret.variable + "=" + path);
    } else {
      spawn.arguments.insert(spawn.arguments.end(), {secret.option, path});
    }
  }
  Pipe output;
  Pipe error;
  if (spawn.file.empty() || !input.valid() || !output.in.valid() || !error.in.valid()) return nullptr;
  spawn.streams = {input.get(), output.in.get(), error.in.get()};
  const auto id = Spawn(spawn);
  if (!id) return nullptr;
  return std::make_unique<PipedChild>(*id, std::move(output.out), std::move(error.out));
}

}  // namespace ondura
