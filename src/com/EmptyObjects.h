#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The classes clsSystemState and time of the type library, which have no members.
class SystemStateObject : public DispatchObject<IclsSystemState> {};
class TimeObject : public DispatchObject<Itime> {};

}  // namespace ondura
