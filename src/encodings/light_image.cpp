#include "encodings/light_image.hpp"

#include <kelp/wire.h>

#include "module/failure.hpp"
#include "types/type_record_access.hpp"

namespace harbor::light_image {

bool begin_image(const char *type, kelp_handle *handle, std::int32_t length, std::uint32_t *err) {
  if (!begin(handle, err)) return false;
  if (length >= 1) return true;
  fail(handle, KELP_ERR_NO_MEMORY, err, About(type),
       "found a buffer of %d bytes, expected 1 or more", length);
  return false;
}

// The mismatch does not stop the writer, it lowers the image.
std::uint32_t marshal_variant(kelp_handle *handle, std::uint32_t space_id, void *buffer,
                              const void *object, std::uint8_t variants, std::int32_t length,
                              std::uint32_t *err) {
  std::int8_t variant = kelp::quick::get_instance_variant(handle, object, 0, 1);
  const kelp_type_record *record = object == nullptr ? nullptr : header_of(object)->tinfo;
  const std::int8_t domain = kelp::quick::domain_lookup_variant(handle, record, err);
  if (variant > domain) {
    fail_variant(
        handle, err, About(record == nullptr ? "a null object" : record->type_name),
        "found an object of variant %d, expected at most %d, which the handle's domain gives",
        variant, domain);
    variant = domain;
  }
  variant = type_record_access::capped_variant(variant, variants);
  return kelp::quick::instance_variant_marshal(handle, space_id, buffer, &variant, length, err);
}

std::uint32_t unmarshal_variant(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                                std::int8_t &variant, std::uint8_t variants, std::int32_t length,
                                std::uint32_t *err) {
  std::int8_t read = 0;
  const std::uint32_t used =
      kelp::quick::instance_variant_unmarshal(handle, space_id, buffer, &read, length, err);
  variant = type_record_access::capped_variant(read, variants);
  return used;
}

// Required: neither store is announced, and created_variant stays as it was.
void take_header(kelp_handle *handle, std::uint32_t space_id, kelp_object_header *object,
                 std::int8_t variant, kelp_type_record *record) {
  object->variant = variant;
  object->tinfo = type_record_access::record_for(handle, space_id, record);
}

}  // namespace harbor::light_image
