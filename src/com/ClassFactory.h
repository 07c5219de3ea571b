#pragma once

#include <atomic>

#include "com/automation.h"
#include "com/classes.h"

namespace ondura {

// Makes objects of one class. A factory that is held does not keep the library loaded; LockServer does.
class ClassFactory : public IClassFactory {
 public:
  explicit ClassFactory(const PublicClass& made) : made_(made) {}
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  virtual ~ClassFactory() = default;

  const PublicClass& made_;
  std::atomic<ULONG> references_{1};
};

}  // namespace ondura
