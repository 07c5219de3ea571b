#pragma once

#include "com/DispatchObject.h"
#include "stages/clsSystemState.h"

namespace ondura {

// The class clsSystemState of the type library.
class SystemStateObject : public DispatchObject<IclsSystemState> {
 public:
  STDMETHODIMP LaunchNtbackup(BSTR sPath, VARIANT_BOOL* succeeded) override;
  STDMETHODIMP GetOsVersion(BSTR* name) override;
  STDMETHODIMP CreatePIDFile(BSTR sPID, short nKind) override;
  STDMETHODIMP DeletePIDFile(short nKind) override;
  STDMETHODIMP GetPID(short nKind, BSTR* text) override;
  STDMETHODIMP ShellClose(long nPID, VARIANT_BOOL* has_ended) override;
  STDMETHODIMP StringEndFolder(BSTR sText, BSTR sSeparator, BSTR* text) override;
  STDMETHODIMP GetCompName(BSTR* name) override;
  STDMETHODIMP GetLogErrorString(BSTR sJobName, VARIANT* sLogPath, BSTR* text) override;
  STDMETHODIMP CheckLogError(BSTR sBackupName, BSTR sLogPath, VARIANT_BOOL* succeeded) override;
  STDMETHODIMP QueryValueEx(long hRoot, BSTR sKey, BSTR sValueName, VARIANT* vValue, long* error) override;

 private:
  clsSystemState& state() { return component().system_state(); }
};

}  // namespace ondura
