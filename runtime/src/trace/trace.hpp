// The process's trace: its modules and their levels, and where messages go.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

#include "kelp/trace.h"
#include "trace/file.hpp"
#include "trace/ring.hpp"

namespace kelp::trace {

inline constexpr std::size_t kMostModules = 1024;
inline constexpr std::size_t kDefaultRingBytes = 64 * 1024;

struct Trace {
  std::mutex mutex;
  std::atomic<std::uint32_t> module_count = 0;
  std::string names[kMostModules + 1];  // by id; written once, before module_count
  std::atomic<std::uint8_t> levels[kMostModules + 1];
  std::unordered_map<std::string, std::uint8_t> wanted_levels;  // of modules not registered yet
  std::uint8_t default_level = KELP_TRACE_INFORMATION;
  Ring ring;
  File file;
  kelp_trace_callback sink = nullptr;
  void *sink_context = nullptr;
  kelp_trace_text_source text_source = nullptr;
  void *text_context = nullptr;
  std::uint64_t sequence = 0;

  Trace();
};

// Never destroyed: libraries trace while the process ends.
Trace &the_trace();

// The level up to which a module's messages are kept; an unknown module has that of 0.
std::uint8_t level_of(std::uint16_t module);

// Messages that a callback emits are dropped, or they would never end. Callbacks may read the trace
// and so lead to further ones.
class InCallback {
 public:
  InCallback();
  ~InCallback();
  InCallback(const InCallback &) = delete;
  InCallback &operator=(const InCallback &) = delete;

 private:
  bool before_;
};
bool in_callback();

}  // namespace kelp::trace
