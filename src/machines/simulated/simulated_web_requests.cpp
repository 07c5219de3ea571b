#include <utility>

#include "machines/simulated/simulated_ports.h"

namespace ondura {

InternetHandle SimulatedWebRequests::Add(Level level, InternetHandle parent, SentWebRequest known) {
  handles_[++last_handle_] = {level, parent, std::move(known), {}};
  return last_handle_;
}

SimulatedWebRequests::Handle* SimulatedWebRequests::Find(InternetHandle handle, Level level) {
  const auto found = handles_.find(handle);
  if (found != handles_.end() && found->second.level == level) return &found->second;
  last_error_ = kInternetInvalidHandle;
  return nullptr;
}

bool SimulatedWebRequests::FailWith(std::uint32_t error) {
  last_error_ = error;
  return false;
}

InternetHandle SimulatedWebRequests::Open(const WebSession& session) {
  SentWebRequest known;
  known.agent = session.agent;
  return Add(Level::kSession, kNoInternet, std::move(known));
}

InternetHandle SimulatedWebRequests::Connect(InternetHandle session, std::string_view host,
                                             std::uint16_t port) {
  const Handle* const opened = Find(session, Level::kSession);
  if (opened == nullptr) return kNoInternet;
  if (host.empty()) {
    FailWith(kInternetInvalidParameter);
    return kNoInternet;
  }
  SentWebRequest known = opened->known;
  known.host = host;
  known.port = port;
  return Add(Level::kConnection, session, std::move(known));
}

InternetHandle SimulatedWebRequests::OpenRequest(InternetHandle connection, const WebRequest& request) {
  const Handle* const opened = Find(connection, Level::kConnection);
  if (opened == nullptr) return kNoInternet;
  SentWebRequest known = opened->known;
  known.verb = request.verb;
  known.object = request.object;
  known.version = request.version;
  known.flags = request.flags;
  return Add(Level::kRequest, connection, std::move(known));
}

bool SimulatedWebRequests::AddHeaders(InternetHandle request, std::string_view headers,
                                      std::uint32_t /*flags*/) {
  Handle* const opened = Find(request, Level::kRequest);
  if (opened == nullptr) return false;
  if (headers.find(':') == std::string_view::npos) return FailWith(kInternetInvalidHeader);
  opened->known.headers.emplace_back(headers);
  return true;
}

bool SimulatedWebRequests::SetNumber(InternetHandle handle, InternetOption option, std::uint32_t value) {
  const auto found = handles_.find(handle);
  if (found == handles_.end()) return FailWith(kInternetInvalidHandle);
  found->second.known.numbers[option] = value;
  return true;
}

bool SimulatedWebRequests::SetText(InternetHandle handle, InternetOption option, std::string_view value) {
  const auto found = handles_.find(handle);
  if (found == handles_.end()) return FailWith(kInternetInvalidHandle);
  found->second.known.texts[option] = value;
  return true;
}

bool SimulatedWebRequests::Notify(InternetOption option) {
  surroundings_.web_notices.push_back(option);
  return true;
}

bool SimulatedWebRequests::Send(InternetHandle request, std::string_view body) {
  Handle* const opened = Find(request, Level::kRequest);
  if (opened == nullptr) return false;
  opened->known.body = body;
  const WebAnswer answer =
      surroundings_.on_web_request ? surroundings_.on_web_request(opened->known) : WebAnswer{};
  surroundings_.web_requests.push_back(opened->known);
  if (answer.error != 0) return FailWith(answer.error);
  opened->answer = answer;
  return true;
}

std::optional<std::uint32_t> SimulatedWebRequests::StatusCode(InternetHandle request) {
  const Handle* const opened = Find(request, Level::kRequest);
  if (opened == nullptr || !opened->answer) return std::nullopt;
  return opened->answer->status;
}

std::optional<std::string> SimulatedWebRequests::Header(InternetHandle request, std::uint32_t number) {
  const Handle* const opened = Find(request, Level::kRequest);
  if (opened == nullptr || !opened->answer) return std::nullopt;
  const auto found = opened->answer->headers.find(number);
  return found == opened->answer->headers.end() ? std::nullopt : std::optional{found->second};
}

std::optional<std::string> SimulatedWebRequests::LastResponse(std::uint32_t limit) {
  if (!surroundings_.web_last_response) return std::nullopt;
  return surroundings_.web_last_response->substr(0, limit);
}

void SimulatedWebRequests::Close(InternetHandle handle) {
  handles_.erase(handle);
  std::vector<InternetHandle> below;
  for (const auto& [number, opened] : handles_) {
    if (handle != kNoInternet && opened.parent == handle) below.push_back(number);
  }
  for (const InternetHandle child : below) Close(child);
}

bool SimulatedWebRequests::TrustAuthority(std::string_view certificate) {
  if (certificate.find("-----BEGIN CERTIFICATE-----") == std::string_view::npos) return false;
  surroundings_.trusted_authorities.emplace_back(certificate);
  return true;
}

}  // namespace ondura
