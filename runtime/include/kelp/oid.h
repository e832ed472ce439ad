/* Object identifiers: which object an OID names, which OID an object has, and how many references
 * hold the object's mapping.
 *
 * A mapping ties one object to one OID, both ways, and counts the references that fields hold on
 * it. A mapping whose removal is asked for while references remain is marked; when the last
 * reference goes, kelp_collector_run (kelp/embed.h) ends the object. Mappings go with the memory that
 * holds their object; an OID whose mapping has gone names nothing.
 *
 * Functions with an error word do nothing on a non-zero word. A code that they set is also stored
 * as the handle's last error. */
#ifndef KELP_OID_H
#define KELP_OID_H

#include <kelp/handle.h>

KELP_EXTERN_C_BEGIN

/* The entry of an object in the runtime's mapping; only the runtime looks inside. */
typedef struct kelp_oid_mapping kelp_oid_mapping;

/* Kinds of mapped things. */
enum kelp_oid_kind { KELP_OID_KIND_OBJECT = 1, KELP_OID_KIND_TABLE = 2 };

/* Given as the object to kelp_handle_to_oid: the OID of nothing that can be resolved. Its
 * handle_word is 1 and its id all ones, so that the field is neither empty nor resolvable. */
#define KELP_OID_SENTINEL ((void *)(uintptr_t)UINT64_C(0xFFFFFFFFFFFFF))

/* Directions of the reference count functions. */
enum kelp_oid_direction { KELP_OID_DECREMENT = 0, KELP_OID_INCREMENT = 1 };

/* 1 when the 16 bytes are all zero, so that nothing is referred to, else 0. Null counts as zero. */
KELP_API uint32_t kelp_oid_id_is_zero(const uint8_t *id);

/* The object that the OID names. Null without an error for an empty OID and for one with a
 * handle_word below 256; null with code 2 when no object has the OID, 22 for a null OID. */
KELP_API void *kelp_oid_to_handle(kelp_handle *handle, uint32_t space_id, const kelp_oid *oid,
                                  uint32_t *err);

/* The OID of an object. kind is a kelp_oid_kind; an object without a mapping gets one of that kind.
 * add_reference 1 takes a reference, 0 does not. KELP_OID_SENTINEL gives the OID of nothing and
 * does not look at the error word. On failure the result is all zero: 22 for a null object, 14 for
 * an address in the store that holds no object, 12 without memory. */
KELP_API kelp_oid kelp_handle_to_oid(kelp_handle *handle, uint32_t space_id, void *object,
                                     uint32_t kind, uint32_t add_reference, uint32_t *err);

/* Gives an object its mapping and sets its OBJ_OID_MAPPED, announced to write_notify. kind and
 * dynamic are not looked at. ior, when not null, is the OID that the mapping shall have: that of the
 * same object in another process, so that images with references to it resolve here. Non-zero on
 * success, also when the object is mapped already. 0 with code 22 for a null object or an ior with
 * a zero id, 17 when another object has that OID, 14 and 12 as above. */
KELP_API uint32_t kelp_oid_mapping_create(kelp_handle *handle, uint32_t space_id, void *object,
                                          uint32_t kind, uint32_t dynamic, const kelp_oid *ior,
                                          uint32_t *err);

/* Removes an object's mapping and clears its OBJ_OID_MAPPED, announced to write_notify. Non-zero
 * when the mapping is gone or there was none; 0 without an error while references remain: the
 * mapping is then marked, and the collector ends the object after the last reference. */
KELP_API uint32_t kelp_request_oid_mapping_destroy(kelp_handle *handle, uint32_t space_id,
                                                   void *object, uint32_t *err);

/* Orders two OIDs by id, source and handle_word: -1, 0 or 1. A null OID sorts first. */
KELP_API int32_t kelplib_oid_compare(const kelp_oid *a, const kelp_oid *b);

/* Drops the reference that a by-reference field holds and empties its OID, announced to
 * write_notify, so that a destroy that is tried again does not drop it twice. An empty OID, and one
 * that names nothing here, is no error. */
KELP_API void kelplib_oid_release_internal(kelp_handle *handle, uint32_t space_id,
                                           kelp_reference *field, uint32_t *err);

/* The mapping of the OID's target, null without an error when there is none. */
KELP_API kelp_oid_mapping *kelplib_oid_id_mapping_get(kelp_handle *handle, uint32_t space_id,
                                                      const kelp_oid *oid, uint32_t *err);

/* Writes the 16 bytes as 32 lower-case hexadecimal digits and a NUL, cut to size bytes, and the
 * number of characters to *length when length is not null. Never fails: a null part is printed as
 * zeroes. */
KELP_API void kelplib_oid_id_print(kelp_handle *handle, uint32_t space_id, const uint8_t *id,
                                   char *buffer, uint32_t size, uint32_t *length);
KELP_API void kelplib_oid_src_print(kelp_handle *handle, uint32_t space_id, const uint8_t *source,
                                    char *buffer, uint32_t size, uint32_t *length);

/* Moves the reference count of a mapping by one: direction 0 down, any other up. A count of 0 stays
 * 0 without an error, since images carry references that nobody counted. A null mapping is 22. */
KELP_API void kelplib_update_oid_ref_count(kelp_handle *handle, uint32_t space_id,
                                           kelp_oid_mapping *mapping, uint32_t direction,
                                           uint32_t *err);

/* The same for an object, whose mapping is found first; 2 when it has none. */
KELP_API void kelplib_lookup_and_update_oid_ref_count(kelp_handle *handle, uint32_t space_id,
                                                      const void *object, uint32_t direction,
                                                      uint32_t *err);

KELP_EXTERN_C_END

#endif
