#include "com/OptionsObject.h"

namespace ondura {

STDMETHODIMP OptionsObject::WriteTrace(BSTR TraceMsg) {
  return Run([&] { core().WriteTrace(TextOf(TraceMsg)); });
}

STDMETHODIMP OptionsObject::WriteTraceMain(BSTR TraceMsg) {
  return Run([&] { core().WriteTraceMain(TextOf(TraceMsg)); });
}

STDMETHODIMP OptionsObject::WriteTraceFile(BSTR TraceMsg) {
  return Run([&] { core().WriteTraceFile(TextOf(TraceMsg)); });
}

STDMETHODIMP OptionsObject::WriteTraceService(BSTR TraceMsg) {
  return Run([&] { core().WriteTraceService(TextOf(TraceMsg)); });
}

STDMETHODIMP OptionsObject::Writeintofile(BSTR sFilepath, BSTR sentry) {
  return Run([&] { core().Writeintofile(TextOf(sFilepath), TextOf(sentry)); });
}

}  // namespace ondura
