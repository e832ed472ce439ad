// The image of an OID: its handle word in network order, then its id and source as they are.
// Readers and writers of by-reference fields call these; no reference is counted here.
#include "kelp/quick.hpp"
#include "kelp/wire.h"
#include "wire/bounds.hpp"

uint32_t kelplib_oid_len(kelp_handle *, uint32_t, const kelp_oid *) { return KELP_WIRE_OID_SIZE; }

uint32_t kelplib_oid_marshal(kelp_handle *handle, uint32_t, void *buffer, const kelp_oid *oid,
                             int32_t length, uint32_t *err) {
  if (kelp::quick::put_oid(buffer, oid, length, err)) return KELP_WIRE_OID_SIZE;
  if (*err == 0) kelp::piece_fits(handle, buffer, oid, KELP_WIRE_OID_SIZE, length, err);
  return 0;
}

uint32_t kelplib_oid_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                               kelp_oid *oid, int32_t length, uint32_t, uint32_t *err) {
  if (kelp::quick::take_oid(handle, space_id, buffer, oid, length, err)) return KELP_WIRE_OID_SIZE;
  if (*err == 0) kelp::piece_fits(handle, buffer, oid, KELP_WIRE_OID_SIZE, length, err);
  return 0;
}
