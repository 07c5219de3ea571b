// The scanner beside the engine for repositories of restic: "29" makes the local database of the user whose
// job runs, "5" throws the old one away first.

#include "engines/common/HostProcess.h"
#include "engines/common/program.h"
#include "engines/common/scanner.h"
#include "engines/restic/ResticStore.h"

int main(int argc, char** argv) {
  using namespace ondura::engines;
  return RunProgram("scanner", [&](Client& client) {
    ResticStore store(client);
    return RunScanner(client, store, ParameterText(argc, argv));
  });
}
