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

 private:
  const ProfileKeys& keys_;
};

}  // namespace ondura
