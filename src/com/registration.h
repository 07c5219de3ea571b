#pragma once

#include "com/automation.h"

namespace ondura {

// Makes the classes and the type library known: for the whole machine, or for the present user where rights
// to the machine's hive are refused. Throws when neither can be had, and for every other failure.
void Register();

// Takes away all of that, in whichever hive it is. Throws when something may not be taken away.
void Unregister();

}  // namespace ondura
