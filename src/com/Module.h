#pragma once

#include <wrl/client.h>

#include <string>

#include "com/SharedComponent.h"
#include "com/automation.h"

namespace ondura {

// What the loaded library keeps: how many objects and locks hold it, and what they share. That is made for
// the first object and outlives the last: the component's state is that of the process, until the library may
// go.
class Module {
 public:
  static Module& Get();

  // For an object's life. Throws what the making of the component throws.
  void Hold();
  void Release();

  // A server lock keeps the library loaded without a component.
  void Lock(bool on);

  // Returns whether nothing holds the library; what the objects shared is freed then.
  bool LetGo();

  // The objects' shared instance. Only while an object holds the module.
  [[nodiscard]] SharedComponent& shared() const { return *shared_; }

  // The description of an interface, from the type library in this file.
  Microsoft::WRL::ComPtr<ITypeInfo> TypeInfoOf(REFIID interface_id);

 private:
  SRWLOCK lock_ = SRWLOCK_INIT;
  LONG objects_ = 0;
  LONG locks_ = 0;
  // Plain pointers, so that the end of a process runs no code here.
  SharedComponent* shared_ = nullptr;
  ITypeLib* library_ = nullptr;
};

// Holds the module for as long as it lives; the first member of every object.
class ModuleHold {
 public:
  ModuleHold() { Module::Get().Hold(); }
  ~ModuleHold() { Module::Get().Release(); }
  ModuleHold(const ModuleHold&) = delete;
  ModuleHold& operator=(const ModuleHold&) = delete;
};

// The full path of this library's file.
std::wstring ModulePath();

}  // namespace ondura
