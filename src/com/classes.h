#pragma once

#include <span>

#include "com/automation.h"

namespace ondura {

// A class that the library can make.
struct PublicClass {
  const CLSID* id;
  const wchar_t* name;

  // A new object with one reference; throws when it can't be made.
  IDispatch* (*make)();
};

std::span<const PublicClass> PublicClasses();

}  // namespace ondura
