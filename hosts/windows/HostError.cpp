#include "HostError.h"

#include <array>
#include <cstdio>

#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

std::string SystemText(unsigned long code) {
  wchar_t* found = nullptr;
  constexpr DWORD kFlags =
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  // With this flag the call takes the address of the pointer where it else takes a buffer.
  const DWORD length =
      FormatMessageW(kFlags, nullptr, code, 0, reinterpret_cast<wchar_t*>(&found), 0, nullptr);
  std::string text = length == 0 ? "unknown error" : FromWide({found, length});
  LocalFree(found);
  text.resize(text.find_last_not_of(" .\r\n") + 1);
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), code > 0xFFFF ? " (0x%08lX)" : " (%lu)", code);
  return text + number.data();
}

void ThrowLastError(std::string_view what) {
  throw HostError(std::string{what} + ": " + SystemText(GetLastError()));
}

}  // namespace ondura
