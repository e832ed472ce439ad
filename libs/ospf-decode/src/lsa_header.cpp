#include "ospf_decode/lsa_header.hpp"

#include "ospf_decode/lsa_v2.hpp"

namespace ospf_decode {
namespace {

void read_common(Cursor &cursor, LsaHeader &out) {
  out.link_state_id = cursor.u32();
  out.advertising_router = cursor.u32();
  out.sequence = cursor.u32();
  out.checksum = cursor.u16();
  out.length = cursor.u16();
}

}  // namespace

LsaHeader read_lsa_header_v2(Cursor &cursor) {
  LsaHeader out;
  out.age = cursor.u16();
  out.options = cursor.u8();
  out.type = cursor.u8();
  read_common(cursor, out);
  return out;
}

LsaHeader read_lsa_header_v3(Cursor &cursor) {
  LsaHeader out;
  out.age = cursor.u16();
  out.type = cursor.u16();
  read_common(cursor, out);
  return out;
}

int compare_instances(const LsaHeader &a, std::uint32_t age_a, const LsaHeader &b,
                      std::uint32_t age_b) {
  const auto sequence_a = static_cast<std::int32_t>(a.sequence);
  const auto sequence_b = static_cast<std::int32_t>(b.sequence);
  if (sequence_a != sequence_b) return sequence_a < sequence_b ? -1 : 1;
  if (a.checksum != b.checksum) return a.checksum < b.checksum ? -1 : 1;
  const bool old_a = age_a >= max_age;
  const bool old_b = age_b >= max_age;
  if (old_a != old_b) return old_a ? 1 : -1;
  const std::uint32_t difference = age_a < age_b ? age_b - age_a : age_a - age_b;
  if (difference > max_age_diff) return age_a < age_b ? 1 : -1;
  return 0;
}

}  // namespace ospf_decode
