#include "com/TextStreamWriter.h"

#include "com/com_variant.h"
#include "text/utf16.h"

namespace ondura {

TextStreamWriter::TextStreamWriter(IDispatch* stream) : stream_(stream) {
  std::wstring name = L"Write";
  LPOLESTR names = name.data();
  if (stream == nullptr || FAILED(stream->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &write_))) {
    throw ComError{DISP_E_TYPEMISMATCH};
  }
}

bool TextStreamWriter::Append(std::string_view bytes) {
  Variant text{std::string_view{FromUtf16(bytes)}};
  DISPPARAMS arguments{text.get(), nullptr, 1, 0};
  return SUCCEEDED(stream_->Invoke(write_, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments,
                                   nullptr, nullptr, nullptr));
}

}  // namespace ondura
