// The file of the libospf_harbor_oper that this program runs with: what `trace` takes texts from
// when no other library is named.
#pragma once

#include <string>

namespace tool {

// Throws LibraryFailure when the loader does not know.
std::string own_library();

}  // namespace tool
