#pragma once

#include <string>

#include "engine/engine_results.h"
#include "job/job_texts.h"
#include "text/text.h"

namespace ondura {

// The job's result text for a failed command 24 or 28. A connection that can't be made has a text of its own
// for each command.
inline std::string FailureText(EngineResult result, std::string_view cannot_connect_text,
                               std::string_view product_name) {
  using namespace engine_results;
  if (result == kCannotConnect) return std::string{cannot_connect_text};
  if (result == kWrongEncryptionPassword) return std::string{job_texts::kBadEncryptionPassword};
  if (result == engine_results::kDamagedInstallation) {
    return ReplaceAll(job_texts::kDamagedInstallation, job_texts::kProductWord, product_name);
  }
  return std::string{result == kWrongPassword ? job_texts::kBadPassword : job_texts::kProxyFailure};
}

}  // namespace ondura
