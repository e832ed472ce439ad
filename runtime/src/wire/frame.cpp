// The frame of a marshalled object: variant byte, flag byte, ra-data block and jump word. Writers
// of objects call these around the values.
//
// The four marshal operations ignore a set error word and write when there is room: a writer that
// has failed in the middle still patches its jump word, and one that lowers a variant (which sets
// the word) still writes its frame.
#include "kelp/wire.h"
#include "wire/bounds.hpp"
#include "wire/byte_order.hpp"

namespace kelp {
namespace {

template <class T>
uint32_t write_piece(kelp_handle *handle, void *buffer, const T *item, int32_t remaining,
                     uint32_t *err) {
  if (quick::put_piece(buffer, item, remaining)) return sizeof(T);
  piece_fits(handle, buffer, item, sizeof(T), remaining, err);
  return 0;
}

template <class T>
uint32_t read_piece(kelp_handle *handle, const void *buffer, T *item, int32_t remaining,
                    uint32_t *err) {
  if (quick::take_piece(buffer, item, remaining, err)) return sizeof(T);
  if (*err == 0) piece_fits(handle, buffer, item, sizeof(T), remaining, err);
  return 0;
}

}  // namespace
}  // namespace kelp

uint32_t _kelp_instance_variant_marshal(kelp_handle *handle, uint32_t, void *buffer,
                                        const int8_t *variant, int32_t remaining, uint32_t *err) {
  return kelp::write_piece(handle, buffer, variant, remaining, err);
}

uint32_t _kelp_instance_variant_unmarshal(kelp_handle *handle, uint32_t, const void *buffer,
                                          int8_t *variant, int32_t remaining, uint32_t *err) {
  return kelp::read_piece(handle, buffer, variant, remaining, err);
}

uint32_t _kelp_instance_obj_flag_marshal(kelp_handle *handle, uint32_t, void *buffer,
                                         const uint8_t *flags, int32_t remaining, uint32_t *err) {
  return kelp::write_piece(handle, buffer, flags, remaining, err);
}

uint32_t _kelp_instance_obj_flag_unmarshal(kelp_handle *handle, uint32_t, const void *buffer,
                                           uint8_t *flags, int32_t remaining, uint32_t *err) {
  return kelp::read_piece(handle, buffer, flags, remaining, err);
}

uint32_t _kelp_instance_ra_data_marshal(kelp_handle *handle, uint32_t, void *buffer,
                                        const uint64_t *word, const uint8_t *byte,
                                        int32_t remaining, uint32_t *err) {
  const void *items = byte == nullptr ? nullptr : static_cast<const void *>(word);
  if (!kelp::piece_fits(handle, buffer, items, KELP_WIRE_RA_DATA_SIZE, remaining, err)) return 0;
  auto *at = static_cast<uint8_t *>(buffer);
  kelp::store_big_endian(at, *word);
  at[sizeof *word] = *byte;
  return KELP_WIRE_RA_DATA_SIZE;
}

uint32_t _kelp_instance_ra_data_unmarshal(kelp_handle *handle, uint32_t, const void *buffer,
                                          uint64_t *word, uint8_t *byte, int32_t remaining,
                                          uint32_t *err) {
  if (*err != 0) return 0;
  const void *items = byte == nullptr ? nullptr : static_cast<const void *>(word);
  if (!kelp::piece_fits(handle, buffer, items, KELP_WIRE_RA_DATA_SIZE, remaining, err)) return 0;
  const auto *at = static_cast<const uint8_t *>(buffer);
  *word = kelp::load_big_endian<uint64_t>(at);
  *byte = at[sizeof *word];
  return KELP_WIRE_RA_DATA_SIZE;
}

uint32_t _kelp_variant_jump_marshal(kelp_handle *handle, uint32_t, void *buffer,
                                    const int32_t *jump, int32_t remaining, uint32_t *err) {
  const auto *word = reinterpret_cast<const uint32_t *>(jump);
  return kelp::write_piece(handle, buffer, word, remaining, err);
}

uint32_t _kelp_variant_jump_unmarshal(kelp_handle *handle, uint32_t, const void *buffer,
                                      int32_t *jump, int32_t remaining, uint32_t *err) {
  if (jump != nullptr) *jump = 0;
  if (kelp::quick::take_jump(buffer, jump, remaining, err)) return sizeof *jump;
  if (*err != 0 || !kelp::piece_fits(handle, buffer, jump, sizeof *jump, remaining, err)) return 0;
  // A reader goes on at the word's own place plus the word, untested: it must lie in the buffer.
  const auto word = kelp::load_big_endian<uint32_t>(static_cast<const uint8_t *>(buffer));
  kelp::piece_fits(handle, buffer, jump, word, remaining, err);
  return 0;
}
