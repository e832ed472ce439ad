// One LSA in full, in the words of the field.
#pragma once

#include <string>

#include "lsa_view.hpp"

namespace tool {

// Several lines, the first with a margin of two blanks, the others with more.
std::string detail_of(const LsaView &lsa);

}  // namespace tool
