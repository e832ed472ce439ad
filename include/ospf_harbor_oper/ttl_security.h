/* ttl_security: Settings of the TTL check.
 *
 * Fields (name: type, form, first variant):
 *   enabled: kelp_boolean, scalar, 0. Packets with too small a TTL are dropped.
 *   hops: uint8_t, scalar, 0. Number of hops that a packet may have passed.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_TTL_SECURITY_H
#define OSPF_HARBOR_OPER_TTL_SECURITY_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* Gives the variant number limited to the highest variant of ttl_security. Negative numbers pass
 * as they are.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API int32_t ttl_security_variant_data_index_cap(int32_t variant);

/* Gives the 16-byte identity of the object's type, as kelp_get_luid does.
 * Errors: those of kelp_get_luid; null then
 * Ownership: the bytes belong to the type record and live as long
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API const uint8_t *ttl_security_get_luid(kelp_handle *handle, uint32_t space_id,
                                              const ttl_security *object, uint32_t *err);

/* Brings the object to the variant that the handle's domain gives to its type, as far as
 * ttl_security has it. A null object is passed over.
 * Errors: those of kelplib_adjust_variant
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ttl_security_adjust_variant(kelp_handle *handle, uint32_t space_id,
                                          ttl_security *object, uint32_t *err);

/* Makes a new ttl_security: all zero, at the variant of the handle's domain, with state bytes
 * behind it when the handle tracks state. Null when there is no memory or the object cannot be
 * prepared.
 * Errors: no error word; what went wrong is the handle's last error or a trace message
 * Ownership: the object is the caller's, who gives it back with ttl_security_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API ttl_security *ttl_security_create(kelp_handle *handle, uint32_t space_id);

/* As ttl_security_create, without registering the module with the trace library.
 * Errors: as ttl_security_create
 * Ownership: as ttl_security_create
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API ttl_security *ttl_security_create_internal(kelp_handle *handle, uint32_t space_id);

/* As ttl_security_create with the handle's cr_space_id, but without memory, or with an earlier
 * failure in cr_err, the type's null object comes back: a chain of calls may go on with it, and
 * ttl_security_destroy ignores it. Null when the object cannot be prepared.
 * Errors: KELP_ERR_NO_MEMORY (12) as the last error and in cr_err when there is no memory and
 *   cr_err is 0
 * Ownership: as ttl_security_create; the null object belongs to the library and is never written
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API ttl_security *ttl_security_create_cr(kelp_handle *handle);

/* Prepares a zeroed ttl_security in memory that the caller provides, its children too: headers,
 * target types of references, places of nested state bytes. record is the type's static record.
 * notify non-zero announces each store; skip_stats non-zero leaves out the counting and the state
 * bytes; flags are OR-ed into obj_flags; sttr_base is where the state bytes lie, null for
 * directly behind the object.
 * Errors: KELP_ERR_INVALID (22) when the handle tracks state, flags hold OBJ_NESTED and sttr_base
 *   is null; what the domain's lookup leaves
 * Ownership: the memory stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ttl_security_initialize(kelp_handle *handle, uint32_t space_id,
                                      ttl_security *object, kelp_type_record *record,
                                      int32_t notify, int32_t skip_stats, uint8_t flags,
                                      void *sttr_base, uint32_t *err);

/* Marks the object and all its children as living inside other memory. A null object is traced
 * and passed over; the type's null object is passed over.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ttl_security_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                 ttl_security *object);

/* Ends the object: removes its OID mapping, drops its references, gives back what its fields own
 * and frees it. Null and the type's null object are passed over. An object that is still referred
 * to stays as it is until the last reference is gone.
 * Errors: no error word; an object that cannot be ended stays, with a trace message
 * Ownership: the object and all it owns are freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ttl_security_destroy(kelp_handle *handle, uint32_t space_id, ttl_security *object);

/* As ttl_security_destroy; with free_it 0 everything is done but the freeing of the object's own
 * memory, the form for an embedded object.
 * Errors: as ttl_security_destroy
 * Ownership: what the object owns is freed, the object itself when free_it is non-zero
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ttl_security_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                            ttl_security *object, int32_t free_it);

/* As ttl_security_destroy with the handle's cr_space_id.
 * Errors: as ttl_security_destroy
 * Ownership: as ttl_security_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ttl_security_destroy_cr(kelp_handle *handle, ttl_security *object);

/* Gives the bytes that a ttl_security takes under this handle, its state bytes included when the
 * handle tracks state.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API size_t ttl_security_sizeof(const kelp_handle *handle);

/* Orders two objects by their fields, the first difference deciding: below, at or above 0 as a
 * sorts before, with or after b. Null sorts first. Headers do not count.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API int32_t ttl_security_compare(const ttl_security *a, const ttl_security *b);

/* Gives the hash of the object's fields, seeded with seed; a null object gives the seed.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API uint32_t ttl_security_hash(const ttl_security *object, uint32_t seed);

/* 1 when the variant that the handle's domain gives to ttl_security holds the field of that
 * number, counted from 0 in declared order, else 0. The object is not looked at.
 * Errors: those of the domain's lookup, in the handle's cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API uint32_t ttl_security_is_valid_cr(kelp_handle *handle, const ttl_security *object,
                                           uint32_t field_number);

/* Gives the object itself.
 * Errors: none
 * Ownership: as the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API ttl_security *ttl_security_get(kelp_handle *handle, uint32_t space_id,
                                        const ttl_security *object);

/* Reads the numbers, booleans, enumerations and array counts of the object, each into the
 * argument of its name. Arguments of fields that the object's variant lacks are left as they are,
 * without an error.
 * Errors: none
 * Ownership: the places that are written to are the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API void ttl_security_get_all(kelp_handle *handle, uint32_t space_id,
                                   const ttl_security *object, kelp_boolean *enabled,
                                   uint8_t *hops, uint32_t *err);

/* Writes the numbers, booleans and enumerations of the object, each from the argument of its
 * name. Fields that the object's variant lacks are passed over, without an error. No state byte
 * changes.
 * Errors: KELP_ERR_EPOCH (43) for an enumeration's value that its variant does not hold; the
 *   arguments behind it are not written then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API void ttl_security_set_all(kelp_handle *handle, uint32_t space_id, ttl_security *object,
                                   kelp_boolean enabled, uint8_t hops, uint32_t *err);

/* Moves the content of source to destination, the header with it, but for the two flags that say
 * whether destination has state bytes and where: they stay its own, and those of its children
 * theirs. State bytes come along when the handle tracks state and both objects have them; those
 * of array elements that destination held go in any case. A non-zero error word on entry stops
 * nothing.
 * Errors: KELP_ERR_INVALID (22) when the handle tracks state and source does not, with the bytes
 *   copied and both objects holding the same texts, arrays and arms
 * Ownership: source stays the caller's, but gives up what it owned; what destination owned before
 *   is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ttl_security_set(kelp_handle *handle, uint32_t space_id, ttl_security *destination,
                               ttl_security *source, uint32_t *err);

/* Ends a transfer after the bytes of source were copied to destination: source gives up its
 * arrays and arms, and its children are moved each by its own set.
 * Errors: those of the children's set
 * Ownership: what both held after the copy is destination's alone
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ttl_security_post_copyout_cleanup(kelp_handle *handle, uint32_t space_id,
                                                ttl_security *destination, ttl_security *source,
                                                uint32_t *err);

/* Tells the runtime where the state bytes of the embedded structures lie, at any depth, when the
 * object's own begin at sttr_base. Does nothing for a ttl_security without embedded structures.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ttl_security_offset_update(kelp_handle *handle, uint32_t space_id,
                                         ttl_security *object, void *sttr_base);

/* Makes the runtime forget where the state bytes of the embedded structures lie, at any depth.
 * Does nothing for a ttl_security without embedded structures.
 * Errors: those of kelp_hd_mapping_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ttl_security_offset_remove(kelp_handle *handle, uint32_t space_id,
                                         ttl_security *object, uint32_t *err);

/* Gives the number of by-reference fields of ttl_security, whatever the object's variant: the
 * slots that ttl_security_get_object_references fills.
 * Errors: KELP_ERR_INVALID (22) for a null object; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (whole object) (src/types/reference_field.hpp) */
