#include "machines/win32/SecretPipe.h"

#include <objbase.h>
#include <sddl.h>

#include <utility>
#include <vector>

#include "machines/win32/text_edges.h"
#include "platform/PipedProgram.h"

namespace ondura {

namespace {

struct LocalMemory {
  using Value = void*;
  static bool IsValid(Value memory) { return memory != nullptr; }
  static void Close(Value memory) { LocalFree(memory); }
};
using UniqueLocal = Unique<LocalMemory>;

// The account of this process in the form "S-1-...". Empty if the system does not say.
std::wstring OwnAccount() {
  UniqueHandle token;
  DWORD size = 0;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Receive())) return {};
  GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
  std::vector<TOKEN_USER> user(size / sizeof(TOKEN_USER) + 1);
  wchar_t* text = nullptr;
  if (!GetTokenInformation(token.get(), TokenUser, user.data(), size, &size) ||
      !ConvertSidToStringSidW(user.front().User.Sid, &text)) {
    return {};
  }
  const UniqueLocal owned{text};
  return text;
}

// What nobody else can have taken by chance.
std::wstring NewPipeName() {
  constexpr int kGuidLetters = 39;
  GUID number{};
  std::wstring text(kGuidLetters, L'\0');
  if (FAILED(CoCreateGuid(&number)) || StringFromGUID2(number, text.data(), kGuidLetters) != kGuidLetters)
    return {};
  return L"\\\\.\\pipe\\ondura-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
         text.substr(1, text.size() - 3);
}

// With rights for this account alone.
HANDLE CreatePrivatePipe(const std::wstring& name) {
  const std::wstring account = OwnAccount();
  const std::wstring rights = L"D:P(A;;GA;;;" + account + L")";
  void* descriptor = nullptr;
  if (name.empty() || account.empty() ||
      !ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &descriptor,
                                                            nullptr)) {
    return INVALID_HANDLE_VALUE;
  }
  const UniqueLocal owned{descriptor};
  SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor, FALSE};
  return CreateNamedPipeW(name.c_str(),
                          PIPE_ACCESS_OUTBOUND | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE,
                          PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1, kPipedTextLimit, 0, 0, &attributes);
}

}  // namespace

SecretPipe::SecretPipe(std::string text)
    : text_(std::move(text)), event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  const std::wstring name = NewPipeName();
  pipe_ = UniqueHandle{CreatePrivatePipe(name)};
  progress_.hEvent = event_.get();
  if (!pipe_.valid() || !event_.valid()) return;
  path_ = FromWide(name);
  Connect();
}

// The system writes into this object until what it was asked for has ended.
SecretPipe::~SecretPipe() {
  DWORD count = 0;
  if (pipe_.valid() && CancelIoEx(pipe_.get(), &progress_))
    GetOverlappedResult(pipe_.get(), &progress_, &count, TRUE);
}

void SecretPipe::Connect() {
  // A reader that is there already has no event of the system.
  const bool is_asked = ConnectNamedPipe(pipe_.get(), &progress_) || GetLastError() == ERROR_IO_PENDING;
  if (!is_asked) SetEvent(event_.get());
}

void SecretPipe::Write() {
  step_ = Step::kWriting;
  const bool is_asked =
      WriteFile(pipe_.get(), text_.data(), static_cast<DWORD>(text_.size()), nullptr, &progress_) ||
      GetLastError() == ERROR_IO_PENDING;
  if (!is_asked) SetEvent(event_.get());
}

// What was written stays for the reader when this end closes, and is then followed by the text's end.
void SecretPipe::Serve() {
  if (pipe_.valid() && step_ == Step::kConnecting && WaitForSingleObject(event_.get(), 0) == WAIT_OBJECT_0) {
    Write();
  }
  if (pipe_.valid() && step_ == Step::kWriting && WaitForSingleObject(event_.get(), 0) == WAIT_OBJECT_0) {
    pipe_ = UniqueHandle{};
  }
}

}  // namespace ondura
