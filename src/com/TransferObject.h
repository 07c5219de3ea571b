#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class Transfer of the type library.
class TransferObject : public DispatchObject<ITransfer> {
 public:
  STDMETHODIMP Trf_ReadProxyProfile(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_ReadUserProfile(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_ReadUserProfileNew(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_ReadUserNameProfile(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_ReadUserNameProfileReg(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_WriteUserProfile(BSTR param, BSTR paramval) override;
  STDMETHODIMP Trf_WriteUserNameProfile(BSTR param, BSTR paramval) override;
  STDMETHODIMP Trf_WriteUserNameRegistryProfile(BSTR param, BSTR paramval) override;
  STDMETHODIMP setLindex() override;
  STDMETHODIMP Trf_WriteUserProfileDefault(BSTR sSection, BSTR param, BSTR paramval) override;
  STDMETHODIMP Trf_ReadPluginUserProfile(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_ReadUserNameDBProfile(BSTR param, BSTR* value) override;
  STDMETHODIMP Trf_WriteUserNameDBProfile(BSTR param, BSTR paramval) override;
  STDMETHODIMP Trf_ReadServerValues(BSTR param, short* value) override;
  STDMETHODIMP Trf_ReadOutputValue(BSTR sSection, BSTR param, short* value) override;
  STDMETHODIMP Trf_ReadExchangeProfile(BSTR sSection, BSTR sKey, BSTR sFile, BSTR* value) override;

 private:
  [[nodiscard]] Transfer& core() const { return component().transfer(); }
};

}  // namespace ondura
