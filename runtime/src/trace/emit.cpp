// The emitters: a message becomes a record in the ring and the file, and goes to the sink.
#include <cstdio>
#include <cstring>
#include <ctime>
#include <initializer_list>
#include <mutex>

#include "trace/record.hpp"
#include "trace/trace.hpp"

namespace kelp::trace {

namespace {

kelp_trace_argument text_argument(const char *text) {
  kelp_trace_argument argument = {};
  argument.kind = 1;
  argument.text = text == nullptr ? "(null)" : text;
  argument.text_length = static_cast<std::uint32_t>(strnlen(argument.text, kLongestText));
  return argument;
}

kelp_trace_argument number_argument(std::uint32_t number) {
  kelp_trace_argument argument = {};
  argument.kind = 4;
  argument.number = number;
  return argument;
}

kelp_trace_argument pointer_argument(const void *pointer) {
  kelp_trace_argument argument = {};
  argument.kind = 5;
  argument.pointer = reinterpret_cast<std::uintptr_t>(pointer);
  return argument;
}

// The last words of a process, for whoever sees only its standard error.
void report_fatal(const kelp_trace_event &event, kelp_trace_text_source source, void *context) {
  const char *text = source == nullptr ? nullptr : source(context, event.identity, event.index);
  char line[512];
  if (text != nullptr) {
    kelp_trace_format(&event, text, line, sizeof line);
  } else {
    int length = std::snprintf(line, sizeof line, "message %u of source ", event.index);
    for (const std::uint8_t byte : event.identity) {
      length += std::snprintf(line + length, sizeof line - static_cast<std::size_t>(length), "%02x",
                              byte);
    }
    for (std::size_t i = 0; i < event.argument_count; ++i) {
      static constexpr const char *kFormats[] = {", %s", ", %u", ", %p"};
      const std::size_t form = event.arguments[i].kind == 1 ? 0 : event.arguments[i].kind - 3;
      kelp_trace_event one = event;
      one.arguments[0] = event.arguments[i];
      one.argument_count = 1;
      const std::size_t used = std::strlen(line);
      kelp_trace_format(&one, kFormats[form], line + used, sizeof line - used);
    }
  }
  const char *name = kelp_trace_module_name(event.module);
  std::fprintf(stderr, "fatal: %s: %s\n", name == nullptr ? "(unregistered)" : name, line);
}

void emit(const std::uint8_t *identity, std::uint32_t index, std::uint16_t module,
          std::uint32_t level_word, std::initializer_list<kelp_trace_argument> arguments) {
  const std::uint32_t level = level_word >> 24;
  if (level > level_of(module) || in_callback()) return;
  kelp_trace_event event = {};
  timespec now = {};
  clock_gettime(CLOCK_REALTIME, &now);
  event.time_ns = static_cast<std::uint64_t>(now.tv_sec) * UINT64_C(1000000000) +
                  static_cast<std::uint64_t>(now.tv_nsec);
  if (identity != nullptr) std::memcpy(event.identity, identity, sizeof event.identity);
  event.index = index;
  event.module = module;
  event.level = static_cast<std::uint8_t>(level);
  for (const kelp_trace_argument &argument : arguments) {
    event.signature[event.argument_count] = static_cast<char>('0' + argument.kind);
    event.arguments[event.argument_count++] = argument;
  }
  if (event.argument_count == 0) event.signature[0] = '0';

  Trace &trace = the_trace();
  std::unique_lock lock(trace.mutex);
  event.sequence = ++trace.sequence;
  std::uint8_t record[kLongestRecord];
  const std::size_t length = pack(event, record);
  trace.ring.add(record, length);
  if (trace.file.is_open()) {
    trace.file.add(record, length);
    if (level == KELP_TRACE_FATAL) trace.file.write_out();
  }
  const auto sink = trace.sink;
  const auto sink_context = trace.sink_context;
  const auto text_source = trace.text_source;
  const auto text_context = trace.text_context;
  lock.unlock();

  const InCallback guard;
  if (sink != nullptr) sink(sink_context, &event);
  if (level == KELP_TRACE_FATAL) report_fatal(event, text_source, text_context);
}

}  // namespace

}  // namespace kelp::trace

using kelp::trace::number_argument;
using kelp::trace::pointer_argument;
using kelp::trace::text_argument;

extern "C" void __XLf_0(const uint8_t *identity, uint32_t index, uint16_t module,
                        uint32_t level_word) {
  kelp::trace::emit(identity, index, module, level_word, {});
}

extern "C" void __XLf_1(const uint8_t *identity, uint32_t index, uint16_t module,
                        uint32_t level_word, const char *a) {
  kelp::trace::emit(identity, index, module, level_word, {text_argument(a)});
}

extern "C" void __XLf_4(const uint8_t *identity, uint32_t index, uint16_t module,
                        uint32_t level_word, uint32_t a) {
  kelp::trace::emit(identity, index, module, level_word, {number_argument(a)});
}

extern "C" void __XLf_5(const uint8_t *identity, uint32_t index, uint16_t module,
                        uint32_t level_word, const void *a) {
  kelp::trace::emit(identity, index, module, level_word, {pointer_argument(a)});
}

extern "C" void __XLf_11(const uint8_t *identity, uint32_t index, uint16_t module,
                         uint32_t level_word, const char *a, const char *b) {
  kelp::trace::emit(identity, index, module, level_word, {text_argument(a), text_argument(b)});
}

extern "C" void __XLf_14(const uint8_t *identity, uint32_t index, uint16_t module,
                         uint32_t level_word, const char *a, uint32_t b) {
  kelp::trace::emit(identity, index, module, level_word, {text_argument(a), number_argument(b)});
}

extern "C" void __XLf_44(const uint8_t *identity, uint32_t index, uint16_t module,
                         uint32_t level_word, uint32_t a, uint32_t b) {
  kelp::trace::emit(identity, index, module, level_word, {number_argument(a), number_argument(b)});
}

extern "C" void __XLf_444(const uint8_t *identity, uint32_t index, uint16_t module,
                          uint32_t level_word, uint32_t a, uint32_t b, uint32_t c) {
  kelp::trace::emit(identity, index, module, level_word,
                    {number_argument(a), number_argument(b), number_argument(c)});
}

extern "C" void __XLf_51(const uint8_t *identity, uint32_t index, uint16_t module,
                         uint32_t level_word, const void *a, const char *b) {
  kelp::trace::emit(identity, index, module, level_word, {pointer_argument(a), text_argument(b)});
}
