// One LSA in full, in the words of the field.
#pragma once

#include <string>

#include "ospf_tables/lsa_view.hpp"
#include "views/router_names.hpp"

namespace tool {

// Several lines, the first with a margin of two blanks, the others with more.
std::string detail_of(const ospf_tables::LsaView &lsa, const RouterNames &names = {});

}  // namespace tool
