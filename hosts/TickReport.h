#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace ondura {

// Keeps a host going when one of its ticks fails: the failure is reported, and the next tick is a new try.
// A failure that repeats is reported once, and so is the first tick that goes well again.
//
// `Report` takes the text for a person: void(std::string_view).
template <class Report>
class TickReport {
 public:
  explicit TickReport(Report report) : report_(std::move(report)) {}

  template <class Tick>
  void Run(const Tick& tick) {
    try {
      tick();
    } catch (const std::exception& error) {
      if (error.what() != last_) report_(error.what() + std::string{" The host goes on with its next tick."});
      last_ = error.what();
      return;
    }
    if (!last_.empty()) report_("the ticks go well again.");
    last_.clear();
  }

 private:
  Report report_;
  std::string last_;
};

}  // namespace ondura
