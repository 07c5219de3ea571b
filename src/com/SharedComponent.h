#pragma once

#include <memory>

#include "com/CallGate.h"
#include "machines/win32/Win32Machine.h"
#include "platform/forwarding.h"
#include "service/Component.h"

namespace ondura {

// The one instance of the component that all objects of the process work on, on the real machine.
class SharedComponent {
 public:
  SharedComponent();

  // Every use of the component happens after it.
  CallGate& gate() { return gate_; }
  Component& component() { return *component_; }

 private:
  // Where the component pumps messages, calls of other threads get in too.
  class OpeningPump : public ForwardingMessagePump {
   public:
    OpeningPump(MessagePump& next, CallGate& gate) : ForwardingMessagePump(next), gate_(gate) {}
    void Pump() override;

   private:
    CallGate& gate_;
  };

  CallGate gate_;
  std::unique_ptr<Win32Machine> machine_;
  OpeningPump pump_;
  std::unique_ptr<Component> component_;
};

}  // namespace ondura
