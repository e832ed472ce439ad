// The identities of the module's two trace sources: what a trace record carries, and what the
// section that holds a source's messages is named after. Each is the MD5 of the text beside it.
#pragma once

#include <array>
#include <cstdint>

namespace harbor::trace_identity {

using Identity = std::array<std::uint8_t, 16>;

// "ospf_harbor_oper trace source: types"
inline constexpr Identity types{0xf2, 0xc8, 0x7a, 0xac, 0x6d, 0xeb, 0x54, 0x41,
                                0x75, 0xc6, 0x79, 0x0b, 0xfd, 0x9e, 0x04, 0xa6};
// "ospf_harbor_oper trace source: tables"
inline constexpr Identity tables{0x6b, 0xcd, 0x8c, 0xad, 0xb8, 0x2b, 0x23, 0x5a,
                                 0x49, 0xd5, 0xdd, 0xfe, 0xd7, 0xc7, 0x57, 0x5c};

}  // namespace harbor::trace_identity