KELP_API uint32_t ttl_security_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                             const ttl_security *object, uint32_t *err);

/* Writes the table of each by-reference field of ttl_security to references, in field order, null
 * for an empty one. references has room for as many as ttl_security_get_oid_count gives; size is
 * not looked at.
 * Errors: KELP_ERR_INVALID (22) for a null object; what the runtime sets for an OID that names
 *   nothing, with this output and the later ones left alone
 * Ownership: the tables stay the database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (whole object) (src/types/reference_field.hpp) */
KELP_API void ttl_security_get_object_references(kelp_handle *handle, uint32_t space_id,
                                                 const ttl_security *object, void **references,
                                                 uint32_t size, uint32_t *err);

/* Sets every state byte of the object, those of embedded structures too, to the low 8 bits of
 * value, unannounced. Only for objects without array elements: the pointers to the state bytes of
 * elements are overwritten too. Does nothing unless handle and object track state.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (whole object) (src/types/state_tracking.hpp) */
KELP_API void ttl_security_set_all_state_tracking_flag(kelp_handle *handle, uint32_t space_id,
                                                       ttl_security *object, uint32_t value);

/* Writes the image of object into buffer, length bytes long, and gives the bytes written. Make
 * the buffer 4 bytes longer than length tells: the last state byte and the patched jump word of
 * an image that did not fit may fall behind it.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1, also inside, where an embedded object
 *   begins at the end of the buffer; KELP_ERR_EPOCH (43) when the object's variant is above the
 *   domain's; KELP_ERR_NO_ROOM (90) when the buffer is too short; KELP_ERR_NOT_FOUND (2) when the
 *   selected arm of a choice is missing; KELP_ERR_INVALID (22) for a null object. The image is
 *   ended properly all the same
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ttl_security_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                       const ttl_security *object, int32_t length, uint32_t *err);

/* Writes the image of object as ttl_security_marshal does, but at the object's own variant when
 * that is above the domain's. Objects embedded in it are lowered all the same.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1, also inside, where an embedded object
 *   begins at the end of the buffer; KELP_ERR_EPOCH (43) when the object's variant is above the
 *   domain's; KELP_ERR_NO_ROOM (90) when the buffer is too short; KELP_ERR_NOT_FOUND (2) when the
 *   selected arm of a choice is missing; KELP_ERR_INVALID (22) for a null object. The image is
 *   ended properly all the same
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ttl_security_marshal_for_clone(kelp_handle *handle, uint32_t space_id,
                                                 void *buffer, const ttl_security *object,
                                                 int32_t length, uint32_t *err);

/* Reads an image of at most length bytes from buffer into object and gives the bytes consumed.
 * Set reuse when the object may hold arrays from an earlier image: they are then reused or
 * released. Fields that the image lacks keep what they held; what is behind the fields known here
 * is skipped. The state bytes of the elements of an array go when their number changes and the
 * image brings none.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1, at any level, and when there is no
 *   memory, with the object half filled and 0 as the result; KELP_ERR_NO_ROOM (90) when the image
 *   is cut; KELP_ERR_INVALID (22) for a null object and for a value that no writer writes
 * Ownership: what is allocated for arrays, texts and arms belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ttl_security_unmarshal(kelp_handle *handle, uint32_t space_id,
                                         const void *buffer, ttl_security *object, int32_t length,
                                         uint32_t reuse, uint32_t *err);

/* Gives the bytes to provide for the image of object, without an ra-data block. An image may be
 * shorter: an empty array leaves out its state byte. It is longer by a byte for each array
 * element when the handle tracks state and the object does not.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ttl_security_len(kelp_handle *handle, uint32_t space_id,
                                   const ttl_security *object);

/* Gives what ttl_security_len gives under the handle's cr_space_id, 0 when its cr_err is set.
 * Errors: none; cr_err is only read
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ttl_security_len_cr(kelp_handle *handle, const ttl_security *object);

/* Writes object as text at the start of buffer, at most size bytes and none for a negative size,
 * each line behind indent blanks, the first one with label; gives the bytes written. The closing
 * line of an object with an indent stands behind a gap of as many bytes, which keeps what buffer
 * held; an object of variant 0 has no closing line when ttl_security has two variants.
 * Errors: none of its own; what a field's print sets stands, and nothing is written behind it. A
 *   text that does not fit is cut without a failure: a result equal to size says that some may be
 *   missing, and the call is repeated with more room
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: text (src/encodings/text.hpp) */
KELP_API uint32_t ttl_security_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                     uint32_t indent, const char *label,
                                     const ttl_security *object, uint32_t size, uint32_t *err);

