#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class time of the type library, which has no members.
class TimeObject : public DispatchObject<Itime> {};

}  // namespace ondura
