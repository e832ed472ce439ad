/* ospf_auth_type: Selector of ospf_authentication.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_OSPF_AUTH_TYPE_H
#define OSPF_HARBOR_OPER_OSPF_AUTH_TYPE_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* Gives the variant number limited to the highest variant of ospf_auth_type. Negative numbers
 * pass as they are.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API int32_t ospf_auth_type_variant_data_index_cap(int32_t variant);

/* Gives the 16-byte identity of the object's type, as kelp_get_luid does.
 * Errors: those of kelp_get_luid; null then
 * Ownership: the bytes belong to the type record and live as long
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API const uint8_t *ospf_auth_type_get_luid(kelp_handle *handle, uint32_t space_id,
                                                const ospf_auth_type *object, uint32_t *err);

/* Brings the object to the variant that the handle's domain gives to its type, as far as
 * ospf_auth_type has it. A null object is passed over.
 * Errors: those of kelplib_adjust_variant
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_adjust_variant(kelp_handle *handle, uint32_t space_id,
                                            ospf_auth_type *object, uint32_t *err);

/* Creates an object of type ospf_auth_type at the variant that the handle's domain gives, with a
 * value of 0. Null when there is no memory. A domain that gives no variant is told in the trace,
 * and the object is created all the same.
 * Errors: none is reported
 * Ownership: the caller owns the result and gives it to ospf_auth_type_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API ospf_auth_type *ospf_auth_type_create(kelp_handle *handle, uint32_t space_id);

/* The work of ospf_auth_type_create, with the same result.
 * Errors: as ospf_auth_type_create
 * Ownership: as ospf_auth_type_create
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API ospf_auth_type *ospf_auth_type_create_internal(kelp_handle *handle, uint32_t space_id);

/* As ospf_auth_type_create, in the handle's cr_space_id. Gives the null object of ospf_auth_type,
 * which destroy ignores, when cr_err is set already or there is no memory.
 * Errors: KELP_ERR_NO_MEMORY (12) as the handle's last error and in cr_err when there is no
 *   memory and cr_err is 0
 * Ownership: as ospf_auth_type_create; the null object belongs to the library
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API ospf_auth_type *ospf_auth_type_create_cr(kelp_handle *handle);

/* Prepares the header of an object of type ospf_auth_type in memory of the caller's: the variant
 * that the handle's domain gives, the type record, and flags, OR-ed into obj_flags. Stores are
 * announced when notify is not 0. The object is not counted; skip_stats and sttr_base are not
 * looked at.
 * Errors: those of kelp_domain_lookup_variant; the header is stored all the same. The word is not
 *   read on entry
 * Ownership: the object stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_initialize(kelp_handle *handle, uint32_t space_id,
                                        ospf_auth_type *object, kelp_type_record *record,
                                        int32_t notify, int32_t skip_stats, uint8_t flags,
                                        void *sttr_base, uint32_t *err);

/* Marks the object as living inside other memory. A null object is told in the trace and
 * otherwise passed over; the null object of ospf_auth_type is passed over.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                   ospf_auth_type *object);

/* Counts and frees the object. Null and the null object are ignored. Ends the process when the
 * object's type record is missing or broken, as after an earlier destroy.
 * Errors: none
 * Ownership: takes the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_destroy(kelp_handle *handle, uint32_t space_id,
                                     ospf_auth_type *object);

/* As ospf_auth_type_destroy when free_it is not 0; nothing at all when it is 0.
 * Errors: none
 * Ownership: takes the object when free_it is not 0
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                              ospf_auth_type *object, int32_t free_it);

/* As ospf_auth_type_destroy, in the handle's cr_space_id, whatever cr_err holds.
 * Errors: none
 * Ownership: takes the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_destroy_cr(kelp_handle *handle, ospf_auth_type *object);

/* Gives the bytes that an object of type ospf_auth_type is allocated with.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API size_t ospf_auth_type_sizeof(void);

/* Gives the number of by-reference fields of ospf_auth_type, whatever the object's variant: the
 * slots that ospf_auth_type_get_object_references fills.
 * Errors: KELP_ERR_INVALID (22) for a null object; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API uint32_t ospf_auth_type_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                               const ospf_auth_type *object, uint32_t *err);

/* Stores nothing: an object of type ospf_auth_type refers to no table.
 * Errors: KELP_ERR_INVALID (22) for a null object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void ospf_auth_type_get_object_references(kelp_handle *handle, uint32_t space_id,
                                                   const ospf_auth_type *object, void **tables,
                                                   uint32_t count, uint32_t *err);

/* Gives value, unchanged.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API uint32_t ospf_auth_type_map_to_user_value(uint32_t value);

/* Gives the number that the wire and the variant rule count ospf_auth_type by: value itself, but
 * for nbr_state_type, where 1 to 8 become 0 to 7.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API uint32_t ospf_auth_type_map_to_internal_value(uint32_t value);

/* Orders two objects by value; null stands below all. Only the sign of the result means
 * something: it is a 32-bit difference that wraps.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API int32_t ospf_auth_type_compare(const ospf_auth_type *a, const ospf_auth_type *b);

/* Gives the hash of the value's 4 bytes, which is the next seed; a null object gives the seed.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API uint32_t ospf_auth_type_hash(const ospf_auth_type *object, uint32_t seed);

/* Gives object.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API ospf_auth_type *ospf_auth_type_get(kelp_handle *handle, uint32_t space_id,
                                            ospf_auth_type *object);

/* Gives the value that the object holds.
 * Errors: KELP_ERR_INVALID (22) for a null object; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API uint32_t ospf_auth_type_get_value(kelp_handle *handle, uint32_t space_id,
                                           const ospf_auth_type *object, uint32_t *err);

/* Copies source over destination, all 16 bytes: destination gets the variants, the flags and the
 * type record of source too. Neither may be null.
 * Errors: KELP_ERR_EPOCH (43) when destination's variant does not know the value; destination is
 *   unchanged then
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API void ospf_auth_type_set(kelp_handle *handle, uint32_t space_id,
                                 ospf_auth_type *destination, const ospf_auth_type *source,
                                 uint32_t *err);

/* Sets the value of the object, which may not be null.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not know the value; the object is
 *   unchanged then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API void ospf_auth_type_set_value(kelp_handle *handle, uint32_t space_id,
                                       ospf_auth_type *object, uint32_t value, uint32_t *err);

/* Gives 1 when objects of the handle's domain take the value, else 0. A negative value counts as
 * valid.
 * Errors: those of kelp_domain_lookup_variant, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration (src/types/enumeration.hpp) */
