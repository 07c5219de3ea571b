#pragma once

#include "service/ServiceContext.h"

namespace ondura {

// The tray application of the product, in the session of the person at the machine.
bool TrayRuns(ServiceContext& context);
void OpenTray(ServiceContext& context);

}  // namespace ondura
