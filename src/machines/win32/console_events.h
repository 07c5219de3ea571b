#pragma once

#include "machines/win32/windows_api.h"

namespace ondura {

// Where a child gets the events of a console from.
enum class ChildConsole {
  kShared,  // this process's, as a group of its own
  kOwn,     // one without a window
};

// kShared where other processes are on the console of this one: somebody may be reading there. A console that
// the system made for this process alone can be given up.
ChildConsole ConsoleForChild();

// Has the program leave as Ctrl+Break at its console would. Nothing happens where that can't be done. With
// kOwn this process gives up its own console, if it has one.
void SendBreak(DWORD process, ChildConsole console);

}  // namespace ondura
