// Trace calls of the module. A call passes an index and raw arguments; texts are applied when a
// trace is read. The type side and the table side are two sources with an identity each.
#pragma once

#include <kelp/trace.h>

#include <cstdint>
#include <cstdlib>

#include "module/messages.hpp"

extern "C" std::uint32_t g_kelp_ospf_harbor_oper_trace_module_id;

namespace harbor {

struct TraceSource {
  std::uint8_t identity[16];
};
extern const TraceSource type_source;
extern const TraceSource table_source;

using messages::Level;

// The module's id as call sites read it: the low 16 bits, 0 before any registration.
inline std::uint16_t trace_module() {
  return static_cast<std::uint16_t>(g_kelp_ospf_harbor_oper_trace_module_id);
}

// The signature of the message decides which of these is called.
inline void trace(const TraceSource &source, Level level, std::uint32_t index) {
  __XLf_0(source.identity, index, trace_module(), static_cast<std::uint32_t>(level));
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index, const char *text) {
  __XLf_1(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), text);
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index,
                  std::uint32_t number) {
  __XLf_4(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), number);
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index, std::uint32_t first,
                  std::uint32_t second) {
  __XLf_44(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), first,
           second);
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index, std::uint32_t first,
                  std::uint32_t second, std::uint32_t third) {
  __XLf_444(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), first,
            second, third);
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index, const void *pointer,
                  const char *text) {
  __XLf_51(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), pointer,
           text);
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index, const char *first,
                  const char *second) {
  __XLf_11(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), first,
           second);
}
inline void trace(const TraceSource &source, Level level, std::uint32_t index, const char *text,
                  std::uint32_t number) {
  __XLf_14(source.identity, index, trace_module(), static_cast<std::uint32_t>(level), text, number);
}

// A fault that means corrupted memory or a mismatched build: the message, then the end.
[[noreturn]] inline void die(const TraceSource &source, std::uint32_t index) {
  trace(source, Level::fatal, index);
  std::abort();
}

// Registers the module with the trace library; meant to be repeated, and inline where the handle
// says so.
void register_trace(const kelp_handle *handle);

}  // namespace harbor
