// What the rows of an LSA have no room for, out of its octets, which stand beside the fields.
#pragma once

#include "ospf_tables/lsa_view.hpp"

namespace ospf_tables {

// Puts what the octets say in the place of what the fields do: metrics above 65,535, links that are
// equal to others, bits of options and flags that the model lacks, metrics of intra-area prefixes,
// and whether there is a tag. A view whose octets are not there, or end early, keeps what it has.
void add_from_octets(LsaView &view);

}  // namespace ospf_tables
