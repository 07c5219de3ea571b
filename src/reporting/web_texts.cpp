#include "reporting/web_texts.h"

#include <algorithm>
#include <array>

namespace ondura {

namespace {

struct FileErrorRow {
  std::int32_t number;
  std::string_view text;
};

constexpr std::array kFileErrors{
    FileErrorRow{52, "Bad file name or number."}, FileErrorRow{53, "File not found."},
    FileErrorRow{54, "Bad file mode."},           FileErrorRow{55, "File already open."},
    FileErrorRow{57, "Device I/O error."},        FileErrorRow{68, "Device unavailable."},
    FileErrorRow{70, "Permission Denied."},       FileErrorRow{71, "Disk Not Ready."},
    FileErrorRow{75, "Path/File Access Error."},  FileErrorRow{76, "Path not found."},
};

constexpr std::string_view kAnyVerb;
constexpr std::string_view kNoText;
constexpr std::string_view kUnknown = "Unknown Error has occured.";
constexpr std::string_view kUnknownWithCode = "Unknown Error has occured. : ";
// One blank fewer than above, as the user interface knows it.
constexpr std::string_view kUnknownPrecondition = "Unknown Error has occured. :";

// Of the rows that fit, the first counts; where none does, the error is unknown and its code is told.
struct StatusRow {
  std::int32_t code;
  std::string_view verb;
  std::string_view text;
};

constexpr std::array kStatuses{
    StatusRow{207, "DELETE", "An unknown error occured during deletion."},
    StatusRow{207, kAnyVerb, kUnknown},
    StatusRow{400, kAnyVerb, "Bad request."},
    StatusRow{401, "PROPFIND", kNoText},
    StatusRow{401, kAnyVerb, "The request requires user authentication."},
    StatusRow{403, "MKCOL", "The request is forbidden"},
    StatusRow{403, "PROPFIND", kNoText},
    StatusRow{403, kAnyVerb, "The request is forbidden."},
    StatusRow{404, kAnyVerb, kUnknown},
    StatusRow{405, "MKCOL", "The specified directory name already exists."},
    StatusRow{405, kAnyVerb, kUnknown},
    StatusRow{406, kAnyVerb,
              "Not Acceptable. The resource identified by the request is only capable of generating response "
              "entities which have content characteristics not acceptable according to the accept headers "
              "sent in the request."},
    StatusRow{407, kAnyVerb,
              "Proxy authentication required. This error is similar to Unauthorized, but indicates that the "
              "client MUST first authenticate itself with the proxy."},
    StatusRow{408, kAnyVerb,
              "Request timeout. The client did not produce a request within the time that the server was "
              "prepared to wait. The client MAY repeat the request without modifications at any later time."},
    StatusRow{409, "MOVE", "Till one or more intermediate collections have been created."},
    StatusRow{409, "MKCOL", "One or more intermediate collections have to be created."},
    // The colon belongs to the verb here, and here alone: a plain "COPY" is unknown.
    StatusRow{409, "COPY:",
              "Could not copy the resource (till one or more intermediate collections have been created.)"},
    StatusRow{410, kAnyVerb,
              "The requested resource is no longer available at the Tolmera server and no forwarding address "
              "is known. This condition SHOULD be considered permanent."},
    StatusRow{411, kAnyVerb,
              "Length required. The Tolmera server refuses to accept the request without a defined Content- "
              "Length."},
    StatusRow{412, "MOVE", "The name specified already exists in the same folder."},
    StatusRow{412, "COPY", "The name specified already exists in the same folder."},
    StatusRow{412, kAnyVerb, kUnknownPrecondition},
    StatusRow{413, kAnyVerb,
              "Request entity too large. The Tolmera server is refusing to process a request because the "
              "request entity is larger than the server is willing or able to process. The server may close "
              "the connection to prevent the client from continuing the request."},
    StatusRow{414, kAnyVerb,
              "Request-URL Too Long. The Tolmera server is refusing to service the request because the "
              "Request-URI is longer than the server is willing to interpret."},
    StatusRow{415, "MKCOL", "The Tolmera server does not support the request type of the body."},
    StatusRow{423, "MOVE", "The source or the destination resource was locked."},
    StatusRow{423, "COPY", "The source or the destination resource was locked."},
    StatusRow{
        502, "MOVE",
        "This may occur when the destination is on another server and the destination server refuses to "
        "accept the resource."},
    StatusRow{
        502, "COPY",
        "This may occur when the destination is on another server and the destination server refuses to "
        "accept the resource."},
    StatusRow{
        503, kAnyVerb,
        "Service Unavailable. The Tolmera server is currently unable to handle the request due to a "
        "temporary overloading or maintenance of the server. The implication is that this is a temporary "
        "condition which will be alleviated after some delay."},
    StatusRow{
        507, "MKCOL",
        "(Insufficient Storage) - The resource does not have sufficient space to record the state of the "
        "resource after the execution of this method."},
};

struct InternetErrorRow {
  std::uint32_t number;
  std::string_view text;
};

// Some texts end in a blank.
constexpr std::array kInternetErrors{
    InternetErrorRow{12001, "No more handles could be generated at this time"},
    InternetErrorRow{12002, "The request has timed out."},
    InternetErrorRow{12003, "Extended error returned from server."},
    InternetErrorRow{12004, "An internal error has occurred."},
    InternetErrorRow{12005, "URL is invalid."},
    InternetErrorRow{12006, "URL scheme could not be recognized, or is not supported."},
    InternetErrorRow{12007, "Server name could not be resolved."},
    InternetErrorRow{12008, "Requested protocol could not be located."},
    InternetErrorRow{
        12009, "Request to InternetQueryOption or InternetSetOption specified an invalid option value."},
    InternetErrorRow{
        12010,
        "Length of an option supplied to InternetQueryOption or InternetSetOption is incorrect for the "
        "type of option specified."},
    InternetErrorRow{12011, "Request option can not be set, only queried. "},
    InternetErrorRow{12012, "Win32 Internet support is being shutdown or unloaded."},
    InternetErrorRow{
        12013,
        "Request to connect and login to an FTP server could not be completed because the supplied "
        "user name is incorrect."},
    InternetErrorRow{
        12014,
        "Request to connect and login to an FTP server could not be completed because the supplied "
        "password is incorrect. "},
    InternetErrorRow{12015, "Request to connect to and login to an FTP server failed."},
    InternetErrorRow{12016, "Requested operation is invalid. "},
    InternetErrorRow{
        12017,
        "Operation was canceled, usually because the handle on which the request was operating was "
        "closed before the operation completed."},
    InternetErrorRow{12018, "Type of handle supplied is incorrect for this operation."},
    InternetErrorRow{
        12019,
        "Requested operation can not be carried out because the handle supplied is not in the correct "
        "state."},
    InternetErrorRow{12020, "Request can not be made via a proxy."},
    InternetErrorRow{12021, "Required registry value could not be located. "},
    InternetErrorRow{12022,
                     "Required registry value was located but is an incorrect type or has an invalid value."},
    InternetErrorRow{12023, "Direct network access cannot be made at this time. "},
    InternetErrorRow{12024,
                     "Asynchronous request could not be made because a zero context value was supplied."},
    InternetErrorRow{12025,
                     "Asynchronous request could not be made because a callback function has not been set."},
    InternetErrorRow{12026,
                     "Required operation could not be completed because one or more requests are pending."},
    InternetErrorRow{12027, "Format of the request is invalid."},
    InternetErrorRow{12028, "Requested item could not be located."},
    InternetErrorRow{12029, "Attempt to connect to the server failed."},
    InternetErrorRow{12030, "Connection with the server has been terminated."},
    InternetErrorRow{12031, "Connection with the server has been reset."},
    InternetErrorRow{12036, "Request failed because the handle already exists."},
};

template <class Rows>
std::string_view TextOf(const Rows& rows, auto number, std::string_view otherwise) {
  const auto row = std::ranges::find(rows, number, [](const auto& one) { return one.number; });
  return row != rows.end() ? row->text : otherwise;
}

}  // namespace

std::string_view FileErrorText(std::int32_t number) { return TextOf(kFileErrors, number, ""); }

std::string_view InternetErrorText(std::uint32_t number) {
  return TextOf(kInternetErrors, number, "Error details not available.");
}

std::optional<std::string> WebStatusText(std::int32_t code, std::string_view verb) {
  const auto row = std::ranges::find_if(kStatuses, [&](const StatusRow& one) {
    return one.code == code && (one.verb == kAnyVerb || one.verb == verb);
  });
  if (row == kStatuses.end()) return std::string{kUnknownWithCode}.append(std::to_string(code));
  if (row->text == kNoText) return std::nullopt;
  if (row->text == kUnknownPrecondition) return std::string{row->text}.append(std::to_string(code));
  return std::string{row->text};
}

}  // namespace ondura
