// A program that lives for a while and leaves with a code: tool /s MILLISECONDS CODE. The switch means
// nothing here; the system's own programs of the same calling keep their message boxes back for it.

#include <windows.h>

#include <cstdlib>

int main(int count, char** arguments) {
  constexpr int kArguments = 4;
  constexpr int kWrongCall = 99;
  if (count != kArguments) return kWrongCall;
  Sleep(static_cast<DWORD>(std::atoi(arguments[2])));
  return std::atoi(arguments[3]);
}
