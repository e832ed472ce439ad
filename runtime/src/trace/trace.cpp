// The process's trace: registered modules and their levels, the emitters, and where messages go.
#include "kelp/trace.h"

#include <atomic>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/failure.hpp"
#include "trace/record.hpp"
#include "trace/ring.hpp"

namespace kelp::trace {

namespace {

constexpr std::size_t kMostModules = 1024;
constexpr std::size_t kDefaultRingBytes = 64 * 1024;

struct Trace {
  std::mutex mutex;
  std::atomic<std::uint32_t> module_count = 0;
  std::string names[kMostModules + 1];  // by id; written once, before module_count
  std::atomic<std::uint8_t> levels[kMostModules + 1];
  std::unordered_map<std::string, std::uint8_t> wanted_levels;  // of modules not registered yet
  std::uint8_t default_level = KELP_TRACE_INFORMATION;
  Ring ring;
  std::FILE *file = nullptr;
  kelp_trace_callback sink = nullptr;
  void *sink_context = nullptr;
  kelp_trace_text_source text_source = nullptr;
  void *text_context = nullptr;
  std::uint64_t sequence = 0;

  Trace() {
    for (auto &level : levels) level = KELP_TRACE_INFORMATION;
    ring.resize(kDefaultRingBytes);
  }
};

// Never destroyed: libraries trace while the process ends.
Trace &the_trace() {
  static auto *const trace = new Trace;
  return *trace;
}

thread_local bool t_in_callback = false;

// Messages that a callback emits are dropped, or they would never end.
class InCallback {
 public:
  InCallback() { t_in_callback = true; }
  ~InCallback() { t_in_callback = false; }
};

std::uint8_t level_of(std::uint16_t module) {
  return the_trace().levels[module <= kMostModules ? module : 0].load(std::memory_order_relaxed);
}

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
  if (level > level_of(module) || t_in_callback) return;
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
  if (trace.file != nullptr) {
    std::fwrite(record, 1, length, trace.file);
    if (level == KELP_TRACE_FATAL) std::fflush(trace.file);
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

// Hands out records that lie one behind the other. Gives how many; fault tells what stopped it.
std::uint64_t hand_out(const std::uint8_t *bytes, std::size_t size, kelp_trace_callback callback,
                       void *context, Fault *fault, std::size_t *offset) {
  std::uint64_t count = 0;
  const InCallback guard;
  for (*offset = 0; *offset < size;) {
    kelp_trace_event event;
    std::size_t length = 0;
    *fault = unpack(bytes + *offset, size - *offset, &event, &length);
    if (fault->what != nullptr) break;
    ++count;
    if (callback != nullptr && callback(context, &event) != 0) break;
    *offset += length;
  }
  return count;
}

// What is wrong, in words.
struct Complaint {
  explicit Complaint(const Fault &fault) {
    const char *form = fault.expected == kMagic ? "%s: found 0x%" PRIx64 ", expected 0x%" PRIx64
                                                : "%s: found %" PRIu64 ", expected %" PRIu64;
    std::snprintf(text, sizeof text, form, fault.what, fault.found, fault.expected);
  }
  char text[128];
};

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

using kelp::trace::number_argument;
using kelp::trace::pointer_argument;
using kelp::trace::text_argument;
using kelp::trace::the_trace;

extern "C" void xlog_module_init_fn(const char *name, uint32_t *id_word, uint32_t *level_word) {
  if (name == nullptr || id_word == nullptr) return;
  kelp::trace::Trace &trace = the_trace();
  // Called with every object that is made: a module that is known costs one comparison.
  uint32_t id = __atomic_load_n(id_word, __ATOMIC_RELAXED);
  const bool known = id != 0 && id <= trace.module_count.load(std::memory_order_acquire) &&
                     trace.names[id] == name;
  if (!known) {
    id = 0;
    kelp::without_exceptions([&] { id = kelp::trace::register_module(trace, name); });
  }
  kelp::trace::update_word(id_word, id);
  kelp::trace::update_word(level_word, trace.levels[id].load(std::memory_order_relaxed));
}

extern "C" uint32_t xlog_module_test(uint16_t module, uint32_t level) {
  return level <= kelp::trace::level_of(module) ? 1 : 0;
}

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

extern "C" int32_t kelp_trace_set_level(const char *module_name, uint32_t level) {
  if (level > kelp::trace::kHighestLevel) return KELP_ERR_INVALID;
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  const auto value = static_cast<uint8_t>(level);
  if (module_name == nullptr) {
    trace.default_level = value;
    trace.wanted_levels.clear();
    for (auto &module_level : trace.levels) module_level = value;
    return 0;
  }
  const uint32_t id = kelp::trace::find_module(trace, module_name);
  if (id != 0) {
    trace.levels[id] = value;
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

extern "C" void kelp_trace_set_sink(kelp_trace_callback sink, void *context) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.sink = sink;
  trace.sink_context = context;
}

extern "C" void kelp_trace_set_text_source(kelp_trace_text_source source, void *context) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.text_source = source;
  trace.text_context = context;
}

extern "C" int32_t kelp_trace_set_ring_size(size_t bytes) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  return trace.ring.resize(bytes) ? 0 : KELP_ERR_NO_MEMORY;
}

extern "C" void kelp_trace_clear_ring(void) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  trace.ring.clear();
}

extern "C" uint64_t kelp_trace_read_ring(kelp_trace_callback callback, void *context) {
  kelp::trace::Trace &trace = the_trace();
  std::vector<uint8_t> records;
  const bool done = kelp::without_exceptions([&] {
    const std::lock_guard lock(trace.mutex);
    records.resize(trace.ring.used());
    trace.ring.copy_to(records.data());
  });
  if (!done) return 0;
  kelp::trace::Fault fault;
  size_t offset = 0;
  return kelp::trace::hand_out(records.data(), records.size(), callback, context, &fault, &offset);
}

extern "C" int32_t kelp_trace_open_file(const char *path, kelp_error *error) {
  kelp::trace::Trace &trace = the_trace();
  std::FILE *opened = nullptr;
  if (path != nullptr) {
    opened = std::fopen(path, "abe");
    if (opened == nullptr) {
      return kelp::fail(error, errno, "kelp_trace_open_file: '%s': %s, expected a file to write to",
                        path, std::strerror(errno));
    }
  }
  std::FILE *closed = nullptr;
  {
    const std::lock_guard lock(trace.mutex);
    closed = trace.file;
    trace.file = opened;
  }
  if (closed != nullptr && std::fclose(closed) != 0) {
    return kelp::fail(error, errno, "kelp_trace_open_file: closing the file before: %s",
                      std::strerror(errno));
  }
  return kelp::succeed(error);
}

extern "C" void kelp_trace_flush(void) {
  kelp::trace::Trace &trace = the_trace();
  const std::lock_guard lock(trace.mutex);
  if (trace.file != nullptr) std::fflush(trace.file);
}

extern "C" int32_t kelp_trace_read_record(const uint8_t *bytes, size_t size,
                                          kelp_trace_event *event, size_t *length,
                                          kelp_error *error) {
  constexpr const char *kFunction = "kelp_trace_read_record";
  if (bytes == nullptr || event == nullptr || length == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: found a null argument, expected an address",
                      kFunction);
  }
  const kelp::trace::Fault fault = kelp::trace::unpack(bytes, size, event, length);
  if (fault.what == nullptr) return kelp::succeed(error);
  if (fault.cut) *length = fault.expected;
  return kelp::fail(error, fault.cut ? KELP_ERR_AGAIN : KELP_ERR_INVALID, "%s: %s", kFunction,
                    kelp::trace::Complaint(fault).text);
}

