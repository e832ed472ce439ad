// u_int16: metrics, costs, lengths. No operation makes one that stands alone.
#include "primitives/unsigned_rule.hpp"

namespace {

struct U16 : kelp::UnsignedRule<uint16_t> {
  static constexpr std::string_view kName = "u_int16";
  static constexpr char kExpected[] = "a decimal number from 0 to 65535";
};

}  // namespace

KELP_EXPORT_NUMBER_FAMILY(u_int16, U16)
