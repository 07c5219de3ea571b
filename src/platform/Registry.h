#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ondura {

enum class RegistryRoot { kLocalMachine, kCurrentUser };

// The platform's type numbers: REG_SZ, REG_BINARY, REG_DWORD. Others are kOther.
enum class RegistryType { kText = 1, kBinary = 3, kDword = 4, kOther = 0 };

// The rights that a key is opened with.
enum class RegistryAccess : std::uint32_t { kQueryValue = 0x1, kAll = 0xF003F };

struct RegistryValue {
  RegistryType type = RegistryType::kOther;
  std::string text;          // UTF-8; kText
  std::uint32_t number = 0;  // kDword, or the first byte of kBinary
};

struct RegistryName {
  RegistryRoot root = RegistryRoot::kLocalMachine;
  std::string_view key;
  std::string_view value;
};

// The machine's registry; keys and value names match without regard to letter case.
//
// On Windows: RegOpenKeyExA, RegQueryValueExA, RegSetValueExA and RegCloseKey.
class Registry {
 public:
  virtual ~Registry() = default;

  // The whole value, of any length. std::nullopt where key or value is missing or may not be opened with
  // `access`.
  virtual std::optional<RegistryValue> Read(const RegistryName& name, RegistryAccess access) = 0;

  // Makes the key where it is missing. False if it was not written.
  virtual bool Write(const RegistryName& name, const RegistryValue& value) = 0;
};

}  // namespace ondura
