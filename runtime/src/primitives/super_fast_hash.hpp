/* SuperFastHash as its author published it, with the seed in the place of its initial value. The hash
 * operations of the primitives use it directly, SuperFastHash of kelp/hash.h hands through to it. */
#ifndef KELP_PRIMITIVES_SUPER_FAST_HASH_HPP
#define KELP_PRIMITIVES_SUPER_FAST_HASH_HPP

#include <cstdint>

namespace kelp {

/* A null address counts as no bytes. */
uint32_t HashBytes(const void *address, uint32_t length, uint32_t seed);

}  // namespace kelp

#endif
