#include <array>

#include "machines/win32/ports.h"
#include "machines/win32/text_edges.h"
#include "machines/win32/windows_api.h"

namespace ondura {

namespace {

constexpr DWORD kShortBufferBytes = 256;
constexpr DWORD kLongBufferBytes = 2048;

// The platform's calls end the process, or write a part, where they are given more.
bool IsTakenWhole(const IniKey& key) {
  return ToWide(key.file).size() <= kLongestProfilePath && key.section.size() <= kLongestProfileText &&
         key.key.size() <= kLongestProfileText;
}

// An ini key in the bytes of the A calls.
struct SystemKey {
  explicit SystemKey(const IniKey& key)
      : file(ToSystem(key.file)), section(ToSystem(key.section)), name(ToSystem(key.key)) {}

  std::string file;
  std::string section;
  std::string name;
};

template <DWORD kBufferBytes>
std::string ReadThroughBuffer(const SystemKey& key) {
  std::array<char, kBufferBytes> buffer{};
  const DWORD length = GetPrivateProfileStringA(key.section.c_str(), key.name.c_str(), "", buffer.data(),
                                                kBufferBytes, key.file.c_str());
  return {buffer.data(), length};
}

class Win32ProfileFiles : public ProfileFiles {
 public:
  std::string ReadString(const IniKey& key) override {
    if (!IsTakenWhole(key)) return {};
    return FromSystem(ReadThroughBuffer<kShortBufferBytes>(SystemKey{key}));
  }

  std::string ReadLongString(const IniKey& key) override {
    if (!IsTakenWhole(key)) return {};
    return FromSystem(ReadThroughBuffer<kLongBufferBytes>(SystemKey{key}));
  }

  int ReadInt(const IniKey& key, int fallback) override {
    if (!IsTakenWhole(key)) return fallback;
    const SystemKey system{key};
    return static_cast<int>(
        GetPrivateProfileIntA(system.section.c_str(), system.name.c_str(), fallback, system.file.c_str()));
  }

  bool WriteString(const IniKey& key, std::string_view value) override {
    if (!IsTakenWhole(key) || value.size() > kLongestProfileText) return false;
    const SystemKey system{key};
    return WritePrivateProfileStringA(system.section.c_str(), system.name.c_str(), ToSystem(value).c_str(),
                                      system.file.c_str()) != FALSE;
  }
};

}  // namespace

std::unique_ptr<ProfileFiles> MakeWin32ProfileFiles() { return std::make_unique<Win32ProfileFiles>(); }

}  // namespace ondura
