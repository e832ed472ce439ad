// The message header in front of a record's image: the 16 bytes of its record in network order,
// then 11 bytes of zero that fill the 27. It checks nothing of what it reads: what a marker or a
// length is worth is for whoever takes in the image.
#include <cstring>

#include "kelp/wire.h"
#include "wire/bounds.hpp"
#include "wire/byte_order.hpp"

static_assert(sizeof(kelp_message_header_record) == 16);

namespace {

constexpr size_t kReservedAt = 1;
constexpr size_t kTrackingAt = 7;
constexpr size_t kHandleWordAt = 8;
constexpr size_t kLengthAt = 12;
constexpr size_t kFillAt = 16;

}  // namespace

uint32_t _kelp_message_header_marshal(kelp_handle *handle, uint32_t, void *buffer,
                                      const kelp_message_header_record *record, int32_t remaining,
                                      uint32_t *err) {
  constexpr uint32_t kSize = KELP_WIRE_MESSAGE_HEADER_SIZE;
  if (*err != 0 || !kelp::piece_fits(handle, buffer, record, kSize, remaining, err)) return 0;
  auto *at = static_cast<uint8_t *>(buffer);
  at[0] = record->marker;
  std::memcpy(at + kReservedAt, record->reserved, sizeof record->reserved);
  at[kTrackingAt] = record->tracking;
  kelp::store_big_endian(at + kHandleWordAt, record->handle_word);
  kelp::store_big_endian(at + kLengthAt, record->length);
  std::memset(at + kFillAt, 0, kSize - kFillAt);
  return kSize;
}

uint32_t _kelp_message_header_unmarshal(kelp_handle *handle, uint32_t, const void *buffer,
                                        kelp_message_header_record *record, int32_t remaining,
                                        uint32_t *err) {
  constexpr uint32_t kSize = KELP_WIRE_MESSAGE_HEADER_SIZE;
  if (*err != 0 || !kelp::piece_fits(handle, buffer, record, kSize, remaining, err)) return 0;
  const auto *at = static_cast<const uint8_t *>(buffer);
  record->marker = at[0];
  std::memcpy(record->reserved, at + kReservedAt, sizeof record->reserved);
  record->tracking = at[kTrackingAt];
  record->handle_word = kelp::load_big_endian<uint32_t>(at + kHandleWordAt);
  record->length = kelp::load_big_endian<uint32_t>(at + kLengthAt);
  return kSize;
}
