// Numbers in network byte order at any address. Every multi-byte number of an image goes through
// these two.
#pragma once

#include "kelp/quick.hpp"

namespace kelp {

using quick::load_big_endian;
using quick::store_big_endian;

}  // namespace kelp
