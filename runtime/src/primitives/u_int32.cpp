// u_int32: identifiers, counters, element counts of arrays, values of enumerations on the wire.
#include "primitives/own_memory.hpp"
#include "primitives/unsigned_rule.hpp"

namespace {

struct U32 : kelp::UnsignedRule<uint32_t> {
  static constexpr std::string_view kName = "u_int32";
  static constexpr char kExpected[] = "a decimal number from 0 to 4294967295";
};

}  // namespace

KELP_EXPORT_NUMBER_FAMILY(u_int32, U32)

uint32_t u_int32_read_row(const kelp_xml_row *row, uint32_t *values) {
  return kelp::ValueFamily<U32>::read_row(*row, values);
}

uint32_t *u_int32_create(kelp_handle *handle, uint32_t space_id) {
  return kelp::create_zeroed<uint32_t>({handle, space_id});
}

void u_int32_destroy(kelp_handle *handle, uint32_t space_id, uint32_t *address) {
  u_int32_destroy_internal(handle, space_id, address, 1);
}

void u_int32_destroy_internal(kelp_handle *handle, uint32_t space_id, uint32_t *address,
                              int32_t free_it) {
  if (free_it != 0) kelp::destroy({handle, space_id}, address);
}

size_t u_int32_sizeof(void) { return sizeof(uint32_t); }