/* Writes object as text with the type's name as label and no indent, under the handle's
 * cr_space_id; gives the bytes written, or 0xFFFFFFFF when cr_err is set afterwards. Nothing is
 * written for a negative size.
 * Errors: as ttl_security_print, in cr_err; a text is cut as there
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: text (src/encodings/text.hpp) */
KELP_API uint32_t ttl_security_print_cr(kelp_handle *handle, const ttl_security *object,
                                        char *buffer, int32_t size);

/* Writes object as the element tag into buffer, at most size bytes and none for a negative size,
 * and gives the bytes written. state_byte is that of the element; under a tracking handle each
 * field's element carries its own.
 * Errors: what the field writers set, such as KELP_ERR_NO_ROOM (90) when the buffer is too short;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not. What was written
 *   stays
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API uint32_t ttl_security_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                      char *buffer, const ttl_security *object, uint32_t size,
                                      uint32_t state_byte, uint32_t *err);

/* Writes object as an element with the type's name, under the handle's cr_space_id; gives the
 * bytes written, or 0xFFFFFFFF when cr_err is set afterwards.
 * Errors: as ttl_security_to_xml, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API uint32_t ttl_security_toxml_cr(kelp_handle *handle, const ttl_security *object,
                                        char *buffer, uint32_t size);

/* Reads the element at path into object. Fields that it does not have keep what they held;
 * elements that are no fields are passed over. A failed lookup is told in message, message_size
 * bytes or null.
 * Errors: KELP_ERR_NOT_FOUND (2) when there is no element at path; KELP_ERR_NO_MEMORY (12) when
 *   there is no memory; what a field's reader sets otherwise. What was read before stays
 * Ownership: what is allocated for arrays, texts and arms belongs to the object; an arm that it
 *   had before is left to the caller
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API void ttl_security_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                    kelp_xml_document *document, ttl_security *object,
                                    uint32_t *err, char *message, int32_t message_size);

/* Copies source into *destination, which is made first when it is null, through the work_size
 * bytes at work. Element blocks that *destination held are replaced and not released; arms stay,
 * and the selected ones take the content of source's.
 * Errors: KELP_ERR_NOT_FOUND (2) for a null destination or work buffer, with nothing done;
 *   KELP_ERR_NO_MEMORY (12) when no object can be made; what writing or reading the image sets,
 *   KELP_ERR_NO_ROOM (90) for a work buffer that is too small
 * Ownership: *destination is the caller's; when reading the image fails it is destroyed, a given
 *   one too, and becomes null
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void ttl_security_clone_internal(kelp_handle *handle, uint32_t space_id,
                                          const ttl_security *source, ttl_security **destination,
                                          void *work, uint32_t work_size, uint32_t *err);

/* Makes a new object with the content of source in *destination, whatever that pointed at,
 * through the work_size bytes at work.
 * Errors: KELP_ERR_NOT_FOUND (2) for a null destination or work buffer, with nothing done;
 *   KELP_ERR_NO_MEMORY (12) when no object can be made; what writing or reading the image sets,
 *   KELP_ERR_NO_ROOM (90) for a work buffer that is too small
 * Ownership: *destination is the caller's; null after a failure
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void ttl_security_clone(kelp_handle *handle, uint32_t space_id,
                                 const ttl_security *source, ttl_security **destination,
                                 void *work, uint32_t work_size, uint32_t *err);

/* Gives a new object with the content of source, made through the handle's work space.
 * Errors: those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY (12) without memory for the
 *   handle's work space
 * Ownership: the result is the caller's; null after a failure
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API ttl_security *ttl_security_clone_cr(kelp_handle *handle, const ttl_security *source);

/* Overwrites destination with the content of source in place, through the handle's work space.
 * Element blocks that destination held are replaced and not released; arms stay, and the selected
 * ones take the content of source's.
 * Errors: those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY (12) without memory for the
 *   handle's work space
 * Ownership: both stay the caller's; when reading the image fails destination is destroyed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void ttl_security_copy_cr(kelp_handle *handle, const ttl_security *source,
                                   ttl_security *destination);

/* Gives the place of enabled inside the object. Packets with too small a TTL are dropped.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ttl_security_enabled_get(kelp_handle *handle, uint32_t space_id,
                                                ttl_security *object, uint32_t *err);

/* Gives the value of enabled, 0 for a null object. Packets with too small a TTL are dropped.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ttl_security_enabled_get_value(kelp_handle *handle, uint32_t space_id,
                                                     const ttl_security *object, uint32_t *err);

/* Copies source into enabled. Packets with too small a TTL are dropped.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ttl_security_enabled_set(kelp_handle *handle, uint32_t space_id,
                                       ttl_security *object, const kelp_boolean *source,
                                       uint32_t *err);

/* Sets enabled. Packets with too small a TTL are dropped.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ttl_security_enabled_set_value(kelp_handle *handle, uint32_t space_id,
                                             ttl_security *object, kelp_boolean value,
                                             uint32_t *err);

/* Gives the state byte of enabled: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ttl_security_enabled_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                     ttl_security *object, uint32_t *err);

/* Sets the state byte of enabled to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ttl_security_enabled_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                  ttl_security *object, uint32_t value,
                                                  uint32_t *err);

/* Gives the place of hops inside the object. Number of hops that a packet may have passed.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint8_t *ttl_security_hops_get(kelp_handle *handle, uint32_t space_id,
                                        ttl_security *object, uint32_t *err);

/* Gives the value of hops, 0 for a null object. Number of hops that a packet may have passed.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint8_t ttl_security_hops_get_value(kelp_handle *handle, uint32_t space_id,
                                             const ttl_security *object, uint32_t *err);

/* Copies source into hops. Number of hops that a packet may have passed.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ttl_security_hops_set(kelp_handle *handle, uint32_t space_id, ttl_security *object,
                                    const uint8_t *source, uint32_t *err);

/* Sets hops. Number of hops that a packet may have passed.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ttl_security_hops_set_value(kelp_handle *handle, uint32_t space_id,
                                          ttl_security *object, uint8_t value, uint32_t *err);

/* Gives the state byte of hops: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ttl_security_hops_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                  ttl_security *object, uint32_t *err);

/* Sets the state byte of hops to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ttl_security_hops_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                               ttl_security *object, uint32_t value, uint32_t *err);

KELP_EXTERN_C_END

#endif
