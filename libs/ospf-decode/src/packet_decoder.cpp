#include "ospf_decode/packet_decoder.hpp"

#include "ospf_decode/checksum.hpp"

namespace ospf_decode {
namespace {

constexpr std::size_t header_length_v2 = 24;
constexpr std::size_t header_length_v3 = 16;
constexpr std::size_t auth_field_at = 16;
constexpr std::uint8_t ospf_protocol = 89;
constexpr std::size_t auth_trailer_fixed = 16;  // RFC 7166: what precedes the digest

// Digests that are defined: MD5 and HMAC-SHA-1, -256, -384, -512.
bool digest_length_possible(std::size_t length) {
  return length == 16 || length == 20 || length == 32 || length == 48 || length == 64;
}

bool carries_options(PacketType type) {
  return type == PacketType::hello || type == PacketType::database_description;
}

}  // namespace

void PacketDecoder::short_body(const Report &report, ErrorKind kind) {
  if (!packet_.datagram.cut) report(kind);
}

void PacketDecoder::decode(const Datagram &datagram) {
  const Report report(errors_, datagram.number);
  ++packets_;
  packet_.datagram = datagram;
  packet_.auth = Authentication{};
  packet_.lls.present = false;
  packet_.lls.has_extended_options = false;
  packet_.lls.tlvs.clear();
  packet_.checksum_state = ChecksumState::unchecked;

  if (!read_header(report) || !check_lengths(report)) return;
  if (!read_trailers(report)) return;
  check_packet_checksum(report);
  visitor_.on_packet(packet_);
  if (packet_.checksum_state == ChecksumState::bad) return;

  const Cursor body(body_);
  switch (packet_.type) {
    case PacketType::hello:
      return decode_hello(body, report);
    case PacketType::database_description:
      return decode_description(body, report);
    case PacketType::request:
      return decode_request(body, report);
    case PacketType::update:
      return decode_update(body, report);
    case PacketType::acknowledgement:
      return decode_acknowledgement(body, report);
  }
}

bool PacketDecoder::read_header(const Report &report) {
  Cursor cursor(packet_.datagram.payload);
  packet_.version = cursor.u8();
  const std::uint8_t type = cursor.u8();
  packet_.length = cursor.u16();
  packet_.router_id = cursor.u32();
  packet_.area_id = cursor.u32();
  packet_.checksum = cursor.u16();
  packet_.instance_id = cursor.u8();
  const std::uint8_t auth_type = cursor.u8();  // reserved in OSPFv3
  if (!cursor.ok()) {
    short_body(report, ErrorKind::short_packet);
    return false;
  }
  const bool version_fits =
      packet_.version == 3 || (packet_.version == 2 && !packet_.datagram.source.is_v6);
  if (!version_fits) {
    report(ErrorKind::unsupported_version);
    return false;
  }
  if (type < static_cast<int>(PacketType::hello) ||
      type > static_cast<int>(PacketType::acknowledgement)) {
    report(ErrorKind::unknown_packet_type);
    return false;
  }
  packet_.type = static_cast<PacketType>(type);
  if (packet_.version == 3) return true;

  Cursor field = cursor.sub(8);
  if (!cursor.ok()) {
    short_body(report, ErrorKind::short_packet);
    return false;
  }
  switch (auth_type) {
    case 0:
      return true;
    case 1:
      packet_.auth.kind = AuthKind::simple;
      packet_.auth.password = field.rest();
      return true;
    case 2:
      packet_.auth.kind = AuthKind::cryptographic;
      return true;
    default:
      report(ErrorKind::unknown_auth_type);
      return false;
  }
}

bool PacketDecoder::check_lengths(const Report &report) {
  const Bytes payload = packet_.datagram.payload;
  const std::size_t header = packet_.version == 2 ? header_length_v2 : header_length_v3;
  std::size_t length = packet_.length;
  if (length < header) {
    report(ErrorKind::lying_packet_length);
    return false;
  }
  if (length > payload.size()) {
    if (!packet_.datagram.cut) {
      report(ErrorKind::lying_packet_length);
      return false;
    }
    length = payload.size();
  }
  body_ = payload.first(length).subspan(header);
  return true;
}

void PacketDecoder::check_packet_checksum(const Report &report) {
  const Bytes payload = packet_.datagram.payload;
  if (payload.size() < packet_.length) return;  // cut
  if (packet_.auth.kind == AuthKind::cryptographic || packet_.auth.kind == AuthKind::trailer) {
    return;
  }
  const Bytes whole = payload.first(packet_.length);
  InternetChecksum sum;
  if (packet_.version == 2) {
    sum.add(whole.first(auth_field_at));
    sum.add(whole.subspan(header_length_v2));
  } else {
    const IpAddress &source = packet_.datagram.source;
    const IpAddress &destination = packet_.datagram.destination;
    sum.add(Bytes(source.bytes).first(source.is_v6 ? 16 : 4));
    sum.add(Bytes(destination.bytes).first(destination.is_v6 ? 16 : 4));
    sum.add(std::uint32_t{packet_.length});
    sum.add(std::uint32_t{ospf_protocol});
    sum.add(whole);
  }
  packet_.checksum_state = sum.value() == 0 ? ChecksumState::good : ChecksumState::bad;
  if (packet_.checksum_state == ChecksumState::bad) report(ErrorKind::bad_packet_checksum);
}

std::uint32_t PacketDecoder::peek_options() const {
  Cursor cursor(body_);
  if (packet_.version == 2) {
    cursor.skip(packet_.type == PacketType::hello ? 6 : 2);
    return cursor.u8();
  }
  cursor.skip(packet_.type == PacketType::hello ? 5 : 1);
  return cursor.u24();
}

// What follows the packet inside its datagram: OSPFv2 has the digest and then the LLS block, OSPFv3
// the LLS block and then the authentication trailer. False if a receiver could not accept it.
bool PacketDecoder::read_trailers(const Report &report) {
  const Bytes payload = packet_.datagram.payload;
  if (packet_.datagram.cut) return true;
  Cursor after(payload.subspan(packet_.length));
  const std::uint32_t options = carries_options(packet_.type) ? peek_options() : 0;
  const bool is_v2 = packet_.version == 2;
  if (is_v2 && packet_.auth.kind == AuthKind::cryptographic &&
      !read_auth_trailer_v2(after, report)) {
    return false;
  }
  const bool has_lls = (options & (is_v2 ? std::uint32_t{option2_l} : option3_l)) != 0;
  if (has_lls && !read_lls(after, report)) return true;
  if (!is_v2 && !read_auth_trailer_v3(after, (options & option3_at) != 0, report)) return false;
  // The LLS checksum is zero where authentication covers the block.
  if (packet_.lls.present && packet_.auth.kind != AuthKind::cryptographic &&
      packet_.auth.kind != AuthKind::trailer) {
    InternetChecksum sum;
    sum.add(payload.subspan(packet_.length).first(packet_.lls.words * 4u));
    if (sum.value() != 0) {
      report(ErrorKind::bad_lls);
      packet_.lls.present = false;
    }
  }
  if (!after.at_end()) report(ErrorKind::trailing_octets);
  return true;
}

bool PacketDecoder::read_auth_trailer_v2(Cursor &after, const Report &report) {
  Cursor field(packet_.datagram.payload);
  field.skip(auth_field_at + 2);
  packet_.auth.key_id = field.u8();
  const std::size_t length = field.u8();
  packet_.auth.sequence = field.u32();
  packet_.auth.digest = after.bytes(length);
  if (after.ok() && digest_length_possible(length)) return true;
  report(ErrorKind::bad_auth_trailer);
  return false;
}

// Hellos and descriptions announce the trailer by a bit; of other packets it is known by its form.
bool PacketDecoder::read_auth_trailer_v3(Cursor &after, bool announced, const Report &report) {
  if (carries_options(packet_.type) && !announced) return true;
  Cursor trailer = after;
  const std::size_t there = trailer.remaining();
  Authentication auth;
  auth.kind = AuthKind::trailer;
  auth.trailer_type = trailer.u16();
  const std::size_t length = trailer.u16();
  trailer.skip(2);
  auth.association_id = trailer.u16();
  auth.sequence = trailer.u64();
  auth.digest = length > auth_trailer_fixed ? trailer.bytes(length - auth_trailer_fixed) : Bytes{};
  const bool well_formed =
      trailer.ok() && length == there && digest_length_possible(auth.digest.size());
  if (well_formed) {
    packet_.auth = auth;
    after = trailer;
    return true;
  }
  if (!announced) return true;
  report(ErrorKind::bad_auth_trailer);
  return false;
}

bool PacketDecoder::read_lls(Cursor &after, const Report &report) {
  LinkLocalSignalling &lls = packet_.lls;
  Cursor peek = after;
  lls.checksum = peek.u16();
  lls.words = peek.u16();
  Cursor block = after.sub(lls.words * 4u);
  block.skip(4);
  if (!block.ok()) {
    report(ErrorKind::bad_lls);
    return false;
  }
  while (!block.at_end()) {
    Tlv tlv;
    if (!next_tlv(block, tlv)) {
      report(ErrorKind::bad_lls);
      return true;
    }
    if (tlv.type == 1 && tlv.length == 4) {
      tlv.typed = true;
      lls.has_extended_options = true;
      lls.extended_options = Cursor(tlv.value).u32();
    }
    lls.tlvs.push_back(tlv);
  }
  lls.present = true;
  return true;
}

void PacketDecoder::decode_hello(Cursor body, const Report &report) {
  if (packet_.version == 2) {
    hello_.interface_id = 0;
    hello_.network_mask = body.u32();
    hello_.hello_interval = body.u16();
    hello_.options = body.u8();
    hello_.priority = body.u8();
    hello_.dead_interval = body.u32();
  } else {
    hello_.network_mask = 0;
    hello_.interface_id = body.u32();
    hello_.priority = body.u8();
    hello_.options = body.u24();
    hello_.hello_interval = body.u16();
    hello_.dead_interval = body.u16();
  }
  hello_.designated_router = body.u32();
  hello_.backup_designated_router = body.u32();
  hello_.neighbors.clear();
  while (body.remaining() >= 4) hello_.neighbors.push_back(body.u32());
  if (!body.ok() || !body.at_end()) return short_body(report);
  // The neighbours beyond a cut are unknown, and their absence would say something.
  if (packet_.datagram.cut) return;
  visitor_.on_hello(packet_, hello_);
}

bool PacketDecoder::read_headers(Cursor &body) {
  headers_.clear();
  while (body.remaining() >= lsa_header_length) {
    headers_.push_back(packet_.version == 2 ? read_lsa_header_v2(body) : read_lsa_header_v3(body));
  }
  return body.ok() && body.at_end();
}

void PacketDecoder::decode_description(Cursor body, const Report &report) {
  if (packet_.version == 2) {
    description_.mtu = body.u16();
    description_.options = body.u8();
    description_.flags = body.u8();
  } else {
    body.skip(1);
    description_.options = body.u24();
    description_.mtu = body.u16();
    body.skip(1);
    description_.flags = body.u8();
  }
  description_.sequence = body.u32();
  if (!body.ok()) return short_body(report);
  if (!read_headers(body)) short_body(report);
  description_.headers.swap(headers_);
  visitor_.on_database_description(packet_, description_);
}

void PacketDecoder::decode_request(Cursor body, const Report &report) {
  names_.clear();
  while (body.remaining() >= 12) {
    LsaName name;
    body.skip(2);  // OSPFv2 has a 32-bit type whose upper half is zero, OSPFv3 reserves it
    name.type = body.u16();
    name.link_state_id = body.u32();
    name.advertising_router = body.u32();
    names_.push_back(name);
  }
  if (!body.at_end()) short_body(report);
  visitor_.on_request(packet_, names_);
}

void PacketDecoder::decode_update(Cursor body, const Report &report) {
  const std::uint32_t announced = body.u32();
  if (!body.ok()) return short_body(report);
  std::uint32_t seen = 0;
  for (; seen < announced && !body.at_end(); ++seen) {
    Cursor peek = body;
    const LsaHeader header =
        packet_.version == 2 ? read_lsa_header_v2(peek) : read_lsa_header_v3(peek);
    if (!peek.ok()) return short_body(report, ErrorKind::lying_lsa_length);
    if (header.length < lsa_header_length) return report(ErrorKind::lying_lsa_length);
    const Bytes raw = body.bytes(header.length);
    if (!body.ok()) return short_body(report, ErrorKind::lying_lsa_length);

    ++lsas_;
    if (packet_.version == 2) {
      decode_lsa_v2(raw, lsa_v2_, report);
    } else {
      decode_lsa_v3(raw, lsa_v3_, report);
    }
    if (!scope_of(packet_.version, header.type)) report(ErrorKind::unknown_lsa_type);
    if (header.age_seconds() > max_age) report(ErrorKind::bad_lsa_age);
    if (packet_.version == 2) {
      visitor_.on_lsa_v2(packet_, lsa_v2_);
    } else {
      visitor_.on_lsa_v3(packet_, lsa_v3_);
    }
  }
  if (seen < announced || !body.at_end()) short_body(report, ErrorKind::lsa_count_mismatch);
}

void PacketDecoder::decode_acknowledgement(Cursor body, const Report &report) {
  if (!read_headers(body)) short_body(report);
  visitor_.on_acknowledgement(packet_, headers_);
}

}  // namespace ospf_decode
