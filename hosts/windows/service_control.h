#pragma once

#include <chrono>
#include <string>

namespace ondura {

// What a person does with the installed service; each throws HostError with the reason why it can't.

// `command_line` is what the service manager starts. The service starts with the system.
void InstallService(const std::string& name, const std::string& command_line);

// Returns when the service runs, with product and component found. One that runs already is left alone.
void StartInstalledService(const std::string& name, std::chrono::seconds limit);

// Returns when the service has stopped, also when somebody else has asked it to; a job that is running ends
// first, which may take longer than `limit`.
void StopInstalledService(const std::string& name, std::chrono::seconds limit);

// Has Windows start the service again when it breaks off or stops with an error.
void RecoverService(const std::string& name);

// A service that still runs is gone once it has stopped.
void RemoveService(const std::string& name);

}  // namespace ondura
