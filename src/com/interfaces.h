#pragma once

// The interfaces and classes of the type library, generated from OnduraEService.idl.

#include "OnduraEService_com.h"
#include "com/automation.h"
