// Makes the checksums of a mutated frame right again, so that fuzzing gets past them.
//
// Works on Ethernet and raw IP frames that carry OSPF in IPv4 or in IPv6 without extension headers;
// others stay as they are. Only checksum fields are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "ospf_decode/checksum.hpp"

namespace ospf_decode {

inline std::uint16_t fuzz_u16(const std::vector<std::uint8_t> &data, std::size_t at) {
  return static_cast<std::uint16_t>(data.at(at) << 8 | data.at(at + 1));
}

inline void fuzz_put16(std::vector<std::uint8_t> &data, std::size_t at, unsigned value) {
  data.at(at) = static_cast<std::uint8_t>(value >> 8);
  data.at(at + 1) = static_cast<std::uint8_t>(value);
}

inline void repair_lsa(std::vector<std::uint8_t> &data, std::size_t begin, std::size_t length) {
  fuzz_put16(data, begin + 16, 0);
  int c0 = 0;
  int c1 = 0;
  for (std::size_t i = 2; i < length; ++i) {
    c0 = (c0 + data.at(begin + i)) % 255;
    c1 = (c1 + c0) % 255;
  }
  int x = ((static_cast<int>(length) - 17) * c0 - c1) % 255;
  if (x <= 0) x += 255;
  int y = 510 - c0 - x;
  if (y > 255) y -= 255;
  fuzz_put16(data, begin + 16, static_cast<unsigned>(x << 8 | y));
}

inline void repair_checksums(std::vector<std::uint8_t> &data, std::size_t ip) {
  if (data.size() < ip + 40) return;
  const bool v6 = data[ip] >> 4 == 6;
  const std::size_t ospf = v6 ? ip + 40 : ip + (data[ip] & 0x0fu) * 4u;
  if (data[v6 ? ip + 6 : ip + 9] != 89 || data.size() < ospf + 24) return;
  if (!v6) fuzz_put16(data, ip + 10, 0);  // left to the network card

  const bool v3 = data[ospf] == 3;
  const std::size_t length = fuzz_u16(data, ospf + 2);
  if (length < 24 || length > data.size() - ospf) return;
  const std::size_t end = ospf + length;
  if (data[ospf + 1] == 4) {
    for (std::size_t at = ospf + (v3 ? 20 : 28); at + 20 <= end;) {
      const std::size_t lsa = fuzz_u16(data, at + 18);
      if (lsa < 20 || lsa > end - at) break;
      repair_lsa(data, at, lsa);
      at += lsa;
    }
  }
  fuzz_put16(data, ospf + 12, 0);
  const Bytes packet = Bytes(data).subspan(ospf, length);
  InternetChecksum sum;
  if (v3) {
    sum.add(v6 ? Bytes(data).subspan(ip + 8, 32) : Bytes(data).subspan(ip + 12, 8));
    sum.add(static_cast<std::uint32_t>(length));
    sum.add(std::uint32_t{89});
    sum.add(packet);
  } else {
    sum.add(packet.first(16));
    sum.add(packet.subspan(24));
  }
  fuzz_put16(data, ospf + 12, sum.value());
}

}  // namespace ospf_decode
