#pragma once

#include <atomic>

#include "com/automation.h"
#include "com/classes.h"

namespace ondura {

// Makes objects of one class. While it is held the library stays loaded.
class ClassFactory : public IClassFactory {
 public:
  explicit ClassFactory(const PublicClass& made);
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  STDMETHODIMP QueryInterface(REFIID id, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID id, void** object) override;
  STDMETHODIMP LockServer(BOOL lock) override;

 private:
  virtual ~ClassFactory();

  const PublicClass& made_;
  std::atomic<ULONG> references_{1};
};

}  // namespace ondura