extern "C" int32_t kelp_trace_read_file(const char *path, kelp_trace_callback callback,
                                        void *context, kelp_error *error) {
  constexpr const char *kFunction = "kelp_trace_read_file";
  if (path == nullptr) return kelp::fail(error, KELP_ERR_INVALID, "%s: no path", kFunction);
  const std::unique_ptr<std::FILE, int (*)(std::FILE *)> file(std::fopen(path, "rbe"),
                                                              &std::fclose);
  if (file == nullptr) {
    return kelp::fail(error, errno, "%s: '%s': %s, expected a trace file", kFunction, path,
                      std::strerror(errno));
  }
  // Read in pieces: a record that a piece cuts through is completed by the next one.
  constexpr size_t kPiece = 256 * 1024;
  std::vector<uint8_t> bytes;
  size_t kept = 0;
  uint64_t base = 0;
  for (;;) {
    size_t got = 0;
    const bool done = kelp::without_exceptions([&] {
      bytes.resize(kept + kPiece);
      got = std::fread(bytes.data() + kept, 1, kPiece, file.get());
    });
    if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
    if (got == 0 && std::ferror(file.get()) != 0) {
      return kelp::fail(error, errno, "%s: '%s': %s", kFunction, path, std::strerror(errno));
    }
    const size_t available = kept + got;
    const bool last = got < kPiece;
    const size_t whole = last || available < kelp::trace::kLongestRecord
                             ? available
                             : available - kelp::trace::kLongestRecord;
    bool ended = false;
    size_t offset = 0;
    while (offset < whole && !ended) {
      kelp_trace_event event;
      size_t length = 0;
      const kelp::trace::Fault fault =
          kelp::trace::unpack(bytes.data() + offset, available - offset, &event, &length);
      if (fault.what != nullptr) {
        return kelp::fail(error, KELP_ERR_INVALID, "%s: '%s' at byte %" PRIu64 ": %s", kFunction,
                          path, base + offset, kelp::trace::Complaint(fault).text);
      }
      const kelp::trace::InCallback guard;
      ended = callback != nullptr && callback(context, &event) != 0;
      offset += length;
    }
    if (ended || last) return kelp::succeed(error);
    kept = available - offset;
    std::memmove(bytes.data(), bytes.data() + offset, kept);
    base += offset;
  }
}
