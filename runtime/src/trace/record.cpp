// Packing and unpacking of trace records. Every length is checked against what is there before it
// is used, since files come from anywhere.
#include "trace/record.hpp"

#include <algorithm>
#include <cstring>

namespace kelp::trace {

namespace {

constexpr std::uint8_t kText = 1;
constexpr std::uint8_t kNumber = 4;
constexpr std::uint8_t kPointer = 5;

constexpr std::size_t padded(std::size_t length) { return (length + 7) / 8 * 8; }

template <typename Number>
void put(std::uint8_t *at, Number value) {
  for (std::size_t i = 0; i < sizeof value; ++i) {
    at[i] = static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> (8 * i));
  }
}

template <typename Number>
Number get(const std::uint8_t *at) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(Number); ++i) value |= std::uint64_t{at[i]} << (8 * i);
  return static_cast<Number>(value);
}

std::size_t bytes_of(const kelp_trace_argument &argument) {
  if (argument.kind == kText) return std::min<std::size_t>(argument.text_length, kLongestText);
  return argument.kind == kNumber ? 4 : 8;
}

}  // namespace

std::size_t pack(const kelp_trace_event &event, std::uint8_t *buffer) {
  std::size_t at = kHeadBytes;
  for (std::size_t i = 0; i < event.argument_count; ++i) {
    const kelp_trace_argument &argument = event.arguments[i];
    const std::size_t length = bytes_of(argument);
    put<std::uint32_t>(buffer + at, argument.kind);
    put<std::uint32_t>(buffer + at + 4, static_cast<std::uint32_t>(length));
    at += 8;
    std::memset(buffer + at, 0, padded(length));
    if (argument.kind == kText) {
      std::memcpy(buffer + at, argument.text, length);
    } else if (argument.kind == kNumber) {
      put<std::uint32_t>(buffer + at, argument.number);
    } else {
      put<std::uint64_t>(buffer + at, argument.pointer);
    }
    at += padded(length);
  }
  put<std::uint32_t>(buffer, kMagic);
  put<std::uint32_t>(buffer + 4, static_cast<std::uint32_t>(at));
  put<std::uint64_t>(buffer + 8, event.time_ns);
  std::memcpy(buffer + 16, event.identity, sizeof event.identity);
  put<std::uint32_t>(buffer + 32, event.index);
  put<std::uint16_t>(buffer + 36, event.module);
  buffer[38] = event.level;
  buffer[39] = event.argument_count;
  put<std::uint64_t>(buffer + 40, event.sequence);
  return at;
}

namespace {

// The argument at *at of a record's bytes; moves *at behind it.
Fault unpack_argument(const std::uint8_t *bytes, std::size_t total, std::size_t *at,
                      kelp_trace_argument *argument) {
  if (total - *at < 8) return {"bytes left for an argument", total - *at, 8};
  const auto kind = get<std::uint32_t>(bytes + *at);
  const std::size_t size = get<std::uint32_t>(bytes + *at + 4);
  *at += 8;
  if (kind != kText && kind != kNumber && kind != kPointer) {
    return {"kind of an argument, 4 or 5 or", kind, kText};
  }
  argument->kind = static_cast<std::uint8_t>(kind);
  const std::size_t expected = kind == kText     ? std::min({size, total - *at, kLongestText})
                               : kind == kNumber ? 4
                                                 : 8;
  if (size != expected) return {"length of an argument", size, expected};
  if (padded(size) > total - *at) return {"bytes left for an argument", total - *at, padded(size)};
  if (kind == kText) {
    argument->text = reinterpret_cast<const char *>(bytes + *at);
    argument->text_length = static_cast<std::uint32_t>(size);
    const std::size_t length = strnlen(argument->text, size);
    if (length != size) return {"bytes of a text before a NUL", length, size};
  } else if (kind == kNumber) {
    argument->number = get<std::uint32_t>(bytes + *at);
  } else {
    argument->pointer = get<std::uint64_t>(bytes + *at);
  }
  *at += padded(size);
  return {};
}

// The length in a record's head, when the head and the record are there.
Fault measure(const std::uint8_t *bytes, std::size_t available, std::size_t *total) {
  if (available >= 4) {
    const auto magic = get<std::uint32_t>(bytes);
    if (magic != kMagic) return {"magic of a record", magic, kMagic};
  }
  if (available < kHeadBytes) {
    return {"bytes left for the head of a record", available, kHeadBytes, true};
  }
  *total = record_length(bytes);
  if (*total < kHeadBytes || *total % 8 != 0 || *total > kLongestRecord) {
    return {"length of a record", *total, kHeadBytes};
  }
  if (*total > available) return {"bytes left for a record", available, *total, true};
  return {};
}

}  // namespace

