// The two checksums of OSPF: Fletcher over an LSA, the Internet checksum over packets.
#pragma once

#include <cstdint>

#include "ospf_decode/cursor.hpp"

namespace ospf_decode {

// Whether the checksum of a whole LSA (header included) is right. The age, its first two octets,
// takes no part.
bool lsa_checksum_ok(Bytes lsa);

// The Internet checksum, over pieces that each have an even length except the last.
class InternetChecksum {
 public:
  void add(Bytes data);
  void add(std::uint32_t value) { sum_ += (value >> 16) + (value & 0xffff); }
  // The complement of the sum; 0 over data that holds its own right checksum.
  std::uint16_t value() const;

 private:
  std::uint64_t sum_ = 0;
};

}  // namespace ospf_decode
