#include "com/DummyCallObject.h"

#include "com/com_variant.h"

namespace ondura {

STDMETHODIMP DummyCallObject::DoDummycall(BSTR sExeName, double* value) {
  return Answer(value, [&] { return core_.DoDummycall(TextOf(sExeName)); });
}

STDMETHODIMP DummyCallObject::CreateTempFolder(BSTR sCurrentUser, BSTR sPostfix) {
  return Run([&] { core_.CreateTempFolder(TextOf(sCurrentUser), TextOf(sPostfix)); });
}

STDMETHODIMP DummyCallObject::GetTempFolderPath(BSTR* path) {
  return Answer(path, [&] { return core_.GetTempFolderPath(); });
}

STDMETHODIMP DummyCallObject::DeleteInputOutFilesInTempFd() {
  return Run([&] { core_.DeleteInputOutFilesInTempFd(); });
}

STDMETHODIMP DummyCallObject::DeleteTempFolder() {
  return Run([&] { core_.DeleteTempFolder(); });
}

STDMETHODIMP DummyCallObject::ResdDLLOutputFile(VARIANT* bResult, VARIANT* lValue, VARIANT* strDescrip) {
  return Run([&] {
    const EngineFileResult result = core_.ResdDLLOutputFile();
    Assign(bResult, Variant(result.bResult));
    if (result.lValue) Assign(lValue, Variant(*result.lValue));
    if (result.strDescrip) Assign(strDescrip, Variant(std::string_view{*result.strDescrip}));
  });
}

}  // namespace ondura
