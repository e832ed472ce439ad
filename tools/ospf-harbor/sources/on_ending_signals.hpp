// While it lives, signals that ask a program to end (SIGINT, SIGTERM) call a function and end
// nothing.
#pragma once

#include <signal.h>

namespace tool {

class OnEndingSignals {
 public:
  explicit OnEndingSignals(void (*function)(int)) {
    struct sigaction action {};
    action.sa_handler = function;
    sigaction(SIGINT, &action, &interrupt_before_);
    sigaction(SIGTERM, &action, &terminate_before_);
  }
  ~OnEndingSignals() {
    sigaction(SIGINT, &interrupt_before_, nullptr);
    sigaction(SIGTERM, &terminate_before_, nullptr);
  }
  OnEndingSignals(const OnEndingSignals &) = delete;
  OnEndingSignals &operator=(const OnEndingSignals &) = delete;

 private:
  struct sigaction interrupt_before_ {};
  struct sigaction terminate_before_ {};
};

}  // namespace tool
