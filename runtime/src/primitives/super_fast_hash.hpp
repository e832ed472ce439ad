// SuperFastHash as its author published it, with the seed in the place of its initial value. The
// hash operations of the primitives use it directly, SuperFastHash of kelp/hash.h hands through to
// it.
#pragma once

#include <cstdint>

namespace kelp {

// A null address counts as no bytes.
uint32_t hash_bytes(const void *address, uint32_t length, uint32_t seed);

}  // namespace kelp
