// Signals that ask a process to end (SIGINT, SIGTERM, SIGHUP) wait until what is to be taken away
// has been: they reach a process only in wait_for(), and end it, as they would have, with the
// scope.
#pragma once

#include <poll.h>
#include <signal.h>

#include <span>

namespace tree_exchange {

class EndingSignals {
 public:
  EndingSignals();
  // Ends the process when one came.
  ~EndingSignals();
  EndingSignals(const EndingSignals &) = delete;
  EndingSignals &operator=(const EndingSignals &) = delete;

  // As poll(), with -1 and EINTR for a signal that has come within any such scope.
  static int wait_for(std::span<pollfd> places, int milliseconds);
  static bool has_come();
};

}  // namespace tree_exchange
