// Reading records back: out of the ring, out of bytes, out of a file.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <vector>

#include "base/failure.hpp"
#include "trace/record.hpp"
#include "trace/trace.hpp"

namespace kelp::trace {

namespace {

// Hands out records that lie one behind the other. Gives how many.
std::uint64_t hand_out(const std::vector<std::uint8_t> &records, kelp_trace_callback callback,
                       void *context) {
  std::uint64_t count = 0;
  const InCallback guard;
  for (std::size_t offset = 0; offset < records.size();) {
    kelp_trace_event event;
    std::size_t length = 0;
    if (unpack(&records[offset], records.size() - offset, &event, &length).what != nullptr) break;
    ++count;
    if (callback != nullptr && callback(context, &event) != 0) break;
    offset += length;
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

// The bytes of a file, a piece at a time; what is not used of one is in front of the next.
class Pieces {
 public:
  explicit Pieces(const char *path) : descriptor_(::open(path, O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ < 0) code_ = errno;
  }
  ~Pieces() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  Pieces(const Pieces &) = delete;
  Pieces &operator=(const Pieces &) = delete;

  // errno of what stopped the reading, 0 for nothing.
  int code() const { return code_; }
  // Whether the file ends with the bytes that are there.
  bool at_end() const { return at_end_; }
  const std::uint8_t *bytes() const { return bytes_.data() + used_; }
  std::size_t available() const { return filled_ - used_; }
  // Where in the file the bytes begin.
  std::uint64_t offset() const { return base_ + used_; }
  void use(std::size_t length) { used_ += length; }

  // Reads more. False when nothing can be read any more.
  bool fill() {
    if (code_ != 0 || at_end_) return false;
    constexpr std::size_t kPiece = 256 * 1024;
    base_ += used_;
    filled_ -= used_;
    if (filled_ != 0) std::memmove(bytes_.data(), bytes_.data() + used_, filled_);
    used_ = 0;
    if (!without_exceptions([&] { bytes_.resize(filled_ + kPiece); })) {
      code_ = ENOMEM;
      return false;
    }
    ssize_t got = 0;
    do {
      got = ::read(descriptor_, bytes_.data() + filled_, kPiece);
    } while (got < 0 && errno == EINTR);
    if (got < 0) code_ = errno;
    at_end_ = got == 0;
    filled_ += got > 0 ? static_cast<std::size_t>(got) : 0;
    return code_ == 0;
  }

 private:
  int descriptor_;
  int code_ = 0;
  bool at_end_ = false;
  std::vector<std::uint8_t> bytes_;
  std::size_t filled_ = 0;
  std::size_t used_ = 0;
  std::uint64_t base_ = 0;
};

// One reading of a file: what it found, and the first thing that was wrong.
class Scan {
 public:
  Scan(kelp_trace_callback callback, void *context) : callback_(callback), context_(context) {}

  void run(Pieces &pieces) {
    while (!ended_ && pieces.fill()) {
      // A record, and one that begins within it, are looked at whole.
      const std::size_t needed = pieces.at_end() ? 1 : 2 * kLongestRecord;
      while (!ended_ && pieces.available() >= needed) step(pieces);
    }
  }

  const kelp_trace_file_report &report() const { return report_; }
  const Fault &fault() const { return fault_; }
  std::uint64_t fault_at() const { return fault_at_; }

 private:
  void step(Pieces &pieces) {
    kelp_trace_event event;
    std::size_t length = 0;
    const Fault fault = read(pieces.bytes(), pieces.available(), &event, &length);
    if (fault.what == nullptr) {
      ++report_.records;
      in_damage_ = false;
      const InCallback guard;
      ended_ = callback_ != nullptr && callback_(context_, &event) != 0;
    } else {
      if (fault.cut) length = pieces.available();  // the last that the file holds
      if (fault_.what == nullptr) {
        fault_ = fault;
        fault_at_ = pieces.offset();
      }
      report_.bytes_passed_over += length;
      if (!in_damage_) ++report_.places_passed_over;
      in_damage_ = true;
    }
    pieces.use(length);
  }

  kelp_trace_callback callback_;
  void *context_;
  kelp_trace_file_report report_ = {};
  Fault fault_;
  std::uint64_t fault_at_ = 0;
  bool in_damage_ = false;
  bool ended_ = false;
};

std::int32_t scan_file(const char *function, const char *path, kelp_trace_callback callback,
                       void *context, kelp_trace_file_report *report, kelp_error *error) {
  if (report != nullptr) *report = {};
  if (path == nullptr) return fail(error, KELP_ERR_INVALID, "%s: no path", function);
  Pieces pieces(path);
  if (pieces.code() != 0) {
    return fail(error, pieces.code(), "%s: '%s': %s, expected a trace file", function, path,
                std::strerror(pieces.code()));
  }
  Scan scan(callback, context);
  scan.run(pieces);
  const kelp_trace_file_report &found = scan.report();
  if (report != nullptr) *report = found;
  if (pieces.code() == KELP_ERR_NO_MEMORY) {
    return fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", function);
  }
  if (pieces.code() != 0) {
    return fail(error, pieces.code(), "%s: '%s': %s", function, path, std::strerror(pieces.code()));
  }
  if (scan.fault().what == nullptr) return succeed(error);
  const Complaint complaint(scan.fault());
  if (found.records == 0) {
    return fail(error, KELP_ERR_INVALID, "%s: '%s' at byte %" PRIu64 ": %s", function, path,
                scan.fault_at(), complaint.text);
  }
  return fail(error, 0,
              "%s: '%s': passed over %" PRIu64 " bytes in %" PRIu64
              " places, the first at byte %" PRIu64 ": %s",
              function, path, found.bytes_passed_over, found.places_passed_over, scan.fault_at(),
              complaint.text);
}

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
  return done ? kelp::trace::hand_out(records, callback, context) : 0;
}

extern "C" int32_t kelp_trace_read_record(const uint8_t *bytes, size_t size,
                                          kelp_trace_event *event, size_t *length,
                                          kelp_error *error) {
  constexpr const char *kFunction = "kelp_trace_read_record";
  if (bytes == nullptr || event == nullptr || length == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: found a null argument, expected an address",
                      kFunction);
  }
  const kelp::trace::Fault fault = kelp::trace::read(bytes, size, event, length);
  if (fault.what == nullptr) return kelp::succeed(error);
  if (fault.cut) *length = fault.expected;
  return kelp::fail(error, fault.cut ? KELP_ERR_AGAIN : KELP_ERR_INVALID, "%s: %s", kFunction,
                    kelp::trace::Complaint(fault).text);
}

extern "C" int32_t kelp_trace_read_file(const char *path, kelp_trace_callback callback,
                                        void *context, kelp_error *error) {
  return kelp::trace::scan_file("kelp_trace_read_file", path, callback, context, nullptr, error);
}

extern "C" int32_t kelp_trace_scan_file(const char *path, kelp_trace_callback callback,
                                        void *context, kelp_trace_file_report *report,
                                        kelp_error *error) {
  return kelp::trace::scan_file("kelp_trace_scan_file", path, callback, context, report, error);
}
