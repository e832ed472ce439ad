// What the TLVs of opaque LSAs and of OSPFv3's grace and router information LSAs say, in the words
// of the field: traffic engineering (RFC 3630, 7471), graceful restart (RFC 3623), router
// information (RFC 7770), extended prefixes and links (RFC 7684), segment routing (RFC 8665), MSDs
// (RFC 8476). What is not known keeps its type and its octets.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "ospf_tables/lsa_view.hpp"

namespace tool {

struct TlvWords {
  std::uint16_t type = 0;
  std::uint16_t length = 0;
  std::string name;  // empty for one that is not known
  const char *unit = "";  // of its numbers
  // What it says, in order: a name and a number, a text or a list of these.
  std::vector<std::pair<const char *, nlohmann::ordered_json>> says;
  std::vector<std::uint8_t> octets;  // what is not in words
  std::vector<TlvWords> sub_tlvs;
};

// Out of the LSA's octets; empty when there are none, or its type has no TLVs.
std::vector<TlvWords> tlv_words(const ospf_tables::LsaView &lsa);

// "Adj-SID: label 15000, flags V L, weight 0"
std::string text_of(const TlvWords &tlv);
nlohmann::ordered_json json_of(const std::vector<TlvWords> &tlvs);

}  // namespace tool
