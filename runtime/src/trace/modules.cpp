// The modules of the trace: registering them, and their levels.
#include <cstring>

#include "base/failure.hpp"
#include "kelp/quick.hpp"
#include "trace/record.hpp"
#include "trace/trace.hpp"

std::uint32_t kelp_trace_edition = 1;

namespace kelp::trace {

std::uint8_t level_of(std::uint16_t module) {
  return the_trace().levels[module <= kMostModules ? module : 0].load(std::memory_order_relaxed);
}

namespace {

// Whoever sees it sees what was written before.
void begin_edition() { __atomic_fetch_add(&kelp_trace_edition, 1, __ATOMIC_RELEASE); }

std::uint32_t find_module(const Trace &trace, const char *name) {
  const std::uint32_t count = trace.module_count.load(std::memory_order_acquire);
  for (std::uint32_t id = 1; id <= count; ++id) {
    if (trace.names[id] == name) return id;
  }
  return 0;
}

// The module's id, given out now when it is new; 0 when there is no more room.
std::uint32_t register_module(Trace &trace, const char *name) {
  const std::lock_guard lock(trace.mutex);
  std::uint32_t id = find_module(trace, name);
  if (id != 0 || trace.module_count.load() == kMostModules) return id;
  id = trace.module_count.load() + 1;
  trace.names[id] = name;
  const auto wanted = trace.wanted_levels.find(name);
  trace.levels[id] = wanted == trace.wanted_levels.end() ? trace.default_level : wanted->second;
  trace.module_count.store(id, std::memory_order_release);
  return id;
}

// Modules read these words plainly, from any thread, so a word that is right is not written again.
void update_word(std::uint32_t *word, std::uint32_t value) {
  if (word == nullptr || __atomic_load_n(word, __ATOMIC_RELAXED) == value) return;
  __atomic_store_n(word, value, __ATOMIC_RELAXED);
}

}  // namespace

}  // namespace kelp::trace

using kelp::trace::the_trace;

// The id of a module that is new, or whose word says something else.
[[gnu::noinline]] static std::uint32_t find_or_register(kelp::trace::Trace &trace,
                                                        const char *name) {
  std::uint32_t id = 0;
  kelp::without_exceptions([&] { id = kelp::trace::register_module(trace, name); });
  return id;
}

extern "C" void xlog_module_init_fn(const char *name, uint32_t *id_word, uint32_t *level_word) {
  if (name == nullptr || id_word == nullptr) return;
  kelp::trace::Trace &trace = the_trace();
  // Called with every object that is made: a module that is known costs one comparison.
  uint32_t id = __atomic_load_n(id_word, __ATOMIC_RELAXED);
  const bool known = id != 0 && id <= trace.module_count.load(std::memory_order_acquire) &&
                     std::strcmp(trace.names[id].c_str(), name) == 0;
  if (!known) [[unlikely]]
    id = find_or_register(trace, name);
  kelp::trace::update_word(id_word, id);
  kelp::trace::update_word(level_word, trace.levels[id].load(std::memory_order_relaxed));
}

extern "C" uint32_t xlog_module_test(uint16_t module, uint32_t level) {
  return level <= kelp::trace::level_of(module) ? 1 : 0;
}

extern "C" int32_t kelp_trace_set_level(const char *module_name, uint32_t level) {
  if (level > kelp::trace::kHighestLevel) return KELP_ERR_INVALID;
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  const auto value = static_cast<uint8_t>(level);
  if (module_name == nullptr) {
    trace.default_level = value;
    trace.wanted_levels.clear();
    for (auto &module_level : trace.levels) module_level = value;
    kelp::trace::begin_edition();
    return 0;
  }
  const uint32_t id = kelp::trace::find_module(trace, module_name);
  if (id != 0) {
    trace.levels[id] = value;
    kelp::trace::begin_edition();
    return 0;
  }
  const bool done = kelp::without_exceptions([&] { trace.wanted_levels[module_name] = value; });
  return done ? 0 : KELP_ERR_NO_MEMORY;
}

extern "C" const char *kelp_trace_module_name(uint16_t module) {
  kelp::trace::Trace &trace = the_trace();
  if (module == 0 || module > trace.module_count.load(std::memory_order_acquire)) return nullptr;
  return trace.names[module].c_str();
}
