/* The hash that all hash operations of types end in: Paul Hsieh's published SuperFastHash, with a
 * seed as its initial value so that hashes of several fields chain.
 *
 * It is no protection against chosen inputs. */
#ifndef KELP_HASH_H
#define KELP_HASH_H

#include <kelp/base.h>

KELP_EXTERN_C_BEGIN

/* Returns the hash of length bytes at address, seeded with seed. Bytes pair up in little-endian
 * order on every machine, so the result does not depend on the machine. With length 0, or a null
 * address, no byte is read and the result still depends on the seed. */
KELP_API uint32_t SuperFastHash(const void *address, uint32_t length, uint32_t seed);

KELP_EXTERN_C_END

#endif
