#pragma once

#include "com/DispatchObject.h"
#include "job/CDummyCall.h"

namespace ondura {

// The class CDummyCall of the type library; each object has a temp folder of its own.
class DummyCallObject : public DispatchObject<ICDummyCall> {
 public:
  STDMETHODIMP DoDummycall(BSTR sExeName, double* value) override;
  STDMETHODIMP CreateTempFolder(BSTR sCurrentUser, BSTR sPostfix) override;
  STDMETHODIMP GetTempFolderPath(BSTR* path) override;
  STDMETHODIMP DeleteInputOutFilesInTempFd() override;
  STDMETHODIMP DeleteTempFolder() override;
  STDMETHODIMP ResdDLLOutputFile(VARIANT* bResult, VARIANT* lValue, VARIANT* strDescrip) override;

 private:
  CDummyCall core_{component().context().services()};
};

}  // namespace ondura
