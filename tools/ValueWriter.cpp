#include "ValueWriter.h"

#include <iostream>
#include <string>

#include "Failure.h"

namespace ondura {

namespace {

constexpr std::string_view kLineBreakers{"\r\n\0", 3};

}  // namespace

void ValueWriter::Write(const ProfileKey& key, std::string_view value) {
  const std::string name{key.name};
  if (value.find_first_of(kLineBreakers) != std::string_view::npos) {
    throw Failure(Exit::kUsage, "the value of " + name + " must be one line");
  }
  if (!keys_.IsStoredInOneLine(key, value)) {
    throw Failure(Exit::kUsage,
                  "the value of " + name +
                      " has a control character whose stored form would break its line; leave it out");
  }
  if (!keys_.Write(key, value)) {
    throw Failure(Exit::kFailed, "can't write " + name + "; look at the rights of the machine's data folder");
  }
  const std::string why = keys_.WhyNotHeld(key, value);
  if (!why.empty()) {
    std::cerr << "ondura: warning: " << name << " does not come back as it was given: " << why << "\n";
  }
}

}  // namespace ondura
