// Trace records as bytes: packing them from an emitter's arguments and unpacking them again. The
// layout is described in kelp/trace.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kelp/trace.h"

namespace kelp::trace {

inline constexpr std::uint32_t kMagic = 0x54504c4b;
inline constexpr std::size_t kHeadBytes = 48;
inline constexpr std::uint32_t kHighestLevel = 7;
inline constexpr std::size_t kLongestText = 1024;
inline constexpr std::size_t kMostArguments = 3;
inline constexpr std::size_t kLongestRecord = kHeadBytes + kMostArguments * (8 + kLongestText);

// Packs an event; sets the length. The buffer holds kLongestRecord bytes. Gives the length.
std::size_t pack(const kelp_trace_event &event, std::uint8_t *buffer);

// What is wrong with bytes that should be a record.
struct Fault {
  const char *what = nullptr;  // null: nothing
  std::uint64_t found = 0;
  std::uint64_t expected = 0;
  bool cut = false;  // what is there is sound; more bytes would help, expected of them in all
};

// Unpacks the record at the start of the bytes. The event's texts point into them.
Fault unpack(const std::uint8_t *bytes, std::size_t available, kelp_trace_event *event,
             std::size_t *length);

// As unpack, but a record in which another one begins is torn: what followed its written part is
// that other one. After a fault that more bytes would not mend, length is how many bytes lead to
// the next place where a record may begin, at least 1.
Fault read(const std::uint8_t *bytes, std::size_t available, kelp_trace_event *event,
           std::size_t *length);

// The length that a packed record says it has.
std::size_t record_length(const std::uint8_t *record);

}  // namespace kelp::trace
