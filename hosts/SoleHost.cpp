#include "SoleHost.h"

#include <algorithm>

#include "text/text.h"

namespace ondura {

namespace {

bool RunsTwice(Processes& processes, std::string_view program) {
  const auto table = processes.List(ProcessSource::kSnapshot);
  return std::ranges::count_if(table, [&](const ProcessEntry& process) {
           return EqualsIgnoringCase(process.base_name, program);
         }) > 1;
}

}  // namespace

SoleHost::SoleHost(const Machine& machine, std::string_view product, std::string_view kind,
                   std::string_view program)
    : mutexes_(machine.mutexes),
      mutex_(mutexes_.Create("Global\\" + std::string{product} + " " + std::string{kind} + " host")) {
  const bool is_taken = mutex_ != 0 ? !mutexes_.Wait(mutex_, std::chrono::milliseconds{0})
                                    : RunsTwice(machine.processes, program);
  if (!is_taken) return;
  refusal_ =
      "another " + std::string{kind} +
      " host runs on this machine already, and two would run the same backup twice. End that one first, "
      "or leave the backups to it.";
}

SoleHost::~SoleHost() {
  if (mutex_ != 0) mutexes_.Close(mutex_);
}

}  // namespace ondura
