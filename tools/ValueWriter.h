#pragma once

#include <string_view>

#include "ProfileKeys.h"

namespace ondura {

// Writes values for people: throws Failure where a value can't be written or would break its file, and
// warns on stderr where it does not come back as it is.
class ValueWriter {
 public:
  explicit ValueWriter(const ProfileKeys& keys) : keys_(keys) {}

  void Write(const ProfileKey& key, std::string_view value);

  // The key of that name, which must be one of the table.
  void Write(std::string_view name, std::string_view value) { Write(*FindProfileKey(name), value); }

 private:
  const ProfileKeys& keys_;
};

}  // namespace ondura
