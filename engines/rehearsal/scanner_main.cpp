// The scanner of the rehearsal machine: "29" builds the local database of the user whose job runs, "5" throws
// the old one away first.

#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "engines/common/scanner.h"
#include "engines/rehearsal/VaultStore.h"

int main(int argc, char** argv) {
  using namespace ondura::engines;
  return RunProgram("scanner", [&](Client& client) {
    VaultStore store(client);
    return RunScanner(client, store, ParameterText(argc, argv));
  });
}
