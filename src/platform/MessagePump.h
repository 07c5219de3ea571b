#pragma once

namespace ondura {

// Lets calls from outside through while the component waits: a host that asks for the end of the
// progress display gets its turn inside Pump.
//
// On Windows: PeekMessageA, TranslateMessage and DispatchMessageA until the queue is empty.
class MessagePump {
 public:
  virtual ~MessagePump() = default;

  // Returns at once if no message waits.
  virtual void Pump() = 0;
};

}  // namespace ondura
