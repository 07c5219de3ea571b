#include "demo/common/child_machine.h"

#include <utility>

#include "platform/posix/posix_machine.h"
#include "platform/posix/private_files.h"
#include "platform/posix/started_program.h"

namespace ondura::demo {

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

}  // namespace ondura::demo
