// The image of an OID: its handle word in network order, then its id and source as they are.
// Readers and writers of by-reference fields call these; no reference is counted here.
#include <cstring>

#include "base/announce.hpp"
#include "kelp/wire.h"
#include "wire/bounds.hpp"
#include "wire/byte_order.hpp"

namespace {

constexpr size_t kIdAt = 8;
constexpr size_t kSourceAt = 24;

}  // namespace

uint32_t kelplib_oid_len(kelp_handle *, uint32_t, const kelp_oid *) { return KELP_WIRE_OID_SIZE; }

uint32_t kelplib_oid_marshal(kelp_handle *handle, uint32_t, void *buffer, const kelp_oid *oid,
                             int32_t length, uint32_t *err) {
  if (*err != 0 || !kelp::piece_fits(handle, buffer, oid, KELP_WIRE_OID_SIZE, length, err))
    return 0;
  auto *at = static_cast<uint8_t *>(buffer);
  kelp::store_big_endian(at, oid->handle_word);
  std::memcpy(at + kIdAt, oid->id, sizeof oid->id);
  std::memcpy(at + kSourceAt, oid->source, sizeof oid->source);
  return KELP_WIRE_OID_SIZE;
}

uint32_t kelplib_oid_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                               kelp_oid *oid, int32_t length, uint32_t, uint32_t *err) {
  if (*err != 0 || !kelp::piece_fits(handle, buffer, oid, KELP_WIRE_OID_SIZE, length, err))
    return 0;
  const auto *at = static_cast<const uint8_t *>(buffer);
  kelp::Writer{handle, space_id}.announce(oid, sizeof *oid);
  oid->handle_word = kelp::load_big_endian<uint64_t>(at);
  std::memcpy(oid->id, at + kIdAt, sizeof oid->id);
  std::memcpy(oid->source, at + kSourceAt, sizeof oid->source);
  return KELP_WIRE_OID_SIZE;
}
