#pragma once

#include <wrl/client.h>

#include "com/automation.h"
#include "platform/Files.h"

namespace ondura {

// An open text stream of the caller's scripting file system as a file of UTF-16 text.
class TextStreamWriter : public FileWriter {
 public:
  // Throws DISP_E_TYPEMISMATCH for an object that can't be written to.
  explicit TextStreamWriter(IDispatch* stream);

  bool Append(std::string_view bytes) override;

 private:
  Microsoft::WRL::ComPtr<IDispatch> stream_;
  DISPID write_ = DISPID_UNKNOWN;
};

}  // namespace ondura
