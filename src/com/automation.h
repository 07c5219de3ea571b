#pragma once

// The headers of COM and Automation, for every file of this folder.

#include "machines/win32/windows_api.h"

#include <ole2.h>
#include <oleauto.h>