KELP_API uint32_t ospf_auth_type_is_valid_cr(kelp_handle *handle, int32_t value);

/* Gives the bytes of an image: 5.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_len(kelp_handle *handle, uint32_t space_id);

/* Gives the bytes of an image, or 0 when cr_err is set.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_len_cr(kelp_handle *handle);

/* Writes the object's image into buffer, which has length bytes, and gives the bytes written.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1; KELP_ERR_EPOCH (43) when the object's
 *   variant is above the domain's, with the image written at the domain's; those of the runtime's
 *   writers
 * Ownership: buffer and object stay the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                         const ospf_auth_type *object, int32_t length,
                                         uint32_t *err);

/* Reads an image of at most length bytes into object and gives the bytes read. A higher variant
 * than ospf_auth_type has becomes its highest. reuse is handed on.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1; those of the runtime's readers
 * Ownership: buffer and object stay the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_unmarshal(kelp_handle *handle, uint32_t space_id,
                                           const void *buffer, ospf_auth_type *object,
                                           int32_t length, uint32_t reuse, uint32_t *err);

/* Writes "<label>@ospf_auth_type:<value's name>" and a newline behind indent blanks into buffer,
 * at most size bytes, and gives the bytes written. A value without a name gives "Enum value out
 * of range" and no newline. The object may not be null.
 * Errors: none of its own
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                       uint32_t indent, const char *label,
                                       const ospf_auth_type *object, int32_t size, uint32_t *err);

/* As ospf_auth_type_print with indent 0 and the type's name as label. 0xFFFFFFFF when cr_err is
 * set afterwards.
 * Errors: as ospf_auth_type_print, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_print_cr(kelp_handle *handle, const ospf_auth_type *object,
                                          char *buffer, int32_t size);

/* Writes the element tag with one empty element in it, named after the value, into buffer, at
 * most size bytes, and gives the bytes written. A value without a name gives <ospf_auth_type
 * value out of range/>. state_byte is not looked at. The object may not be null.
 * Errors: those of start_tag, xml_enum_print and end_tag
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                        char *buffer, const ospf_auth_type *object, int32_t size,
                                        uint32_t state_byte, uint32_t *err);

/* As ospf_auth_type_to_xml with the type's name as tag. 0xFFFFFFFF when cr_err is set afterwards.
 * Errors: as ospf_auth_type_to_xml, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API uint32_t ospf_auth_type_toxml_cr(kelp_handle *handle, const ospf_auth_type *object,
                                          char *buffer, uint32_t size);

/* Gives the object the first value, in the order of the names, whose empty element stands in the
 * element at path. Without one the object is left alone, which is no failure. The store is not
 * announced and no variant is looked at.
 * Errors: those of xml_get_element_value but KELP_ERR_NOT_FOUND (2); message (message_size bytes,
 *   or null) then says the path
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: enumeration_encodings (src/encodings/enumeration_encodings.hpp) */
KELP_API void ospf_auth_type_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                      kelp_xml_document *document, ospf_auth_type *object,
                                      uint32_t *err, char *message, int32_t message_size);

KELP_EXTERN_C_END

#endif
