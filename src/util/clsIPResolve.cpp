#include "util/clsIPResolve.h"

#include "text/text.h"

namespace ondura {

namespace {

constexpr std::string_view kBoxTitle = "OnduraEService";
constexpr std::string_view kNoSocket = "Failed to open Socket";
constexpr std::size_t kAddressParts = 4;

}  // namespace

std::string clsIPResolve::GetIPFromHostName(std::string_view sHostName) {
  const NameLookup lookup = names_.AddressOf(sHostName);
  if (!lookup.started || !lookup.found) Tell(kNoSocket);
  TellFailedCleanUp(lookup);
  return lookup.found.value_or("");
}

std::string clsIPResolve::GetHostNameFromIP(std::string_view sIPAddress) {
  const NameLookup lookup = names_.NameOf(sIPAddress);
  if (!lookup.started) {
    Tell(kNoSocket);
  } else if (!lookup.is_address) {
    // The failed reading of an address has no message of its own: the box stays empty.
    Tell("");
  }
  TellFailedCleanUp(lookup);
  return lookup.found.value_or("");
}

bool clsIPResolve::IsValidIPAddress(std::string_view sIPAddress) {
  // A part that is no byte does not stop the count, so "a.b.c.d" passes.
  return Split(sIPAddress, ".").size() == kAddressParts;
}

void clsIPResolve::TellFailedCleanUp(const NameLookup& lookup) {
  if (lookup.started && !lookup.cleaned_up) Tell("Error calling apiWSACleanup.");
}

void clsIPResolve::Tell(std::string_view text) { desktop_.ShowMessage(text, kBoxTitle, MessageIcon::kNone); }

}  // namespace ondura
