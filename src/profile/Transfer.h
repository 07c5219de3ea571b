#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/LightCiphers.h"
#include "profile/profile_keys.h"

namespace ondura {

// The profile's keys by store and form. Every call goes to its file at once and nothing is kept: other
// programs read and write the same files. A missing file, section or key reads as the empty text; a write
// that fails is lost.
class Transfer {
 public:
  Transfer(const Machine& machine, const Installation& installation)
      : machine_(machine), installation_(installation), ciphers_(machine.code_page, machine.pump) {}

  // The current user's profile, keys and values in the shift form: sections "Proxy" and "Tolmera".
  [[nodiscard]] std::string Trf_ReadProxyProfile(std::string_view param) const;
  [[nodiscard]] std::string Trf_ReadUserProfile(std::string_view param) const;
  void Trf_WriteUserProfile(std::string_view param, std::string_view paramval) const;

  // The current user's profile, section "Tolmera", plain key, value in Base64.
  [[nodiscard]] std::string Trf_ReadUserProfileNew(std::string_view param) const;

  // The current user's profile, any section, plain.
  void Trf_WriteUserProfileDefault(std::string_view sSection, std::string_view param,
                                   std::string_view paramval) const;
  void Trf_WriteUserProfileDefault(const ProfileKey& key, std::string_view paramval) const {
    Trf_WriteUserProfileDefault(key.section, key.name, paramval);
  }

  // The shared state, plain: sections "Tolmera", "Registry" and "ScanType".
  [[nodiscard]] std::string Trf_ReadUserNameProfile(std::string_view param) const;
  [[nodiscard]] std::string Trf_ReadUserNameProfileReg(std::string_view param) const;
  [[nodiscard]] std::string Trf_ReadUserNameDBProfile(std::string_view param) const;
  void Trf_WriteUserNameProfile(std::string_view param, std::string_view paramval) const;
  void Trf_WriteUserNameRegistryProfile(std::string_view param, std::string_view paramval) const;
  void Trf_WriteUserNameDBProfile(std::string_view param, std::string_view paramval) const;

  // The plug-in file, section "Tolmera", plain.
  [[nodiscard]] std::string Trf_ReadPluginUserProfile(std::string_view param) const;

  // Any ini file, plain. A value longer than 255 bytes comes back cut.
  [[nodiscard]] std::string Trf_ReadExchangeProfile(std::string_view sSection, std::string_view sKey,
                                                    std::string_view sFile) const;

  // The current user's profile, section "Server"; -1 for a missing key, 0 for a number beyond 16 bits.
  [[nodiscard]] std::int16_t Trf_ReadServerValues(std::string_view param) const;

  // The current user's profile, any section; -10 for a missing key, 0 for a number beyond 16 bits.
  [[nodiscard]] std::int16_t Trf_ReadOutputValue(std::string_view sSection, std::string_view param) const;
  [[nodiscard]] std::int16_t Trf_ReadOutputValue(const ProfileKey& key) const {
    return Trf_ReadOutputValue(key.section, key.name);
  }

  // Sets the object's number to 1: an operation that callers from outside know. Nothing reads the number.
  void setLindex() { lindex_ = 1; }

 private:
  [[nodiscard]] std::string UserProfile() const;
  [[nodiscard]] std::string ReadShifted(std::string_view section, std::string_view param) const;
  [[nodiscard]] std::string ReadShared(std::string_view section, std::string_view param) const;
  void WriteShared(std::string_view section, std::string_view param, std::string_view paramval) const;
  [[nodiscard]] std::int16_t ReadNumber(std::string_view section, std::string_view param, int fallback) const;

  Machine machine_;
  const Installation& installation_;
  LightCiphers ciphers_;
  std::int32_t lindex_ = 0;
};

}  // namespace ondura
