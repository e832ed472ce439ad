// What an ip_address means, whatever its unused bytes hold, and its text. The operations of the
// family and the builders for users stand on this.
#pragma once

#include <string_view>

#include "kelp/primitives.h"

namespace kelp {

// The bits of an address of that family; 0 for the unset and for unknown ones.
uint8_t address_bits(uint8_t family);

// The same address with everything that does not count zeroed: the header, bytes beyond the
// family's, a zone outside IPv6, a prefix length that is not there or too long. An unknown family
// is unset.
ip_address canonical_address(const ip_address &address);

// Writes the text, at most IP_ADDRESS_TEXT_SIZE - 1 bytes, and returns its length.
size_t format_address(const ip_address &address, char *text);

// False, with *address unchanged, for a text that is no address. The empty text is the unset one.
bool parse_address(std::string_view text, ip_address *address);

}  // namespace kelp
