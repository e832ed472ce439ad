// The words that network engineers use for what LSAs hold: names of types, scopes, links and
// topology numbers, and prefixes. Used by every listing of LSAs.
#pragma once

#include <string>

#include "lsa_vocabulary/types.hpp"
#include "ospf_tables/lsdb_view.hpp"

namespace tool {

using lsa_vocabulary::type_name;
// Every short name, for messages about wrong ones.
std::string list_of_type_names();
const char *link_type_name(std::uint8_t type);
std::string opaque_type_name(std::uint8_t opaque_type);

// What an LSA's age is as of: "of 2026-11-21T04:27:36Z" or "heard"; empty where nobody tells it.
std::string ages_text(const ospf_tables::LsdbEntry &entry);

// In seconds, "DNA 12" for one that does not age.
std::string age_text(std::uint16_t age);

// Names with blanks between them.
std::string joined(const ospf_tables::BitNames &names);

// "10.0.0.0/24" for an address and its mask, with the mask written out when it is not contiguous.
std::string prefix_text(std::uint32_t address, const std::string &mask);

std::string hex_text(const std::vector<std::uint8_t> &octets);

}  // namespace tool
