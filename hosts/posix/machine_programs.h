#pragma once

#include <string>

#include "host_options.h"
#include "platform/machine.h"

namespace ondura {

// The service says whether its twin is there by the name of a running program of the machine, and a
// machine's programs are those that lie in its folder. Unless this program is that one already, it is copied
// to the place that the configuration names and run from there instead, under the same process id.
//
// Does not return then. Otherwise returns the reason why the twin can't be run, or an empty text when it may
// go on as it is; a machine without a product configuration is left to the start-up to report.
std::string RunFromInsideMachine(const Machine& machine, const HostOptions& options, char** argv);

// Mails are sent by a program of their own in the install folder. Where none lies there, the one that lies
// beside this program is copied to it; one that is there stays, whoever brought it.
//
// Returns why the mails of this machine will be lost, or an empty text.
std::string InstallMailHelper(const Machine& machine, const HostOptions& options);

}  // namespace ondura
