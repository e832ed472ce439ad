// Type records of the primitives that are embedded as objects. Each has one variant that never
// changes, and counters that stay 0, since primitives are not counted.
#pragma once

#include "kelp/object.h"

namespace kelp {

constexpr uint8_t hex_digit(char digit) {
  return static_cast<uint8_t>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
}

// md5_text is the type's stable identity: 32 lower-case hexadecimal digits.
constexpr kelp_type_record primitive_type_record(const char *type_name, const char (&md5_text)[33],
                                                 kelp_variant_info *variants) {
  kelp_type_record record{};
  record.magic = KELP_TYPE_MAGIC;
  for (int i = 0; i < 16; ++i) {
    record.md5[i] =
        static_cast<uint8_t>(hex_digit(md5_text[2 * i]) << 4 | hex_digit(md5_text[2 * i + 1]));
  }
  for (int i = 0; i < 32; ++i) record.md5_text[i] = md5_text[i];
  for (int i = 0; type_name[i] != '\0'; ++i) record.type_name[i] = type_name[i];
  constexpr char kModule[] = "kelp";
  for (int i = 0; kModule[i] != '\0'; ++i) record.module_name[i] = kModule[i];
  constexpr char kKind[] = "type";
  for (int i = 0; kKind[i] != '\0'; ++i) record.kind[i] = kKind[i];
  record.resolved_variant = -1;
  record.varinfo = variants;
  return record;
}

}  // namespace kelp
