#include "machines/win32/piped_child.h"

#include <algorithm>
#include <array>
#include <deque>
#include <utility>

#include "machines/win32/SecretPipe.h"
#include "machines/win32/console_events.h"
#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/start_texts.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

using Secrets = std::vector<std::unique_ptr<SecretPipe>>;

constexpr DWORD kPipeBytes = 65536;
static_assert(kPipeBytes > kPipedTextLimit, "a text must fit in before anybody reads");

struct Pipe {
  Pipe() { CreatePipe(out.Receive(), in.Receive(), nullptr, kPipeBytes); }

  UniqueHandle out;
  UniqueHandle in;
};

// The end of a pipe that the text is read from; the other one is closed after the text.
UniqueHandle FilledPipe(const std::string& text) {
  Pipe pipe;
  DWORD written = 0;
  const bool is_filled =
      text.size() <= kPipedTextLimit && pipe.in.valid() &&
      WriteFile(pipe.in.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
  return is_filled ? std::move(pipe.out) : UniqueHandle{};
}

// Windows 10 lets a process begin in a job (PROC_THREAD_ATTRIBUTE_JOB_LIST).
constexpr DWORD_PTR kJobList = 0x2000D;

// What a new process is told of its starter: three streams, that it gets no other handle, and the job that it
// begins in, where the system knows how: put in later, it would live on after a starter that is killed just
// before.
class Streams {
 public:
  Streams(UniqueHandle input, UniqueHandle output, UniqueHandle error, HANDLE job)
      : ends_{std::move(input), std::move(output), std::move(error)}, job_(job) {
    constexpr DWORD kAttributes = 2;
    for (std::size_t i = 0; i < ends_.size(); ++i) {
      handles_[i] = ends_[i].get();
      SetHandleInformation(handles_[i], HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    }
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, kAttributes, 0, &size);
    memory_.resize(size);
    auto* const list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.data());
    if (!InitializeProcThreadAttributeList(list, kAttributes, 0, &size)) return;
    startup_.lpAttributeList = list;
    startup_.StartupInfo.cb = sizeof startup_;
    startup_.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    startup_.StartupInfo.hStdInput = handles_[0];
    startup_.StartupInfo.hStdOutput = handles_[1];
    startup_.StartupInfo.hStdError = handles_[2];
    is_valid_ = UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                          sizeof handles_, nullptr, nullptr) != FALSE;
    UpdateProcThreadAttribute(list, 0, kJobList, &job_, sizeof job_, nullptr, nullptr);
  }
  ~Streams() {
    if (startup_.lpAttributeList != nullptr) DeleteProcThreadAttributeList(startup_.lpAttributeList);
  }
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;

  [[nodiscard]] bool valid() const { return is_valid_; }
  [[nodiscard]] STARTUPINFOW* startup() { return &startup_.StartupInfo; }

 private:
  std::array<UniqueHandle, 3> ends_;
  std::array<HANDLE, 3> handles_{};
  HANDLE job_;
  std::vector<std::byte> memory_;
  STARTUPINFOEXW startup_{};
  bool is_valid_ = false;
};

// Cuts what comes through one pipe into lines.
class LineReader {
 public:
  LineReader(UniqueHandle pipe, PipeStream stream) : pipe_(std::move(pipe)), stream_(stream) {}

  // Takes in what is there; false if nothing is.
  bool Read(std::deque<PipedLine>& lines) {
    DWORD length = 0;
    if (!pipe_.valid()) return false;
    if (!PeekNamedPipe(pipe_.get(), nullptr, 0, nullptr, &length, nullptr)) {
      pipe_ = UniqueHandle{};
      return false;
    }
    if (length == 0) return false;
    const std::size_t known = rest_.size();
    rest_.resize(known + length);
    const bool is_read = ReadFile(pipe_.get(), rest_.data() + known, length, &length, nullptr) != FALSE;
    rest_.resize(known + (is_read ? length : 0));
    CutLines(lines);
    return is_read;
  }

  // Hands out a last line that has no end.
  void Finish(std::deque<PipedLine>& lines) {
    pipe_ = UniqueHandle{};
    if (!rest_.empty()) lines.push_back({stream_, std::exchange(rest_, {})});
  }

 private:
  void CutLines(std::deque<PipedLine>& lines) {
    std::size_t begin = 0;
    for (auto end = rest_.find('\n'); end != std::string::npos; end = rest_.find('\n', begin)) {
      const bool has_return = end > begin && rest_[end - 1] == '\r';
      lines.push_back({stream_, rest_.substr(begin, end - begin - (has_return ? 1 : 0))});
      begin = end + 1;
    }
    rest_.erase(0, begin);
  }

  UniqueHandle pipe_;
  PipeStream stream_;
  std::string rest_;
};

