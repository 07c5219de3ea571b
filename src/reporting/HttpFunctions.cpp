#include "reporting/HttpFunctions.h"

#include "profile/Deployment.h"
#include "reporting/web_texts.h"
#include "text/text.h"
#include "util/TextFiles.h"

namespace ondura {

namespace {

constexpr std::uint16_t kNotificationPort = 11900;
constexpr std::int16_t kEmailProduct = 2;
constexpr std::uint32_t kResponseLimit = 256;

bool IsLetterOrDigit(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9');
}

std::string TwoHexDigits(char byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto code = static_cast<unsigned char>(byte);
  return {kDigits[code >> 4U], kDigits[code & 0xFU]};
}

}  // namespace

bool HttpFunctions::SendEmail(std::string_view emailid, std::string_view subject, std::string_view content,
                              std::string_view sToEmail) {
  AddParam("EMAIL", emailid, false);
  AddParam("SUBJECT", subject, false);
  AddParam("CONTENT", content, true);
  std::string_view path = "/cgi-bin/Notify";
  if (installation_.ProductNumber == kEmailProduct) {
    path = "/cgi-bin/Notify_email_ondura";
    if (!Trim(sToEmail).empty()) {
      AddParam("user_email", sToEmail, false);
      path = "/cgi-bin/Notify_unicode";
    }
  }
  const Deployment deployment = ReadDeployment(machine_, installation_);
  if (!deployment.NotificationAuthority.empty()) TrustAuthorityIn(deployment.NotificationAuthority);
  const bool is_sent = PostForm(deployment.NotificationHost, path, parameters_, 2, false);
  parameters_.clear();
  return is_sent;
}

// Without the authority the post goes on: the system's own store may hold it as well.
void HttpFunctions::TrustAuthorityIn(const std::string& path) {
  const auto certificate = machine_.files.Read(path);
  if (certificate && machine_.web.TrustAuthority(*certificate)) return;
  trace_.User("  The certificate authority of the notification host was not accepted: " + path);
}

std::string HttpFunctions::HttpErrorText(std::uint32_t nError) {
  if (nError == kInternetExtendedError) {
    if (const auto response = machine_.web.LastResponse(kResponseLimit)) return StripNull(*response);
  }
  return std::string{InternetErrorText(nError)};
}

std::string HttpFunctions::StripNull(std::string_view sText) {
  return std::string{sText.substr(0, sText.find('\0'))};
}

// The line end between two fields is part of what the notification host expects.
void HttpFunctions::AddParam(std::string_view sName, std::string_view sValue, bool bRaw) {
  const bool is_first = parameters_.empty();
  if (!is_first) parameters_.append(kLineEnd).append("&");
  parameters_.append(sName).append("=");
  parameters_.append(bRaw && !is_first ? std::string{sValue} : EncodeFormValue(sValue));
}

std::string HttpFunctions::EncodeFormValue(std::string_view sValue) {
  std::string encoded;
  for (const char byte : machine_.code_page.FromUtf8(Trim(sValue))) {
    encoded += IsLetterOrDigit(byte) ? std::string{byte} : "%" + TwoHexDigits(byte);
  }
  return encoded;
}

// A call that fails leaves an invalid handle, with which the later ones fail too, and the last of them
// says why. The session stays open.
bool HttpFunctions::PostForm(std::string_view sHost, std::string_view sPath, std::string_view sBody,
                             int /*nMode*/, bool bNoResult) {
  WebRequests& web = machine_.web;
  const InternetHandle session = web.Open({.agent = "http generic", .access_type = 0, .proxy_name = ""});
  const InternetHandle connection = web.Connect(session, sHost, kNotificationPort);
  const InternetHandle request = web.OpenRequest(
      connection,
      {.verb = "POST", .object = sPath, .version = "HTTP/1.0", .flags = kRequestReload | kRequestSecure});
  web.AddHeaders(request, "Content-Type: application/x-www-form-urlencoded\r\n", kAddOrReplaceHeader);
  const bool is_sent = web.Send(request, machine_.code_page.FromUtf8(sBody));
  if (!is_sent) TellFailure(web.LastError());
  web.Close(request);
  web.Close(connection);
  return is_sent && !bNoResult;
}

void HttpFunctions::TellFailure(std::uint32_t error) {
  error_text_.dav_seterrorstring(HttpErrorText(error != 0 ? error : kInternetCannotConnect));
  trace_.User("  Email was not sent: " + error_text_.ErrorText());
}

}  // namespace ondura
