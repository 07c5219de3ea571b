#include "SoleProgram.h"

#include "HostError.h"
#include "own_program.h"

namespace ondura {

SoleProgram::SoleProgram(std::string_view product, std::string_view kind)
    : place_(machine_->machine(), product, kind, OwnName()) {
  if (!place_.refusal().empty()) throw HostError(place_.refusal(), kExitSecondHost);
}

}  // namespace ondura
