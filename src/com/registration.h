#pragma once

#include "com/automation.h"

namespace ondura {

// Makes the classes and the type library known: for the whole machine, or for the present user where the
// machine's hive can't be written. Throws when neither can.
void Register();

// Takes away all of that, wherever it stands. Throws when something may not be taken away.
void Unregister();

}  // namespace ondura
