#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/LightCiphers.h"
#include "profile/profile_keys.h"

namespace ondura {

// Reads of the profile that need no Transfer object. Every read goes to the file or the registry at once;
// a missing file, section, key or value gives the empty text.
class ProfileStore {
 public:
  ProfileStore(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation), ciphers_(machine.code_page, machine.pump) {}

  // The current user's profile; the plain value as it is.
  [[nodiscard]] std::string ReadProfileValue(std::string_view sSection, std::string_view param) const;

  [[nodiscard]] std::string ReadProfileValue(const ProfileKey& key) const {
    return ReadProfileValue(key.section, key.name);
  }

  // The same from the profile of `sUser`.
  [[nodiscard]] std::string ReadUserProfileValue(std::string_view sUser, std::string_view sSection,
                                                 std::string_view param) const;
  [[nodiscard]] std::string ReadUserProfileValue(std::string_view sUser, const ProfileKey& key) const {
    return ReadUserProfileValue(sUser, key.section, key.name);
  }

  // The engine's last result; 0 if there is none or it is not a number.
  [[nodiscard]] double ReadLastRetValue() const;

  // Section "Registry" of the shared state; the value is in the shift form.
  [[nodiscard]] std::string ReadDefaultUser(std::string_view param) const;

  // Section "Registry" of the shared state, trimmed.
  [[nodiscard]] std::string ReadSharedRegistryValue(std::string_view param) const;

  // Section "Registry" of the install pointer, trimmed.
  [[nodiscard]] std::string ReadInstallRegistryValue(std::string_view param) const;

  // A value of the machine key in Base64.
  [[nodiscard]] std::string ReadProfilefromRegistry(std::string_view param) const;

  // A value of the machine key, trimmed.
  [[nodiscard]] std::string ReadProfilefromRegistryWithoutDeCrypt(std::string_view param) const;

  // A value of the machine key with its blanks.
  [[nodiscard]] std::string ReadRandomNumFromRegistry(std::string_view param) const;

 private:
  [[nodiscard]] std::string ReadRegistrySection(std::string_view file, std::string_view param) const;
  [[nodiscard]] std::string ReadMachineKey(std::string_view param) const;

  Machine machine_;
  const Installation& installation_;
  LightCiphers ciphers_;
};

}  // namespace ondura
