#include <algorithm>
#include <cstring>

#include "machines/win32/handles.h"
#include "machines/win32/paths.h"
#include "machines/win32/ports.h"
#include "machines/win32/system_error.h"
#include "machines/win32/text_edges.h"

namespace ondura {

namespace {

// Holds nearly every value; a longer one says its size and is asked for again.
constexpr std::size_t kFirstBufferBytes = 255;

HKEY RootKey(RegistryRoot root) {
  return root == RegistryRoot::kLocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

struct StoredValue {
  DWORD type = REG_NONE;
  std::string bytes;
};

// One query into a buffer of `size` bytes, which becomes the size that the value has.
SystemError Query(const UniqueRegistryKey& key, const std::string& name, std::size_t size,
                  StoredValue& value) {
  value.bytes.assign(size, '\0');
  auto used = static_cast<DWORD>(size);
  const LSTATUS status = RegQueryValueExA(key.get(), name.c_str(), nullptr, &value.type,
                                          reinterpret_cast<BYTE*>(value.bytes.data()), &used);
  value.bytes.resize(used);
  return Translated(static_cast<DWORD>(status));
}

std::uint32_t NumberIn(std::string_view bytes, std::size_t width) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data(), std::min(bytes.size(), width));
  return number;
}

RegistryValue Parsed(const StoredValue& value) {
  switch (value.type) {
    case REG_SZ:
      // The terminator is stored with the text.
      return {RegistryType::kText,
              FromSystem(value.bytes.substr(0, value.bytes.empty() ? 0 : value.bytes.size() - 1)), 0};
    case REG_DWORD:
      return {RegistryType::kDword, {}, NumberIn(value.bytes, sizeof(DWORD))};
    case REG_BINARY:
      return {RegistryType::kBinary, {}, NumberIn(value.bytes, 1)};
    default:
      return {};
  }
}

std::optional<StoredValue> Stored(const RegistryValue& value) {
  const auto* const number = reinterpret_cast<const char*>(&value.number);
  switch (value.type) {
    case RegistryType::kText:
      return StoredValue{REG_SZ, ToSystem(value.text) + '\0'};
    case RegistryType::kDword:
      return StoredValue{REG_DWORD, {number, sizeof(DWORD)}};
    case RegistryType::kBinary:
      return StoredValue{REG_BINARY, {number, 1}};
    default:
      return std::nullopt;
  }
}

class Win32Registry : public Registry {
 public:
  std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess access) override {
    UniqueRegistryKey key;
    const std::string key_name = ToSystem(WithoutTrailingSeparators(name.key));
    if (RegOpenKeyExA(RootKey(name.root), key_name.c_str(), 0, static_cast<REGSAM>(access), key.Receive()) !=
        ERROR_SUCCESS) {
      return std::nullopt;
    }
    const std::string value_name = ToSystem(name.value);
    StoredValue value;
    SystemError error = Query(key, value_name, kFirstBufferBytes, value);
    if (error == SystemError::kMoreData) error = Query(key, value_name, value.bytes.size(), value);
    return error == SystemError::kNone ? std::optional{Parsed(value)} : std::nullopt;
  }

  bool Write(const RegistryName& name, const RegistryValue& value) override {
    const auto stored = Stored(value);
    UniqueRegistryKey key;
    const std::string key_name = ToSystem(WithoutTrailingSeparators(name.key));
    if (!stored ||
        RegCreateKeyExA(RootKey(name.root), key_name.c_str(), 0, nullptr, 0, KEY_SET_VALUE | KEY_QUERY_VALUE,
                        nullptr, key.Receive(), nullptr) != ERROR_SUCCESS) {
      return false;
    }
    const LSTATUS status = RegSetValueExA(key.get(), ToSystem(name.value).c_str(), 0, stored->type,
                                          reinterpret_cast<const BYTE*>(stored->bytes.data()),
                                          static_cast<DWORD>(stored->bytes.size()));
    RegFlushKey(key.get());
    return status == ERROR_SUCCESS;
  }
};

}  // namespace

std::unique_ptr<Registry> MakeWin32Registry() { return std::make_unique<Win32Registry>(); }

}  // namespace ondura
