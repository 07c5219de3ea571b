#pragma once

// The platform's own header, once for the whole backend, without the macros that would rename our functions.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#undef ExitWindows
