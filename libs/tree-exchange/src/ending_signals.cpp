#include "tree_exchange/ending_signals.hpp"

#include <array>
#include <cerrno>
#include <ctime>

namespace tree_exchange {

namespace {

constexpr std::array ending_signals{SIGINT, SIGTERM, SIGHUP};

volatile sig_atomic_t signal_come = 0;
sigset_t mask_before;
bool signals_are_kept = false;
std::array<struct sigaction, ending_signals.size()> actions_before;

void keep_signal(int number) { signal_come = number; }

}  // namespace

EndingSignals::EndingSignals() {
  sigset_t kept;
  sigemptyset(&kept);
  for (const int number : ending_signals) sigaddset(&kept, number);
  sigprocmask(SIG_BLOCK, &kept, &mask_before);
  signal_come = 0;
  for (std::size_t at = 0; at < ending_signals.size(); ++at) {
    sigaction(ending_signals[at], nullptr, &actions_before[at]);
    if (actions_before[at].sa_handler == SIG_IGN) continue;
    struct sigaction action {};
    action.sa_handler = keep_signal;
    sigaction(ending_signals[at], &action, nullptr);
  }
  signals_are_kept = true;
}

EndingSignals::~EndingSignals() {
  signals_are_kept = false;
  for (std::size_t at = 0; at < ending_signals.size(); ++at) {
    sigaction(ending_signals[at], &actions_before[at], nullptr);
  }
  if (signal_come != 0) raise(signal_come);
  sigprocmask(SIG_SETMASK, &mask_before, nullptr);
}

int EndingSignals::wait_for(std::span<pollfd> places, int milliseconds) {
  const timespec time{milliseconds / 1000, milliseconds % 1000 * 1'000'000L};
  return ppoll(places.data(), places.size(), milliseconds < 0 ? nullptr : &time,
               signals_are_kept ? &mask_before : nullptr);
}

bool EndingSignals::has_come() { return signals_are_kept && signal_come != 0; }

}  // namespace tree_exchange
