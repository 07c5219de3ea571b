#include "com/SharedComponent.h"

namespace ondura {

namespace {

Machine WithPump(const Machine& machine, MessagePump& pump) {
  return {machine.clock,     pump,           machine.files,    machine.folders,
          machine.watches,   machine.drives, machine.profiles, machine.registry,
          machine.processes, machine.system, machine.locale,   machine.code_page,
          machine.internet,  machine.crypto, machine.services, machine.desktop,
          machine.power,     machine.names,  machine.mutexes,  machine.continuous_backup,
          machine.web};
}

}  // namespace

void SharedComponent::OpeningPump::Pump() {
  const CallGate::Pause pause(gate_);
  ForwardingMessagePump::Pump();
}

SharedComponent::SharedComponent()
    : machine_(MakeWin32Machine()),
      pump_(machine_->machine().pump, gate_),
      component_(std::make_unique<Component>(WithPump(machine_->machine(), pump_))) {}

}  // namespace ondura
