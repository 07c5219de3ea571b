#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/LightCiphers.h"

namespace ondura {

// Where a key lives: in the profile of one user, or in the state that all users of the machine share.
enum class KeyStore { kUserProfile, kSharedState };

// How it is kept: as it is; key and value shifted; the value alone shifted; the value in Base64.
enum class KeyForm { kPlain, kShifted, kShiftedValue, kBase64 };

// kSecret values are never shown.
enum class KeyShow { kOpen, kSecret };

struct ProfileKey {
  std::string_view name;
  KeyStore store = KeyStore::kUserProfile;
  std::string_view section;
  KeyForm form = KeyForm::kPlain;
  KeyShow show = KeyShow::kOpen;
  std::string_view meaning;
};

// Every key that the system keeps, in the order in which people look for them.
std::span<const ProfileKey> AllProfileKeys();

// By name, whatever its letter case; null when there is none.
const ProfileKey* FindProfileKey(std::string_view name);

// Reads and writes keys by their place in the table.
class ProfileKeys {
 public:
  ProfileKeys(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation), ciphers_(machine.code_page, machine.pump) {}

  // The clear text. Empty for a missing key.
  [[nodiscard]] std::string Read(const ProfileKey& key) const;

  // The key of that name, which must be one of the table.
  [[nodiscard]] std::string Read(std::string_view name) const { return Read(*FindProfileKey(name)); }

  // False when the file can't be written.
  [[nodiscard]] bool Write(const ProfileKey& key, std::string_view value) const;
  [[nodiscard]] bool Write(std::string_view name, std::string_view value) const {
    return Write(*FindProfileKey(name), value);
  }

  // Why a `value` just written does not come back as it is, or empty.
  [[nodiscard]] std::string WhyNotHeld(const ProfileKey& key, std::string_view value) const;

 private:
  [[nodiscard]] std::string FileOf(const ProfileKey& key) const;
  [[nodiscard]] std::string StoredName(const ProfileKey& key) const;
  [[nodiscard]] std::string StoredValue(const ProfileKey& key, std::string_view value) const;

  Machine machine_;
  const Installation& installation_;
  LightCiphers ciphers_;
};

}  // namespace ondura
