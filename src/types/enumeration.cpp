#include "types/enumeration.hpp"

#include <kelp/hash.h>

#include <cstring>

namespace harbor::enumeration {

std::int32_t compare_values(const EnumerationObject *a, const EnumerationObject *b) {
  if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
  return static_cast<std::int32_t>(a->value - b->value);
}

std::uint32_t hash_value(const EnumerationObject *object, std::uint32_t seed) {
  return object == nullptr ? seed : SuperFastHash(&object->value, sizeof(object->value), seed);
}

std::uint32_t value_of(const model::Enumeration &type, kelp_handle *handle,
                       const EnumerationObject *object, std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  if (object != nullptr) return object->value;
  fail(handle, KELP_ERR_INVALID, err, About(type.name), "found a null object, expected one");
  return 0;
}

void copy_whole(kelp_handle *handle, std::uint32_t space_id, void *destination,
                const void *source) {
  announce(handle, space_id, destination, model::enumeration_size);
  std::memmove(destination, source, model::enumeration_size);
}

}  // namespace harbor::enumeration
