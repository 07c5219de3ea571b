#include "com/TransferObject.h"

namespace ondura {

STDMETHODIMP TransferObject::Trf_ReadProxyProfile(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadProxyProfile(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadUserProfile(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadUserProfile(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadUserProfileNew(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadUserProfileNew(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadUserNameProfile(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadUserNameProfile(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadUserNameProfileReg(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadUserNameProfileReg(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_WriteUserProfile(BSTR param, BSTR paramval) {
  return Run([&] { core().Trf_WriteUserProfile(TextOf(param), TextOf(paramval)); });
}

STDMETHODIMP TransferObject::Trf_WriteUserNameProfile(BSTR param, BSTR paramval) {
  return Run([&] { core().Trf_WriteUserNameProfile(TextOf(param), TextOf(paramval)); });
}

STDMETHODIMP TransferObject::Trf_WriteUserNameRegistryProfile(BSTR param, BSTR paramval) {
  return Run([&] { core().Trf_WriteUserNameRegistryProfile(TextOf(param), TextOf(paramval)); });
}

STDMETHODIMP TransferObject::setLindex() {
  return Run([&] { core().setLindex(); });
}

STDMETHODIMP TransferObject::Trf_WriteUserProfileDefault(BSTR sSection, BSTR param, BSTR paramval) {
  return Run([&] { core().Trf_WriteUserProfileDefault(TextOf(sSection), TextOf(param), TextOf(paramval)); });
}

STDMETHODIMP TransferObject::Trf_ReadPluginUserProfile(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadPluginUserProfile(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadUserNameDBProfile(BSTR param, BSTR* value) {
  return Answer(value, [&] { return core().Trf_ReadUserNameDBProfile(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_WriteUserNameDBProfile(BSTR param, BSTR paramval) {
  return Run([&] { core().Trf_WriteUserNameDBProfile(TextOf(param), TextOf(paramval)); });
}

STDMETHODIMP TransferObject::Trf_ReadServerValues(BSTR param, short* value) {
  return Answer(value, [&] { return core().Trf_ReadServerValues(TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadOutputValue(BSTR sSection, BSTR param, short* value) {
  return Answer(value, [&] { return core().Trf_ReadOutputValue(TextOf(sSection), TextOf(param)); });
}

STDMETHODIMP TransferObject::Trf_ReadExchangeProfile(BSTR sSection, BSTR sKey, BSTR sFile, BSTR* value) {
  return Answer(
      value, [&] { return core().Trf_ReadExchangeProfile(TextOf(sSection), TextOf(sKey), TextOf(sFile)); });
}

}  // namespace ondura
