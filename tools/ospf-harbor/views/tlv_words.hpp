// What the TLVs of opaque LSAs and of those LSAs of OSPFv3 say that have nothing else, in the words
// of the field: traffic engineering (RFC 3630, 5329, 7471), graceful restart (RFC 3623), router
// information (RFC 7770), extended prefixes and links (RFC 7684), extended LSAs (RFC 8362), segment
// routing (RFC 8665, 8666), MSDs (RFC 8476). What is not known keeps its type and its octets.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "ospf_tables/lsa_view.hpp"

namespace tool {

// In order: a name and a number, a text or a list of these.
using TlvSays = std::vector<std::pair<const char *, nlohmann::ordered_json>>;

struct TlvWords {
  std::uint16_t type = 0;
  std::uint16_t length = 0;
  std::string name;       // empty for one that is not known
  const char *unit = "";  // of its numbers
  TlvSays says;
  std::vector<std::uint8_t> octets;  // what is not in words
  std::vector<TlvWords> sub_tlvs;
};

// Out of the LSA's octets; empty when there are none, or its type has no TLVs.
std::vector<TlvWords> tlv_words(const ospf_tables::LsaView &lsa);

// What an extended LSA of OSPFv3 says before its TLVs: flags, options, what it refers to.
TlvSays head_words(const ospf_tables::LsaView &lsa);

std::string text_of(const TlvSays &says);
// "Adj-SID: label 15000, flags V L, weight 0"
std::string text_of(const TlvWords &tlv);
nlohmann::ordered_json json_of(const TlvSays &says);
nlohmann::ordered_json json_of(const std::vector<TlvWords> &tlvs);

}  // namespace tool
