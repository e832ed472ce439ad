/* How the two primitives that own more than a number lie inside the objects that embed them. */
#ifndef KELP_PRIMITIVE_LAYOUT_H
#define KELP_PRIMITIVE_LAYOUT_H

#include <kelp/object.h>

KELP_EXTERN_C_BEGIN

enum kelp_address_family { KELP_AF_UNSET = 0, KELP_AF_IPV4 = 4, KELP_AF_IPV6 = 6 };

/* An IP address: 48 bytes, its object header first. The zeroed address is unset. IPv4 takes the
 * first four bytes. */
typedef struct ip_address {
  kelp_object_header header;
  uint8_t family;        /* enum kelp_address_family */
  uint8_t prefix_length; /* meaningful when has_prefix is set */
  uint8_t has_prefix;
  uint8_t reserved[5];
  uint8_t bytes[16];     /* network order */
  uint32_t scope;        /* zone of a link-local IPv6 address, 0 for none */
  uint32_t reserved_word;
} ip_address;

/* A text of any length: 16 bytes. text is allocated through obj_alloc and ends with a NUL that
 * length does not count; null stands for the empty text. */
typedef struct kelp_vstring {
  char *text;
  uint32_t length;
  int8_t variant;
  int8_t created_variant;
  uint8_t obj_flags;
  uint8_t reserved;
} kelp_vstring;

/* A boolean is one 32-bit word, 0 or 1. */
typedef uint32_t kelp_boolean;

KELP_EXTERN_C_END

#endif