class PipedChild : public PipedProgram {
 public:
  PipedChild(const PROCESS_INFORMATION& started, ChildConsole console, UniqueHandle output,
             UniqueHandle error, Secrets secrets)
      : process_(started.hProcess),
        id_(started.dwProcessId),
        console_(console),
        output_(std::move(output), PipeStream::kOutput),
        error_(std::move(error), PipeStream::kError),
        secrets_(std::move(secrets)) {}
  ~PipedChild() override {
    constexpr DWORD kPatience = 5000;
    TerminateProcess(process_.get(), 0);
    WaitForSingleObject(process_.get(), kPatience);
  }
  PipedChild(const PipedChild&) = delete;
  PipedChild& operator=(const PipedChild&) = delete;

  std::optional<PipedLine> NextLine(std::chrono::milliseconds limit) override {
    constexpr ULONGLONG kLook = 10;
    const ULONGLONG until = GetTickCount64() + static_cast<ULONGLONG>(std::max(limit.count(), 0LL));
    while (lines_.empty() && !is_over_) {
      if (Look()) continue;
      const ULONGLONG now = GetTickCount64();
      if (now >= until) return std::nullopt;
      WaitForSingleObject(process_.get(), static_cast<DWORD>(std::min(kLook, until - now)));
    }
    if (lines_.empty()) return std::nullopt;
    PipedLine line = std::move(lines_.front());
    lines_.pop_front();
    return line;
  }

  std::optional<std::uint32_t> ExitCode() override {
    while (!is_over_ && lines_.empty() && Look()) continue;
    DWORD code = 0;
    if (!is_over_ || !lines_.empty() || !GetExitCodeProcess(process_.get(), &code)) return std::nullopt;
    return code;
  }

  void Interrupt() override {
    if (!HasEnded()) SendBreak(id_, console_);
  }

  void Kill() override { TerminateProcess(process_.get(), static_cast<UINT>(-1)); }

 private:
  [[nodiscard]] bool HasEnded() const { return WaitForSingleObject(process_.get(), 0) == WAIT_OBJECT_0; }

  // Serves and takes in what is there. False if there was nothing new. A program of its own that the child
  // has started may hold the pipes open: once the child has ended, what is in them by then is all.
  bool Look() {
    for (const auto& secret : secrets_) secret->Serve();
    const bool has_ended = HasEnded();
    const bool has_output = output_.Read(lines_);
    const bool has_error = error_.Read(lines_);
    if (has_output || has_error) return true;
    if (!has_ended) return false;
    output_.Finish(lines_);
    error_.Finish(lines_);
    is_over_ = true;
    return true;
  }

  UniqueHandle process_;
  DWORD id_;
  ChildConsole console_;
  bool is_over_ = false;  // ended, and all that it printed is in lines_
  LineReader output_;
  LineReader error_;
  Secrets secrets_;
  std::deque<PipedLine> lines_;
};

}  // namespace

std::unique_ptr<PipedProgram> StartPiped(const PipedRequest& request, HANDLE job) {
  const std::wstring file = FindProgram(request.file);
  std::wstring command = L"\"" + file + L"\"";
  for (const std::string& argument : request.arguments) command += L' ' + QuotedArgument(ToWide(argument));
  std::vector<std::string> environment = request.environment;
  Secrets secrets;
  for (const PipedSecret& secret : request.secrets) {
    if (secret.text.size() > kPipedTextLimit) return nullptr;
    secrets.push_back(std::make_unique<SecretPipe>(secret.text));
    if (secrets.back()->path().empty()) return nullptr;
    const std::string& path = secrets.back()->path();
    if (secret.option.empty()) {
      environment.push_back(secret.variable + "=" + path);
    } else {
      command += L' ' + QuotedArgument(ToWide(secret.option)) + L' ' + QuotedArgument(ToWide(path));
    }
  }
  std::wstring block = EnvironmentBlock(environment);
  const std::wstring folder = WidePath(request.folder);
  UniqueHandle input = FilledPipe(request.input);
  Pipe output;
  Pipe error;
  if (file.empty() || !input.valid() || !output.in.valid() || !error.in.valid()) return nullptr;
  Streams streams{std::move(input), std::move(output.in), std::move(error.in), job};
  const ChildConsole console = ConsoleForChild();
  const DWORD flags = CREATE_UNICODE_ENVIRONMENT | CREATE_SUSPENDED | EXTENDED_STARTUPINFO_PRESENT |
                      (console == ChildConsole::kShared ? CREATE_NEW_PROCESS_GROUP : CREATE_NO_WINDOW);
  PROCESS_INFORMATION started{};
  if (!streams.valid() ||
      !CreateProcessW(file.c_str(), command.data(), nullptr, nullptr, TRUE, flags, block.data(),
                      folder.empty() ? nullptr : folder.c_str(), streams.startup(), &started)) {
    return nullptr;
  }
  const UniqueHandle thread{started.hThread};
  AssignProcessToJobObject(job, started.hProcess);  // for older systems
  ResumeThread(thread.get());
  return std::make_unique<PipedChild>(started, console, std::move(output.out), std::move(error.out),
                                      std::move(secrets));
}

}  // namespace ondura