std::size_t record_length(const std::uint8_t *record) { return get<std::uint32_t>(record + 4); }

Fault unpack(const std::uint8_t *bytes, std::size_t available, kelp_trace_event *event,
             std::size_t *length) {
  std::size_t total = 0;
  if (const Fault fault = measure(bytes, available, &total); fault.what != nullptr) return fault;
  *event = {};
  event->time_ns = get<std::uint64_t>(bytes + 8);
  std::memcpy(event->identity, bytes + 16, sizeof event->identity);
  event->index = get<std::uint32_t>(bytes + 32);
  event->module = get<std::uint16_t>(bytes + 36);
  event->level = bytes[38];
  if (event->level > kHighestLevel) return {"level, at most", event->level, kHighestLevel};
  event->argument_count = bytes[39];
  event->sequence = get<std::uint64_t>(bytes + 40);
  if (event->argument_count > kMostArguments) {
    return {"number of arguments, at most", event->argument_count, kMostArguments};
  }
  std::size_t at = kHeadBytes;
  for (std::size_t i = 0; i < event->argument_count; ++i) {
    const Fault fault = unpack_argument(bytes, total, &at, &event->arguments[i]);
    if (fault.what != nullptr) return fault;
    event->signature[i] = static_cast<char>('0' + event->arguments[i].kind);
  }
  if (event->argument_count == 0) event->signature[0] = '0';
  if (at != total) return {"length of a record, by its arguments", total, at};
  *length = total;
  return {};
}

namespace {

// The next place in the bytes, from at on, where the magic stands or begins to; size for none.
std::size_t find_magic(const std::uint8_t *bytes, std::size_t size, std::size_t at) {
  std::uint8_t magic[4];
  put<std::uint32_t>(magic, kMagic);
  for (; at < size; ++at) {
    const auto *first =
        static_cast<const std::uint8_t *>(std::memchr(bytes + at, magic[0], size - at));
    if (first == nullptr) return size;
    at = static_cast<std::size_t>(first - bytes);
    if (std::memcmp(first, magic, std::min(sizeof magic, size - at)) == 0) return at;
  }
  return size;
}

// How many bytes lead to the next place where a record may begin.
std::size_t bytes_to_next(const std::uint8_t *bytes, std::size_t size) {
  kelp_trace_event event;
  std::size_t length;
  for (std::size_t at = find_magic(bytes, size, 1); at < size;
       at = find_magic(bytes, size, at + 1)) {
    const Fault fault = unpack(bytes + at, size - at, &event, &length);
    if (fault.what == nullptr || fault.cut) return at;
  }
  return size;
}

// Where a whole record begins within the first length bytes; 0 for nowhere.
std::size_t record_within(const std::uint8_t *bytes, std::size_t size, std::size_t length) {
  kelp_trace_event event;
  std::size_t total;
  for (std::size_t at = find_magic(bytes, length, 1); at < length;
       at = find_magic(bytes, length, at + 1)) {
    if (unpack(bytes + at, size - at, &event, &total).what == nullptr) return at;
  }
  return 0;
}

}  // namespace

Fault read(const std::uint8_t *bytes, std::size_t available, kelp_trace_event *event,
           std::size_t *length) {
  Fault fault = unpack(bytes, available, event, length);
  if (fault.what == nullptr) {
    const std::size_t inner = record_within(bytes, available, *length);
    if (inner == 0) return fault;
    fault = {"bytes before the next record", inner, *length};
    *length = inner;
    return fault;
  }
  if (!fault.cut) *length = std::max<std::size_t>(bytes_to_next(bytes, available), 1);
  return fault;
}

}  // namespace kelp::trace
