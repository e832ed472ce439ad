// A function of the runtime is replaced when the process finds another one under its name: the
// loader gives that to the modules, while the runtime's own calls stay inside.
#include "database/quick.hpp"

#include <dlfcn.h>

#include <algorithm>
#include <iterator>

#include "kelp/quick_text.hpp"

namespace kelp {

bool are_own_functions() {
  struct Function {
    const char *name;
    const void *own;
  };
#define KELP_NAMED(function) {#function, reinterpret_cast<const void *>(&function)},
  static const bool own = [] {
    const Function functions[] = {KELP_QUICK_FUNCTIONS(KELP_NAMED)};
    return std::all_of(std::begin(functions), std::end(functions), [](const Function &function) {
      const void *found = dlsym(RTLD_DEFAULT, function.name);
      return found == nullptr || found == function.own;
    });
  }();
#undef KELP_NAMED
  return own;
}

void settle_quick(kelp_handle_state &state) {
  kelp_quick &quick = state.quick;
  const bool heard = state.pool.observer != nullptr || state.pool.hear != nullptr;
  quick.unheard_pool = heard ? nullptr : &state.pool;
  quick.unheard_write = heard ? nullptr : state.own_write_notify;
  quick.unheard_counter = heard ? nullptr : state.own_counter_notify;
  const bool by_store = state.pool.observer == nullptr && state.pool.hear != nullptr;
  quick.store_pool = by_store ? &state.pool : nullptr;
  quick.store_write = by_store ? state.own_write_notify : nullptr;
  quick.free_variants = state.domain.is_empty() ? &state.domain : nullptr;
}

}  // namespace kelp
