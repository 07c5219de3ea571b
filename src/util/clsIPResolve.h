#pragma once

#include <string>
#include <string_view>

#include "platform/Desktop.h"
#include "platform/NameResolution.h"

namespace ondura {

// Host names and their addresses. A failure shows a message box that nobody has to answer.
class clsIPResolve {
 public:
  clsIPResolve(NameResolution& names, Desktop& desktop) : names_(names), desktop_(desktop) {}

  // The first address, dotted; empty when the name is not known.
  std::string GetIPFromHostName(std::string_view sHostName);

  // Empty if the text is not an address or the address has no name.
  std::string GetHostNameFromIP(std::string_view sIPAddress);

  // True for a text of four parts between dots, whatever the parts are.
  static bool IsValidIPAddress(std::string_view sIPAddress);

 private:
  void Tell(std::string_view text);
  void TellFailedCleanUp(const NameLookup& lookup);

  NameResolution& names_;
  Desktop& desktop_;
};

}  // namespace ondura
