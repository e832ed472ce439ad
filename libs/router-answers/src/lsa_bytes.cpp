#include "router_answers/lsa_bytes.hpp"

#include "ospf_decode/checksum.hpp"

namespace router_answers {

namespace {

constexpr std::size_t checksum_at = 16;

LsaBody header_octets(std::uint8_t version, const ospf_decode::LsaHeader &header) {
  LsaBody out;
  out.u16(header.age);
  if (version == 2) {
    out.u8(header.options).u8(header.type);
  } else {
    out.u16(header.type);
  }
  out.u32(header.link_state_id).u32(header.advertising_router).u32(header.sequence);
  out.u16(header.checksum).u16(header.length);
  return out;
}

}  // namespace

LsaBody &LsaBody::put(std::uint32_t value, int octets) {
  for (int shift = 8 * (octets - 1); shift >= 0; shift -= 8) {
    octets_.push_back(static_cast<std::uint8_t>(value >> shift));
  }
  return *this;
}

LsaBody &LsaBody::bytes(std::span<const std::uint8_t> value) {
  octets_.insert(octets_.end(), value.begin(), value.end());
  return *this;
}

LsaBody &LsaBody::prefix(const ospf_decode::PrefixV3 &prefix, std::uint16_t field) {
  u8(prefix.length).u8(prefix.options).u16(field);
  return bytes(std::span(prefix.address).first((prefix.length + 31u) / 32 * 4));
}

HeldLsa put_together(std::uint8_t version, const ospf_decode::LsaHeader &header,
                     const LsaBody &body) {
  const std::size_t length = ospf_decode::lsa_header_length + body.octets().size();
  HeldLsa out;
  out.header = header;
  // What the fields give and what the router says differ only where the answer leaves out
  // something; bytes must be as long as their header says.
  out.header.length = static_cast<std::uint16_t>(length);
  out.raw = header_octets(version, out.header).bytes(body.octets()).octets();
  out.exact =
      (header.length == 0 || header.length == length) && ospf_decode::lsa_checksum_ok(out.raw);
  return out;
}

HeldLsa header_alone(std::uint8_t version, const ospf_decode::LsaHeader &header) {
  HeldLsa out;
  out.header = header;
  out.raw = header_octets(version, header).octets();
  return out;
}

void correct_checksum(std::vector<std::uint8_t> &lsa) {
  if (lsa.size() < ospf_decode::lsa_header_length) return;
  lsa[checksum_at] = lsa[checksum_at + 1] = 0;
  std::uint32_t c0 = 0;
  std::uint32_t c1 = 0;
  for (std::size_t at = 2; at < lsa.size(); ++at) {
    c0 = (c0 + lsa[at]) % 255;
    c1 = (c1 + c0) % 255;
  }
  // The two octets that make both sums 0 (RFC 905, annex B); 255 stands for 0, which would say that
  // none was calculated.
  const std::size_t behind = lsa.size() - checksum_at - 1;
  const std::uint32_t x = (behind % 255 * c0 + 255 - c1) % 255;
  const std::uint32_t y = (510 - c0 - x) % 255;
  lsa[checksum_at] = static_cast<std::uint8_t>(x == 0 ? 255 : x);
  lsa[checksum_at + 1] = static_cast<std::uint8_t>(y == 0 ? 255 : y);
}

}  // namespace router_answers
