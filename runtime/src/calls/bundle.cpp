// The registered handlers of bundles, for the whole process, and the delivery to them.
#include <algorithm>
#include <mutex>
#include <vector>

#include "base/failure.hpp"
#include "base/undying.hpp"
#include "kelp/core.h"
#include "kelp/embed.h"

namespace {

struct Registration {
  void *handler;
  void *context;
  uint64_t flags;
};

struct Registrations {
  std::mutex mutex;
  std::vector<Registration> list;

  auto find(void *handler, void *context) {
    return std::find_if(list.begin(), list.end(), [&](const Registration &known) {
      return known.handler == handler && known.context == context;
    });
  }
};

// Never destroyed: libraries take their handlers out while the process ends.
Registrations &registrations() { return kelp::undying<Registrations>(); }

}  // namespace

extern "C" void tarn_comm_bundle_handler_register(void *handler, void *context, uint64_t flags) {
  if (handler == nullptr) return;
  Registrations &all = registrations();
  const std::lock_guard lock(all.mutex);
  const auto known = all.find(handler, context);
  if (known != all.list.end()) {
    known->flags = flags;
    return;
  }
  kelp::without_exceptions([&] { all.list.push_back({handler, context, flags}); });
}

extern "C" void tarn_comm_bundle_handler_unregister(void *handler, void *context, uint64_t flags) {
  (void)flags;
  Registrations &all = registrations();
  const std::lock_guard lock(all.mutex);
  const auto known = all.find(handler, context);
  if (known != all.list.end()) all.list.erase(known);
}

extern "C" uint32_t kelp_bundle_deliver(const void *bundle, size_t length) {
  // The list is copied, so that a handler may register and unregister.
  std::vector<Registration> called;
  kelp::without_exceptions([&] {
    Registrations &all = registrations();
    const std::lock_guard lock(all.mutex);
    called = all.list;
  });
  for (const Registration &registration : called) {
    const auto handler = reinterpret_cast<kelp_bundle_handler>(registration.handler);
    handler(registration.context, bundle, length, registration.flags);
  }
  return static_cast<uint32_t>(called.size());
}
