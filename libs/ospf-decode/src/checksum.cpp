#include "ospf_decode/checksum.hpp"

#include <algorithm>

namespace ospf_decode {

bool lsa_checksum_ok(Bytes lsa) {
  if (lsa.size() < 18) return false;
  // A checksum field of zero means "never calculated" and is not allowed (RFC 2328, 12.1.7).
  if (lsa[16] == 0 && lsa[17] == 0) return false;
  // Sums of up to 4102 octets stay within 32 bits between reductions.
  constexpr std::size_t stretch = 4102;
  std::uint32_t c0 = 0;
  std::uint32_t c1 = 0;
  for (Bytes rest = lsa.subspan(2); !rest.empty();) {
    const Bytes part = rest.first(std::min(rest.size(), stretch));
    rest = rest.subspan(part.size());
    for (const std::uint8_t octet : part) {
      c0 += octet;
      c1 += c0;
    }
    c0 %= 255;
    c1 %= 255;
  }
  return c0 == 0 && c1 == 0;
}

void InternetChecksum::add(Bytes data) {
  Cursor cursor(data);
  while (cursor.remaining() >= 8) {
    const std::uint64_t word = cursor.u64();
    sum_ += (word >> 48) + (word >> 32 & 0xffff) + (word >> 16 & 0xffff) + (word & 0xffff);
  }
  while (cursor.remaining() >= 2) sum_ += cursor.u16();
  if (cursor.remaining() == 1) sum_ += static_cast<std::uint64_t>(cursor.u8()) << 8;
}

std::uint16_t InternetChecksum::value() const {
  std::uint64_t sum = sum_;
  while (sum >> 16 != 0) sum = (sum & 0xffff) + (sum >> 16);
  return static_cast<std::uint16_t>(~sum);
}

}  // namespace ospf_decode
