// What an ip_address means, whatever its unused bytes hold, and its text. The operations of the
// family and the builders for users stand on this.
#pragma once

#include <string_view>

#include "kelp/primitives.h"
#include "kelp/quick.hpp"

namespace kelp {

using quick::address_bits;
using quick::canonical_address;

// Writes the text, at most IP_ADDRESS_TEXT_SIZE - 1 bytes, and returns its length.
size_t format_address(const ip_address &address, char *text);

// False, with *address unchanged, for a text that is no address. The empty text is the unset one.
bool parse_address(std::string_view text, ip_address *address);

}  // namespace kelp
