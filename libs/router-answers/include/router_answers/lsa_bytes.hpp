// LSAs put together again from what a daemon says of them.
//
// A daemon tells an LSA's fields one by one and its checksum, so that the bytes can be written and
// held against the checksum: when it is right, they are the LSA's own (but for the age, which the
// checksum leaves out). Where an answer says not all, the bytes come as near as it allows and are
// not exact.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "ospf_decode/address.hpp"
#include "ospf_decode/lsa_header.hpp"

namespace router_answers {

class LsaBody {
 public:
  LsaBody &u8(std::uint32_t value) { return put(value, 1); }
  LsaBody &u16(std::uint32_t value) { return put(value, 2); }
  LsaBody &u24(std::uint32_t value) { return put(value, 3); }
  LsaBody &u32(std::uint32_t value) { return put(value, 4); }
  LsaBody &bytes(std::span<const std::uint8_t> value);
  // Length, options, a 16-bit field that is the metric in some LSAs, and as many octets of the
  // address as the length needs, in words of four.
  LsaBody &prefix(const ospf_decode::PrefixV3 &prefix, std::uint16_t field = 0);

  const std::vector<std::uint8_t> &octets() const { return octets_; }

 private:
  LsaBody &put(std::uint32_t value, int octets);

  std::vector<std::uint8_t> octets_;
};

// One LSA out of a router's database.
struct HeldLsa {
  ospf_decode::LsaHeader header;  // as told; the length is that of the bytes where none was told
  std::vector<std::uint8_t> raw;  // header and body; the header alone of an LSA without more
  bool exact = false;             // `raw` has the checksum that the router tells

  // Whether `raw` has the body.
  bool has_body() const { return raw.size() > ospf_decode::lsa_header_length; }
};

// `version` is that of OSPF: an OSPFv2 header has the options, which an OSPFv3 one lacks. A length
// of 0 in the header stands for one that was not told.
HeldLsa put_together(std::uint8_t version, const ospf_decode::LsaHeader &header,
                     const LsaBody &body);

// The header alone.
HeldLsa header_alone(std::uint8_t version, const ospf_decode::LsaHeader &header);

// Puts the right checksum into a whole LSA, whatever it was.
void correct_checksum(std::vector<std::uint8_t> &lsa);

}  // namespace router_answers
