#include "engines/common/ProgramMachine.h"

#include <windows.h>

#include <utility>

#include "machines/win32/Win32Machine.h"

namespace ondura::engines {

namespace {

class ThisMachine : public ProgramMachine {
 public:
  explicit ThisMachine(std::unique_ptr<Win32Machine> owner) : owner_(std::move(owner)) {}
  const Machine& machine() override { return owner_->machine(); }

 private:
  std::unique_ptr<Win32Machine> owner_;
};

std::string OwnFolder(CodePage& code_page) {
  std::string path(32768, '\0');
  path.resize(GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return code_page.ToUtf8(path.substr(0, path.rfind('\\') + 1));
}

}  // namespace

ChildMachine MakeChildMachine() {
  auto owner = std::make_unique<ThisMachine>(MakeWin32Machine());
  std::string folder = OwnFolder(owner->machine().code_page);
  return {std::move(owner), std::move(folder), {}};
}

}  // namespace ondura::engines
