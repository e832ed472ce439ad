// Reading records back: out of the ring, out of bytes, out of a file.
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

#include "base/failure.hpp"
#include "trace/record.hpp"
#include "trace/trace.hpp"

namespace kelp::trace {

namespace {

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

}  // namespace

}  // namespace kelp::trace

using kelp::trace::the_trace;

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
