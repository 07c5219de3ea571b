#include "engines/common/ProgramMachine.h"

#include <utility>

#include "machines/posix/PosixMachine.h"
#include "machines/posix/private_files.h"
#include "machines/posix/started_program.h"

namespace ondura::engines {

namespace {

class MachineInFolder : public ProgramMachine {
 public:
  explicit MachineInFolder(std::unique_ptr<PosixMachine> owner) : owner_(std::move(owner)) {}
  const Machine& machine() override { return owner_->machine(); }

 private:
  std::unique_ptr<PosixMachine> owner_;
};

}  // namespace

ChildMachine MakeChildMachine() {
  KeepFilesPrivate();
  const StartedProgram program = ReadStartedProgram();
  if (program.root.empty()) {
    return {nullptr, {}, "ONDURA_ROOT is not set. This program is started by a machine in a folder."};
  }
  PosixMachineResult made = MakePosixMachine({program.root, program.speed, {}});
  if (!made.owner) return {nullptr, {}, std::move(made.error)};
  return {std::make_unique<MachineInFolder>(std::move(made.owner)), OwnFolderIn(program.root), {}};
}

}  // namespace ondura::engines
