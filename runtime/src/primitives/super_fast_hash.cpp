// Four bytes at a time as two 16-bit halves, the one to three bytes that are left in a step of
// their own, then an avalanche that runs for every length, 0 too. Halves are put together byte by
// byte, so any address alignment and any machine byte order give the same result.
#include "primitives/super_fast_hash.hpp"

#include "kelp/hash.h"

namespace kelp {
namespace {

uint32_t half(const uint8_t *at) { return at[0] | (uint32_t{at[1]} << 8); }

// The published text reads the odd byte as a signed char, whatever the compiler's plain char is.
uint32_t signed_byte(uint8_t byte) { return static_cast<uint32_t>(static_cast<int8_t>(byte)); }

}  // namespace

uint32_t hash_bytes(const void *address, uint32_t length, uint32_t seed) {
  const auto *at = static_cast<const uint8_t *>(address);
  if (at == nullptr) length = 0;
  uint32_t hash = seed;
  for (uint32_t quads = length / 4; quads > 0; --quads, at += 4) {
    hash += half(at);
    hash = (hash << 16) ^ ((half(at + 2) << 11) ^ hash);
    hash += hash >> 11;
  }
  switch (length % 4) {
    case 3:
      hash += half(at);
      hash ^= hash << 16;
      hash ^= signed_byte(at[2]) << 18;
      hash += hash >> 11;
      break;
    case 2:
      hash += half(at);
      hash ^= hash << 11;
      hash += hash >> 17;
      break;
    case 1:
      hash += signed_byte(at[0]);
      hash ^= hash << 10;
      hash += hash >> 1;
      break;
    default:
      break;
  }
  hash ^= hash << 3;
  hash += hash >> 5;
  hash ^= hash << 4;
  hash += hash >> 17;
  hash ^= hash << 25;
  hash += hash >> 6;
  return hash;
}

}  // namespace kelp

uint32_t SuperFastHash(const void *address, uint32_t length, uint32_t seed) {
  return kelp::hash_bytes(address, length, seed);
}
