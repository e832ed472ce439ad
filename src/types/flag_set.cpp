#include "types/flag_set.hpp"

#include <kelp/hash.h>

#include <cstring>

namespace harbor::flag_set {

std::int32_t compare_bytes(const FlagObject *a, const FlagObject *b) {
  if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
  return a->flags - b->flags;
}

std::uint32_t hash_byte(const FlagObject *object, std::uint32_t seed) {
  return object == nullptr ? seed : SuperFastHash(&object->flags, sizeof(object->flags), seed);
}

// Required: the last error is not cleared.
std::uint32_t read(const model::FlagSet &set, kelp_handle *handle, const FlagObject *object,
                   std::uint32_t bit, bool in_set, std::uint32_t *err) {
  if (*err != 0) return 0;
  if (object != nullptr && in_set) return masked(object->flags, bit);
  if (object == nullptr) {
    fail_variant(handle, err, About(set.name), "found a null object, expected one");
  } else {
    fail_variant(handle, err, About(set.name),
                 "found the bit %u, expected one that its variant has", bit);
  }
  return 0;
}

void store_bit(kelp_handle *handle, std::uint32_t space_id, FlagObject *object, std::uint32_t bit,
               bool on) {
  const std::uint32_t mask = 1u << bit;
  const std::uint32_t flags = on ? object->flags | mask : object->flags & ~mask;
  store(handle, space_id, &object->flags, static_cast<std::uint8_t>(flags));
}

// Required: unlike an enumeration's, this set neither adjusts a variant nor checks anything.
void copy_whole(kelp_handle *handle, std::uint32_t space_id, void *destination, const void *source,
                std::uint32_t *err) {
  if (!begin(handle, err)) return;
  announce(handle, space_id, destination, model::flag_set_size);
  std::memmove(destination, source, model::flag_set_size);
}

}  // namespace harbor::flag_set
