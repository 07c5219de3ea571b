#pragma once

#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "profile/LightCiphers.h"

namespace ondura {

// Configuration.ini of the data folder: which product line this is and what its parts are called. Sections
// are plain, keys and values are in the stored form.
class ProductConfiguration {
 public:
  ProductConfiguration(const Machine& machine, Installation& installation)
      : machine_(machine), installation_(installation), ciphers_(machine.code_page, machine.pump) {}

  // Fills the product values and the default addresses of `installation`. False without a file, with every
  // value as it was; false too without a product number, name or installation name, and the derived names
  // stay as they were.
  bool LoadProductConfiguration();

  // Derives the registry key and the names of files and executables from the product values.
  void SetProductNames();

  // One value in clear text, trimmed; empty where it is missing.
  [[nodiscard]] std::string ReadConfigurationValue(std::string_view sSection, std::string_view sKey) const;

  // A key or a value as it is in the file.
  [[nodiscard]] std::string StoredForm(std::string_view text) const;

 private:
  void ReadProduct();
  void SetDefaultAddresses();
  [[nodiscard]] std::string FilePath() const;

  Machine machine_;
  Installation& installation_;
  LightCiphers ciphers_;
};

}  // namespace ondura
