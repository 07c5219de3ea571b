#pragma once

#include "job/EngineCommands.h"
#include "job/JobEndStatus.h"
#include "job/JobServices.h"
#include "job/StatusKeys.h"
#include "job/TempFolder.h"
#include "job/job_state.h"

namespace ondura {

// The job's state with the tools that every step of the road uses on it.
struct JobContext {
  explicit JobContext(const JobServices& job_services)
      : services(job_services),
        keys(services.transfer, services.store, services.machine.clock),
        temp_folder(services.machine, services.installation, state.memory.temp_folder_path),
        engine(services, state, keys, temp_folder),
        end_status(services, state, keys) {}
  JobContext(const JobContext&) = delete;
  JobContext& operator=(const JobContext&) = delete;

  // Short names for what nearly every step needs.
  [[nodiscard]] Machine& machine() { return services.machine; }
  [[nodiscard]] Installation& installation() const { return services.installation; }
  [[nodiscard]] Trace& trace() const { return services.trace; }

  JobServices services;
  JobState state;
  StatusKeys keys;
  TempFolder temp_folder;
  EngineCommands engine;
  JobEndStatus end_status;
};

}  // namespace ondura
