// What the images of enumerations and flag sets share: the opening of a writer and of a reader, the
// variant byte, and what a reader stores in the object's header. Called by the encodings of both.
//
//   offset size meaning, enumeration          offset size meaning, flag set
//        0    1 variant                            0    1 variant
//        1    4 value                              1    4 jump word: 5
//                                                  5    1 the byte of flags
//
// A neighbour of variant 0 in state FULL (held 8): 00 00 00 00 07. Options DC and E: 00 00 00 00
// 05 09. The numbers' byte order is the runtime's; these are its network order.
#pragma once

#include <kelp/core.h>

#include "module/object.hpp"

namespace harbor::light_image {

// False when an earlier failure stands, or the buffer has no room at all (12).
bool begin_image(const char *type, kelp_handle *handle, std::int32_t length, std::uint32_t *err);

// Writes the variant byte and gives the bytes used. An object above the domain's variant fails with
// 43 and is written at the domain's all the same.
std::uint32_t marshal_variant(kelp_handle *handle, std::uint32_t space_id, void *buffer,
                              const void *object, std::uint8_t variants, std::int32_t length,
                              std::uint32_t *err);

// Reads the variant byte, limited to what the type has, and gives the bytes used.
std::uint32_t unmarshal_variant(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                                std::int8_t &variant, std::uint8_t variants, std::int32_t length,
                                std::uint32_t *err);

// Stores the variant and the type record that an image brought.
void take_header(kelp_handle *handle, std::uint32_t space_id, kelp_object_header *object,
                 std::int8_t variant, kelp_type_record *record);

}  // namespace harbor::light_image
