#include "com/SharedComponent.h"

namespace ondura {

void SharedComponent::OpeningPump::Pump() {
  const CallGate::Pause pause(gate_);
  ForwardingMessagePump::Pump();
}

SharedComponent::SharedComponent()
    : machine_(MakeWin32Machine()),
      pump_(machine_->machine().pump, gate_),
      component_(std::make_unique<Component>(With(machine_->machine(), pump_))) {}

}  // namespace ondura
