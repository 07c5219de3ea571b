#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/machine.h"
#include "profile/Installation.h"
#include "reporting/ErrorTextSlot.h"
#include "reporting/Trace.h"

namespace ondura {

// Mail by way of the notification host: a form posted over TLS. Texts are UTF-8; what is posted is in the
// system code page.
class HttpFunctions {
 public:
  HttpFunctions(const Machine& machine, const Installation& installation, ErrorTextSlot& error_text,
                Trace& trace)
      : machine_(machine), installation_(installation), error_text_(error_text), trace_(trace) {}

  // Posts a mail to one address; the content goes as it is. True when the post went out, which says nothing
  // of the mail. After a failure the reason is in the error text and in the user's trace.
  bool SendEmail(std::string_view emailid, std::string_view subject, std::string_view content,
                 std::string_view sToEmail);

  // The sentence for an error of the platform's internet calls.
  std::string HttpErrorText(std::uint32_t nError);

  // The text before its first NUL.
  [[nodiscard]] static std::string StripNull(std::string_view sText);

  // Adds a field to the form. bRaw leaves the value as it is, except in the first field.
  void AddParam(std::string_view sName, std::string_view sValue, bool bRaw);

  // ASCII letters and digits as they are, every other byte of the trimmed value in the system code page as
  // "%" and two hexadecimal digits.
  std::string EncodeFormValue(std::string_view sValue);

  // Posts a form in a session of its own. True when it went out; always false with bNoResult. Every mode
  // posts alike.
  bool PostForm(std::string_view sHost, std::string_view sPath, std::string_view sBody, int nMode,
                bool bNoResult);

 private:
  void TrustAuthorityIn(const std::string& path);
  void TellFailure(std::uint32_t error);

  Machine machine_;
  const Installation& installation_;
  ErrorTextSlot& error_text_;
  Trace& trace_;
  std::string parameters_;
};

}  // namespace ondura
