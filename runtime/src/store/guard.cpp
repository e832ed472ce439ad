// The handler of SIGBUS. It looks only at the table of ranges, whose words are set one by one, so
// that it may run at any time; faults elsewhere go to the handler that stood before.
#include "store/guard.hpp"

#include <sys/mman.h>

#include <csignal>
#include <cstdint>
#include <mutex>

namespace kelp::store {

namespace {

struct Range {
  std::atomic<std::uintptr_t> start{0};  // 0 for a free place
  std::atomic<std::size_t> length{0};
  std::atomic<std::atomic<bool> *> hit{nullptr};
};

Range ranges[kMostRanges];
std::mutex ranges_mutex;
struct sigaction previous;
bool installed = false;

constexpr std::uintptr_t kPage = 4096;

void pass_on(int signal, siginfo_t *information, void *context) {
  if ((previous.sa_flags & SA_SIGINFO) != 0 && previous.sa_sigaction != nullptr) {
    previous.sa_sigaction(signal, information, context);
  } else if (previous.sa_handler != SIG_DFL && previous.sa_handler != SIG_IGN) {
    previous.sa_handler(signal);
  } else {
    // The fault comes again, and then ends the process as it would have without this handler.
    std::signal(signal, SIG_DFL);
  }
}

void on_bus_error(int signal, siginfo_t *information, void *context) {
  const auto address = reinterpret_cast<std::uintptr_t>(information->si_addr);
  for (Range &range : ranges) {
    const std::uintptr_t start = range.start.load(std::memory_order_acquire);
    if (start == 0 || address < start || address - start >= range.length.load()) continue;
    void *page = reinterpret_cast<void *>(address & ~(kPage - 1));
    if (mmap(page, kPage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) ==
        MAP_FAILED) {
      break;
    }
    if (std::atomic<bool> *hit = range.hit.load()) hit->store(true);
    return;
  }
  pass_on(signal, information, context);
}

bool install() {
  if (installed) return true;
  struct sigaction action {};
  action.sa_sigaction = on_bus_error;
  action.sa_flags = SA_SIGINFO | SA_NODEFER;
  sigemptyset(&action.sa_mask);
  installed = sigaction(SIGBUS, &action, &previous) == 0;
  return installed;
}

}  // namespace

bool guard_range(void *start, std::size_t length, std::atomic<bool> *hit) {
  const std::lock_guard lock(ranges_mutex);
  if (!install()) return false;
  for (Range &range : ranges) {
    if (range.start.load() != 0) continue;
    range.hit.store(hit);
    range.length.store(length);
    range.start.store(reinterpret_cast<std::uintptr_t>(start), std::memory_order_release);
    return true;
  }
  return false;
}

void release_range(void *start) {
  const std::lock_guard lock(ranges_mutex);
  for (Range &range : ranges) {
    if (range.start.load() == reinterpret_cast<std::uintptr_t>(start)) range.start.store(0);
  }
}

}  // namespace kelp::store
