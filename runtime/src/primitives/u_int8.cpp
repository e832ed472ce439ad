// u_int8: octets of undecoded data, priorities, prefix lengths.
#include "primitives/own_memory.hpp"
#include "primitives/unsigned_rule.hpp"

namespace {

struct U8 : kelp::UnsignedRule<uint8_t> {
  static constexpr std::string_view kName = "u_int8";
  static constexpr char kExpected[] = "a decimal number from 0 to 255";
};

}  // namespace

KELP_EXPORT_NUMBER_FAMILY(u_int8, U8)

uint32_t u_int8_read_row(const kelp_xml_row *row, uint8_t *values) {
  return kelp::ValueFamily<U8>::read_row(*row, values);
}

uint8_t *u_int8_create(kelp_handle *handle, uint32_t space_id) {
  return kelp::create_zeroed<uint8_t>({handle, space_id});
}

void u_int8_destroy(kelp_handle *handle, uint32_t space_id, uint8_t *address) {
  kelp::destroy({handle, space_id}, address);
}

size_t u_int8_sizeof(void) { return sizeof(uint8_t); }
