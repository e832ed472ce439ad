// The 20-octet LSA header that both versions share but for two octets, and what follows from it:
// the identity of an LSA, its scope, and which of two instances is newer.
#pragma once

#include <compare>
#include <cstdint>

#include "lsa_vocabulary/types.hpp"
#include "ospf_decode/cursor.hpp"

namespace ospf_decode {

// Types, scopes and fields are called by the names that everybody calls them by.
using namespace lsa_vocabulary;

inline constexpr std::size_t lsa_header_length = 20;
inline constexpr std::uint16_t max_age = 3600;
inline constexpr std::uint16_t max_age_diff = 900;
inline constexpr std::uint16_t do_not_age_bit = 0x8000;

struct LsaHeader {
  std::uint16_t age = 0;     // as received, with the DoNotAge bit
  std::uint8_t options = 0;  // OSPFv2 only
  std::uint16_t type = 0;    // OSPFv2: 8 bits; OSPFv3: with U and scope bits
  std::uint32_t link_state_id = 0;
  std::uint32_t advertising_router = 0;
  std::uint32_t sequence = 0;
  std::uint16_t checksum = 0;
  std::uint16_t length = 0;

  bool do_not_age() const { return (age & do_not_age_bit) != 0; }
  std::uint16_t age_seconds() const { return static_cast<std::uint16_t>(age & ~do_not_age_bit); }
  bool operator==(const LsaHeader &) const = default;
};

// What identifies an LSA inside its database, as a link-state request names it.
struct LsaName {
  std::uint16_t type = 0;
  std::uint32_t link_state_id = 0;
  std::uint32_t advertising_router = 0;
  auto operator<=>(const LsaName &) const = default;
};

LsaHeader read_lsa_header_v2(Cursor &cursor);
LsaHeader read_lsa_header_v3(Cursor &cursor);

// RFC 2328, section 13.1: below zero if `a` is the older instance, above zero if it is the newer,
// zero if both are one. The ages, without DoNotAge, are those at the moment of comparing.
int compare_instances(const LsaHeader &a, std::uint32_t age_a, const LsaHeader &b,
                      std::uint32_t age_b);

}  // namespace ospf_decode
