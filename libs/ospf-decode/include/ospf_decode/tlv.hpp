// TLVs, and the LSAs made of them: traffic engineering (RFC 3630), router information (RFC 7770),
// grace (RFC 3623 and 5187).
//
// Each top-level TLV and each sub-TLV of a traffic-engineering link is kept raw in order of
// arrival, `typed` telling whether a typed field below holds what it says. The spans point into the
// LSA that was decoded. A TlvContent is filled again and again; its vectors keep their room.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "lsa_vocabulary/fields.hpp"
#include "ospf_decode/cursor.hpp"
#include "ospf_decode/errors.hpp"

namespace ospf_decode {

using namespace lsa_vocabulary;

struct Tlv {
  std::uint16_t type = 0;
  std::uint16_t length = 0;
  Bytes value;
  bool typed = false;
};

// The next TLV of `cursor`, a type, a length and a value padded to four octets; false if it runs
// over the end. Padding may be missing behind the last one.
bool next_tlv(Cursor &cursor, Tlv &out);

// Bits of TeLink::present, one for each sub-TLV with a typed field.
enum TeField : std::uint16_t {
  te_link_type = 1 << 0,
  te_link_id = 1 << 1,
  te_local_addresses = 1 << 2,
  te_remote_addresses = 1 << 3,
  te_metric = 1 << 4,
  te_max_bandwidth = 1 << 5,
  te_max_reservable = 1 << 6,
  te_unreserved = 1 << 7,
  te_admin_group = 1 << 8,
};

// The link TLV. Bandwidths are octets a second, as on the wire.
struct TeLink {
  std::uint16_t present = 0;
  std::uint8_t link_type = 0;
  std::uint32_t link_id = 0;
  std::vector<std::uint32_t> local_addresses;
  std::vector<std::uint32_t> remote_addresses;
  std::uint32_t metric = 0;
  float max_bandwidth = 0;
  float max_reservable_bandwidth = 0;
  std::array<float, 8> unreserved_bandwidth{};
  std::uint32_t admin_group = 0;
  std::vector<Tlv> sub_tlvs;

  void clear();
};

struct Grace {
  bool has_period = false, has_reason = false, has_address = false;
  std::uint32_t period = 0;
  std::uint8_t reason = 0;
  std::uint32_t interface_address = 0;
};

struct RouterInformation {
  bool has_informational = false, has_functional = false;
  std::uint32_t informational_capabilities = 0;  // first 32 bits, bit 0 the highest
  std::uint32_t functional_capabilities = 0;
  Bytes hostname;  // RFC 5642; empty if absent
};

struct TlvContent {
  std::vector<Tlv> tlvs;
  bool has_router_address = false;
  std::uint32_t router_address = 0;
  Grace grace;
  RouterInformation router_information;

  std::span<const TeLink> te_links() const { return {links_.data(), used_links_}; }
  TeLink &add_te_link();
  void clear();

 private:
  std::vector<TeLink> links_;
  std::size_t used_links_ = 0;
};

enum class TlvContentKind : std::uint8_t { traffic_engineering, router_information, grace, other };

// Reads the TLVs of an LSA's body into `out`. False if one overran; what came before is kept.
bool decode_tlvs(Bytes body, TlvContentKind kind, TlvContent &out, const Report &report);

}  // namespace ospf_decode
