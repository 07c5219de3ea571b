#include "machines/posix/ports.h"

namespace ondura {

namespace {

class PosixClock : public Clock {
 public:
  PosixClock(LocalZone& zone, int speed) : zone_(zone), speed_(speed) {}

  LocalTime Now() override { return zone_.Now(); }

  std::chrono::minutes UtcOffset(LocalTime local) override { return LocalZone::OffsetOf(local); }

  void Sleep(std::chrono::milliseconds duration) override {
    if (duration.count() > 0) Deadline{std::chrono::nanoseconds{duration} / speed_}.SleepUntil();
  }

 private:
  LocalZone& zone_;
  int speed_;
};

class PosixMessagePump : public MessagePump {
 public:
  explicit PosixMessagePump(std::function<void()> pump) : pump_(std::move(pump)) {}

  void Pump() override {
    if (pump_) pump_();
  }

 private:
  std::function<void()> pump_;
};

}  // namespace

std::unique_ptr<Clock> MakePosixClock(LocalZone& zone, int speed) {
  return std::make_unique<PosixClock>(zone, speed);
}

std::unique_ptr<MessagePump> MakePosixMessagePump(std::function<void()> pump) {
  return std::make_unique<PosixMessagePump>(std::move(pump));
}

}  // namespace ondura
