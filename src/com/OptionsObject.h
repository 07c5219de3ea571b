#pragma once

#include "com/DispatchObject.h"

namespace ondura {

// The class Options of the type library.
class OptionsObject : public DispatchObject<IOptions> {
 public:
  STDMETHODIMP WriteTrace(BSTR TraceMsg) override;
  STDMETHODIMP WriteTraceMain(BSTR TraceMsg) override;
  STDMETHODIMP WriteTraceFile(BSTR TraceMsg) override;
  STDMETHODIMP WriteTraceService(BSTR TraceMsg) override;
  STDMETHODIMP Writeintofile(BSTR sFilepath, BSTR sentry) override;

 private:
  [[nodiscard]] Options& core() const { return component().context().trace().plain(); }
};

}  // namespace ondura
