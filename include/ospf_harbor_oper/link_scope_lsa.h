/* link_scope_lsa: An LSA of link scope, as received and in typed form for both protocol versions.
 *
 * Fields (name: type, form, first variant):
 *   decoded_completed: kelp_boolean, scalar, 0. The producer has filled the typed fields from raw_data.
 *   raw_data_len: uint32_t, counter, 0. Number of octets in raw_data.
 *   raw_data: uint8_t, array, 0. The LSA as received, header first.
 *   version: uint32_t, scalar, 0. The OSPF version that the LSA belongs to.
 *   ospfv2_lsa_val: ospfv2_lsa, embedded, 0. The LSA in typed form, if it is of OSPFv2; zero else.
 *   ospfv2_links: tbl_ospfv2_link_table, reference, 0. A router LSA's links.
 *   summary: tbl_ospfv2_topology_table, reference, 0. A summary LSA's metrics, one row for each topology.
 *   external: tbl_ospfv2_external_table, reference, 0. An external LSA's entries, one row for each topology.
 *   unknown_tlv: tbl_ospfv2_unknown_tlv_table, reference, 0. TLVs that no field covers.
 *   ospfv3_lsa_val: ospfv3_lsa, embedded, 0. The LSA in typed form, if it is of OSPFv3; zero else.
 *   ospfv3_links: tbl_ospfv3_link_table, reference, 0. A router LSA's links.
 *   prefix_list: tbl_ospfv3_prefix_list_table, reference, 0. A link LSA's prefixes.
 *   ia_prefix_list: tbl_ospfv3_ia_prefix_list_table, reference, 0. An intra-area prefix LSA's prefixes.
 *   multi_topology: tbl_multi_topology_table, reference, 0. The LSA's topology names.
 *   router_address: ip_address, scalar, 1. The router address of traffic-engineering data.
 *   tlv: ospfv2_link_tlv, embedded, 1. The link TLV of traffic-engineering data.
 *   unknown_sub_tlv: tbl_ospfv2_unknown_sub_tlv_table, reference, 1. Sub-TLVs that no field covers.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_LINK_SCOPE_LSA_H
#define OSPF_HARBOR_OPER_LINK_SCOPE_LSA_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* Gives the variant number limited to the highest variant of link_scope_lsa. Negative numbers
 * pass as they are.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API int32_t link_scope_lsa_variant_data_index_cap(int32_t variant);

/* Gives the 16-byte identity of the object's type, as kelp_get_luid does.
 * Errors: those of kelp_get_luid; null then
 * Ownership: the bytes belong to the type record and live as long
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API const uint8_t *link_scope_lsa_get_luid(kelp_handle *handle, uint32_t space_id,
                                                const link_scope_lsa *object, uint32_t *err);

/* Brings the object to the variant that the handle's domain gives to its type, as far as
 * link_scope_lsa has it. A null object is passed over.
 * Errors: those of kelplib_adjust_variant
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void link_scope_lsa_adjust_variant(kelp_handle *handle, uint32_t space_id,
                                            link_scope_lsa *object, uint32_t *err);

/* Makes a new link_scope_lsa: all zero, at the variant of the handle's domain, with state bytes
 * behind it when the handle tracks state. Null when there is no memory or the object cannot be
 * prepared.
 * Errors: no error word; what went wrong is the handle's last error or a trace message
 * Ownership: the object is the caller's, who gives it back with link_scope_lsa_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API link_scope_lsa *link_scope_lsa_create(kelp_handle *handle, uint32_t space_id);

/* As link_scope_lsa_create, without registering the module with the trace library.
 * Errors: as link_scope_lsa_create
 * Ownership: as link_scope_lsa_create
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API link_scope_lsa *link_scope_lsa_create_internal(kelp_handle *handle, uint32_t space_id);

/* As link_scope_lsa_create with the handle's cr_space_id, but without memory, or with an earlier
 * failure in cr_err, the type's null object comes back: a chain of calls may go on with it, and
 * link_scope_lsa_destroy ignores it. Null when the object cannot be prepared.
 * Errors: KELP_ERR_NO_MEMORY (12) as the last error and in cr_err when there is no memory and
 *   cr_err is 0
 * Ownership: as link_scope_lsa_create; the null object belongs to the library and is never
 *   written
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API link_scope_lsa *link_scope_lsa_create_cr(kelp_handle *handle);

/* Prepares a zeroed link_scope_lsa in memory that the caller provides, its children too: headers,
 * target types of references, places of nested state bytes. record is the type's static record.
 * notify non-zero announces each store; skip_stats non-zero leaves out the counting and the state
 * bytes; flags are OR-ed into obj_flags; sttr_base is where the state bytes lie, null for
 * directly behind the object.
 * Errors: KELP_ERR_INVALID (22) when the handle tracks state, flags hold OBJ_NESTED and sttr_base
 *   is null; what the domain's lookup leaves
 * Ownership: the memory stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void link_scope_lsa_initialize(kelp_handle *handle, uint32_t space_id,
                                        link_scope_lsa *object, kelp_type_record *record,
                                        int32_t notify, int32_t skip_stats, uint8_t flags,
                                        void *sttr_base, uint32_t *err);

/* Marks the object and all its children as living inside other memory. A null object is traced
 * and passed over; the type's null object is passed over.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void link_scope_lsa_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                   link_scope_lsa *object);

/* Ends the object: removes its OID mapping, drops its references, gives back what its fields own
 * and frees it. Null and the type's null object are passed over. An object that is still referred
 * to stays as it is until the last reference is gone.
 * Errors: no error word; an object that cannot be ended stays, with a trace message
 * Ownership: the object and all it owns are freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void link_scope_lsa_destroy(kelp_handle *handle, uint32_t space_id,
                                     link_scope_lsa *object);

/* As link_scope_lsa_destroy; with free_it 0 everything is done but the freeing of the object's
 * own memory, the form for an embedded object.
 * Errors: as link_scope_lsa_destroy
 * Ownership: what the object owns is freed, the object itself when free_it is non-zero
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void link_scope_lsa_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                              link_scope_lsa *object, int32_t free_it);

/* As link_scope_lsa_destroy with the handle's cr_space_id.
 * Errors: as link_scope_lsa_destroy
 * Ownership: as link_scope_lsa_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void link_scope_lsa_destroy_cr(kelp_handle *handle, link_scope_lsa *object);

/* Gives the bytes that a link_scope_lsa takes under this handle, its state bytes included when
 * the handle tracks state.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API size_t link_scope_lsa_sizeof(const kelp_handle *handle);

/* Orders two objects by their fields, the first difference deciding: below, at or above 0 as a
 * sorts before, with or after b. Null sorts first. Headers do not count.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API int32_t link_scope_lsa_compare(const link_scope_lsa *a, const link_scope_lsa *b);

/* Gives the hash of the object's fields, seeded with seed; a null object gives the seed.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API uint32_t link_scope_lsa_hash(const link_scope_lsa *object, uint32_t seed);

/* 1 when the variant that the handle's domain gives to link_scope_lsa holds the field of that
 * number, counted from 0 in declared order, else 0. The object is not looked at.
 * Errors: those of the domain's lookup, in the handle's cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API uint32_t link_scope_lsa_is_valid_cr(kelp_handle *handle, const link_scope_lsa *object,
                                             uint32_t field_number);

/* Gives the object itself.
 * Errors: none
 * Ownership: as the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API link_scope_lsa *link_scope_lsa_get(kelp_handle *handle, uint32_t space_id,
                                            const link_scope_lsa *object);

/* Reads the numbers, booleans, enumerations and array counts of the object, each into the
 * argument of its name. Arguments of fields that the object's variant lacks are left as they are,
 * without an error.
 * Errors: none
 * Ownership: the places that are written to are the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API void link_scope_lsa_get_all(kelp_handle *handle, uint32_t space_id,
                                     const link_scope_lsa *object,
                                     kelp_boolean *decoded_completed, uint32_t *raw_data_len,
                                     uint32_t *version, uint32_t *err);

/* Writes the numbers, booleans and enumerations of the object, each from the argument of its
 * name. Fields that the object's variant lacks are passed over, without an error. No state byte
 * changes.
 * Errors: KELP_ERR_EPOCH (43) for an enumeration's value that its variant does not hold; the
 *   arguments behind it are not written then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API void link_scope_lsa_set_all(kelp_handle *handle, uint32_t space_id,
                                     link_scope_lsa *object, kelp_boolean decoded_completed,
                                     uint32_t version, uint32_t *err);

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
KELP_API void link_scope_lsa_set(kelp_handle *handle, uint32_t space_id,
                                 link_scope_lsa *destination, link_scope_lsa *source,
                                 uint32_t *err);

/* Ends a transfer after the bytes of source were copied to destination: source gives up its
 * arrays and arms, and its children are moved each by its own set.
 * Errors: those of the children's set
 * Ownership: what both held after the copy is destination's alone
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void link_scope_lsa_post_copyout_cleanup(kelp_handle *handle, uint32_t space_id,
                                                  link_scope_lsa *destination,
                                                  link_scope_lsa *source, uint32_t *err);

/* Tells the runtime where the state bytes of the embedded structures lie, at any depth, when the
 * object's own begin at sttr_base. Does nothing for a link_scope_lsa without embedded structures.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void link_scope_lsa_offset_update(kelp_handle *handle, uint32_t space_id,
                                           link_scope_lsa *object, void *sttr_base);

/* Makes the runtime forget where the state bytes of the embedded structures lie, at any depth.
 * Does nothing for a link_scope_lsa without embedded structures.
 * Errors: those of kelp_hd_mapping_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void link_scope_lsa_offset_remove(kelp_handle *handle, uint32_t space_id,
                                           link_scope_lsa *object, uint32_t *err);

/* Gives the number of by-reference fields of link_scope_lsa, whatever the object's variant: the
 * slots that link_scope_lsa_get_object_references fills.
 * Errors: KELP_ERR_INVALID (22) for a null object; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (whole object) (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                               const link_scope_lsa *object, uint32_t *err);

/* Writes the table of each by-reference field of link_scope_lsa to references, in field order,
 * null for an empty one. references has room for as many as link_scope_lsa_get_oid_count gives;
 * size is not looked at.
 * Errors: KELP_ERR_INVALID (22) for a null object; what the runtime sets for an OID that names
 *   nothing, with this output and the later ones left alone
 * Ownership: the tables stay the database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (whole object) (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_get_object_references(kelp_handle *handle, uint32_t space_id,
                                                   const link_scope_lsa *object,
                                                   void **references, uint32_t size, uint32_t *err);

/* Sets every state byte of the object, those of embedded structures too, to the low 8 bits of
 * value, unannounced. Only for objects without array elements: the pointers to the state bytes of
 * elements are overwritten too. Does nothing unless handle and object track state.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (whole object) (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_set_all_state_tracking_flag(kelp_handle *handle, uint32_t space_id,
                                                         link_scope_lsa *object, uint32_t value);

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
KELP_API uint32_t link_scope_lsa_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                         const link_scope_lsa *object, int32_t length,
                                         uint32_t *err);

/* Writes the image of object as link_scope_lsa_marshal does, but at the object's own variant when
 * that is above the domain's. Objects embedded in it are lowered all the same.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1, also inside, where an embedded object
 *   begins at the end of the buffer; KELP_ERR_EPOCH (43) when the object's variant is above the
 *   domain's; KELP_ERR_NO_ROOM (90) when the buffer is too short; KELP_ERR_NOT_FOUND (2) when the
 *   selected arm of a choice is missing; KELP_ERR_INVALID (22) for a null object. The image is
 *   ended properly all the same
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t link_scope_lsa_marshal_for_clone(kelp_handle *handle, uint32_t space_id,
                                                   void *buffer, const link_scope_lsa *object,
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
KELP_API uint32_t link_scope_lsa_unmarshal(kelp_handle *handle, uint32_t space_id,
                                           const void *buffer, link_scope_lsa *object,
                                           int32_t length, uint32_t reuse, uint32_t *err);

/* Gives the bytes to provide for the image of object, without an ra-data block. An image may be
 * shorter: an empty array leaves out its state byte. It is longer by a byte for each array
 * element when the handle tracks state and the object does not.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t link_scope_lsa_len(kelp_handle *handle, uint32_t space_id,
                                     const link_scope_lsa *object);

/* Gives what link_scope_lsa_len gives under the handle's cr_space_id, 0 when its cr_err is set.
 * Errors: none; cr_err is only read
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t link_scope_lsa_len_cr(kelp_handle *handle, const link_scope_lsa *object);

/* Writes object as text at the start of buffer, at most size bytes and none for a negative size,
 * each line behind indent blanks, the first one with label; gives the bytes written. The closing
 * line of an object with an indent stands behind a gap of as many bytes, which keeps what buffer
 * held; an object of variant 0 has no closing line when link_scope_lsa has two variants.
 * Errors: none of its own; what a field's print sets stands, and nothing is written behind it. A
 *   text that does not fit is cut without a failure: a result equal to size says that some may be
 *   missing, and the call is repeated with more room
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: text (src/encodings/text.hpp) */
KELP_API uint32_t link_scope_lsa_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                       uint32_t indent, const char *label,
                                       const link_scope_lsa *object, uint32_t size, uint32_t *err);

/* Writes object as text with the type's name as label and no indent, under the handle's
 * cr_space_id; gives the bytes written, or 0xFFFFFFFF when cr_err is set afterwards. Nothing is
 * written for a negative size.
 * Errors: as link_scope_lsa_print, in cr_err; a text is cut as there
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: text (src/encodings/text.hpp) */
KELP_API uint32_t link_scope_lsa_print_cr(kelp_handle *handle, const link_scope_lsa *object,
                                          char *buffer, int32_t size);

/* Writes object as the element tag into buffer, at most size bytes and none for a negative size,
 * and gives the bytes written. state_byte is that of the element; under a tracking handle each
 * field's element carries its own.
 * Errors: what the field writers set, such as KELP_ERR_NO_ROOM (90) when the buffer is too short;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not. What was written
 *   stays
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API uint32_t link_scope_lsa_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                        char *buffer, const link_scope_lsa *object, uint32_t size,
                                        uint32_t state_byte, uint32_t *err);

/* Writes object as an element with the type's name, under the handle's cr_space_id; gives the
 * bytes written, or 0xFFFFFFFF when cr_err is set afterwards.
 * Errors: as link_scope_lsa_to_xml, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API uint32_t link_scope_lsa_toxml_cr(kelp_handle *handle, const link_scope_lsa *object,
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
KELP_API void link_scope_lsa_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                      kelp_xml_document *document, link_scope_lsa *object,
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
KELP_API void link_scope_lsa_clone_internal(kelp_handle *handle, uint32_t space_id,
                                            const link_scope_lsa *source,
                                            link_scope_lsa **destination, void *work,
                                            uint32_t work_size, uint32_t *err);

/* Makes a new object with the content of source in *destination, whatever that pointed at,
 * through the work_size bytes at work.
 * Errors: KELP_ERR_NOT_FOUND (2) for a null destination or work buffer, with nothing done;
 *   KELP_ERR_NO_MEMORY (12) when no object can be made; what writing or reading the image sets,
 *   KELP_ERR_NO_ROOM (90) for a work buffer that is too small
 * Ownership: *destination is the caller's; null after a failure
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void link_scope_lsa_clone(kelp_handle *handle, uint32_t space_id,
                                   const link_scope_lsa *source, link_scope_lsa **destination,
                                   void *work, uint32_t work_size, uint32_t *err);

/* Gives a new object with the content of source, made through the handle's work space.
 * Errors: those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY (12) without memory for the
 *   handle's work space
 * Ownership: the result is the caller's; null after a failure
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API link_scope_lsa *link_scope_lsa_clone_cr(kelp_handle *handle, const link_scope_lsa *source);

/* Overwrites destination with the content of source in place, through the handle's work space.
 * Element blocks that destination held are replaced and not released; arms stay, and the selected
 * ones take the content of source's.
 * Errors: those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY (12) without memory for the
 *   handle's work space
 * Ownership: both stay the caller's; when reading the image fails destination is destroyed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void link_scope_lsa_copy_cr(kelp_handle *handle, const link_scope_lsa *source,
                                     link_scope_lsa *destination);

/* Gives the place of decoded_completed inside the object. The producer has filled the typed
 * fields from raw_data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *link_scope_lsa_decoded_completed_get(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            link_scope_lsa *object, uint32_t *err);

/* Gives the value of decoded_completed, 0 for a null object. The producer has filled the typed
 * fields from raw_data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean link_scope_lsa_decoded_completed_get_value(kelp_handle *handle,
    uint32_t space_id, const link_scope_lsa *object, uint32_t *err);

/* Copies source into decoded_completed. The producer has filled the typed fields from raw_data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void link_scope_lsa_decoded_completed_set(kelp_handle *handle, uint32_t space_id,
                                                   link_scope_lsa *object,
                                                   const kelp_boolean *source, uint32_t *err);

/* Sets decoded_completed. The producer has filled the typed fields from raw_data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void link_scope_lsa_decoded_completed_set_value(kelp_handle *handle, uint32_t space_id,
                                                         link_scope_lsa *object,
                                                         kelp_boolean value, uint32_t *err);

/* Gives the state byte of decoded_completed: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_decoded_completed_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of decoded_completed to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_decoded_completed_state_flag_set(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t value, uint32_t *err);

/* Gives the place of raw_data_len inside the object. Number of octets in raw_data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (counter) (src/types/value_field.hpp) */
KELP_API uint32_t *link_scope_lsa_raw_data_len_get(kelp_handle *handle, uint32_t space_id,
                                                   link_scope_lsa *object, uint32_t *err);

/* Gives the value of raw_data_len, 0 for a null object. Number of octets in raw_data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (counter) (src/types/value_field.hpp) */
KELP_API uint32_t link_scope_lsa_raw_data_len_get_value(kelp_handle *handle, uint32_t space_id,
                                                        const link_scope_lsa *object,
                                                        uint32_t *err);

/* Gives the place of element index of raw_data. The LSA as received, header first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field,
 *   KELP_ERR_NOT_FOUND (2) for an index that is not below the count; null then
 * Ownership: the place belongs to the object and is good until the array grows or is replaced
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API uint8_t *link_scope_lsa_raw_data_get(kelp_handle *handle, uint32_t space_id,
                                              link_scope_lsa *object, uint32_t index,
                                              uint32_t *err);

/* Gives the value of element index of raw_data. The LSA as received, header first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field,
 *   KELP_ERR_NOT_FOUND (2) for an index that is not below the count; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API uint8_t link_scope_lsa_raw_data_get_value(kelp_handle *handle, uint32_t space_id,
                                                   link_scope_lsa *object, uint32_t index,
                                                   uint32_t *err);

/* Copies the first count elements of raw_data to destination, which has room for them. The LSA as
 * received, header first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when count is above the array's own, with nothing copied
 * Ownership: destination is the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API void link_scope_lsa_raw_data_get_mem(kelp_handle *handle, uint32_t space_id,
                                              link_scope_lsa *object, uint8_t *destination,
                                              uint32_t count, uint32_t *err);

/* Copies source into element index of raw_data. An index at or above the count grows the array to
 * index + 1, with zeroes in between; a null source only grows. The LSA as received, header first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field;
 *   KELP_ERR_NO_MEMORY (12) without memory and for index 0xFFFFFFFF, with the elements as they
 *   were, or with the array grown and the element not written when only its state bytes found
 *   none; KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with
 *   nothing changed
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API void link_scope_lsa_raw_data_set(kelp_handle *handle, uint32_t space_id,
                                          link_scope_lsa *object, uint32_t index,
                                          const uint8_t *source, uint32_t *err);

/* Sets element index of raw_data, growing the array as set does, with the handle's cr_space_id
 * and cr_err; gives cr_err. The LSA as received, header first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field;
 *   KELP_ERR_NO_MEMORY (12) without memory and for index 0xFFFFFFFF, with the elements as they
 *   were, or with the array grown and the element not written when only its state bytes found
 *   none; KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with
 *   nothing changed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API uint32_t link_scope_lsa_raw_data_set_cr(kelp_handle *handle, link_scope_lsa *object,
                                                 uint32_t index, uint8_t value);

/* Sets element index of raw_data, growing the array as set does. The LSA as received, header
 * first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field;
 *   KELP_ERR_NO_MEMORY (12) without memory and for index 0xFFFFFFFF, with the elements as they
 *   were, or with the array grown and the element not written when only its state bytes found
 *   none; KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with an
 *   element that is there written all the same and no other made
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API void link_scope_lsa_raw_data_set_value(kelp_handle *handle, uint32_t space_id,
                                                link_scope_lsa *object, uint32_t index,
                                                uint8_t value, uint32_t *err);

/* Replaces all elements of raw_data by copies of the count elements at source; the array as a
 * whole is then marked as written and no element is. The LSA as received, header first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field;
 *   KELP_ERR_NO_MEMORY (12) without memory, with no element block and the old count;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the new
 *   block unfilled and the old count
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API void link_scope_lsa_raw_data_set_mem(kelp_handle *handle, uint32_t space_id,
                                              link_scope_lsa *object, const uint8_t *source,
                                              uint32_t count, uint32_t *err);

/* As set_mem, with the handle's cr_space_id and cr_err; gives cr_err. The LSA as received, header
 * first.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field;
 *   KELP_ERR_NO_MEMORY (12) without memory, with no element block and the old count;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the new
 *   block unfilled and the old count
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API uint32_t link_scope_lsa_raw_data_set_mem_cr(kelp_handle *handle, link_scope_lsa *object,
                                                     const uint8_t *source, uint32_t count);

/* Gives back all elements of raw_data, so that its count is 0; the state bytes stay as they are.
 * A null object or an empty array is passed over. The LSA as received, header first.
 * Errors: none
 * Ownership: the element block is freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: array_field (src/types/array_field.hpp) */
KELP_API void link_scope_lsa_raw_data_remove_elements(kelp_handle *handle, uint32_t space_id,
                                                      link_scope_lsa *object);

/* Gives the state byte of raw_data as a whole.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (array) (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_raw_data_state_flag_whole_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of raw_data as a whole to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (array) (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_raw_data_state_flag_whole_set(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the state byte of element index of raw_data, 0 while the elements have none because they
 * came without.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes, KELP_ERR_NOT_FOUND (2) for an index that is not below the count; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (array) (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_raw_data_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                        link_scope_lsa *object, uint32_t index,
                                                        uint32_t *err);

/* Sets the state byte of element index of raw_data to the low 8 bits of value. Elements that came
 * without state bytes get them first, all 0.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes, KELP_ERR_NOT_FOUND (2) for an index that is not below the count, KELP_ERR_EPOCH
 *   (43) when the object's variant does not hold the field, KELP_ERR_NO_MEMORY (12) without
 *   memory
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (array) (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_raw_data_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                     link_scope_lsa *object, uint32_t index,
                                                     uint32_t value, uint32_t *err);

/* Stores the address of the state bytes of the elements of raw_data, one for each element, into
 * out; 0 while the elements have none because they came without.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; out is unchanged then
 * Ownership: the bytes belong to the object and are good until the array grows, is replaced or
 *   moved
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (array) (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_raw_data_state_flag_get_arr(kelp_handle *handle, uint32_t space_id,
                                                         link_scope_lsa *object, uint64_t *out,
                                                         uint32_t *err);

/* Copies count bytes from source over the beginning of the object's own state bytes, unannounced,
 * as far as the object has any; the state bytes of the elements of raw_data, and the pointers to
 * such among the object's own, stay as they are. count must be that of the array.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes, KELP_ERR_NOT_FOUND (2) for another count than the array's, KELP_ERR_EPOCH (43)
 *   when the object's variant does not hold the field
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (array) (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_raw_data_state_flag_set_arr(kelp_handle *handle, uint32_t space_id,
                                                         link_scope_lsa *object,
                                                         const uint8_t *source, uint32_t count,
                                                         uint32_t *err);

/* Gives the place of version inside the object. The OSPF version that the LSA belongs to.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t *link_scope_lsa_version_get(kelp_handle *handle, uint32_t space_id,
                                              link_scope_lsa *object, uint32_t *err);

/* Gives the value of version, 0 for a null object. The OSPF version that the LSA belongs to.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t link_scope_lsa_version_get_value(kelp_handle *handle, uint32_t space_id,
                                                   const link_scope_lsa *object, uint32_t *err);

/* Copies source into version. The OSPF version that the LSA belongs to.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void link_scope_lsa_version_set(kelp_handle *handle, uint32_t space_id,
                                         link_scope_lsa *object, const uint32_t *source,
                                         uint32_t *err);

/* Sets version. The OSPF version that the LSA belongs to.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void link_scope_lsa_version_set_value(kelp_handle *handle, uint32_t space_id,
                                               link_scope_lsa *object, uint32_t value,
                                               uint32_t *err);

/* Gives the state byte of version: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_version_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of version to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_version_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                    link_scope_lsa *object, uint32_t value,
                                                    uint32_t *err);

/* Gives ospfv2_lsa_val inside the object. The LSA in typed form, if it is of OSPFv2; zero else.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ospfv2_lsa *link_scope_lsa_ospfv2_lsa_val_get(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object, uint32_t *err);

/* Moves the content of source into ospfv2_lsa_val. The LSA in typed form, if it is of OSPFv2;
 * zero else.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void link_scope_lsa_ospfv2_lsa_val_set(kelp_handle *handle, uint32_t space_id,
                                                link_scope_lsa *object, ospfv2_lsa *source,
                                                uint32_t *err);

/* Gives the state byte of ospfv2_lsa_val: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_ospfv2_lsa_val_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of ospfv2_lsa_val to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_ospfv2_lsa_val_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the table that ospfv2_links refers to, null for an empty reference. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_link_table *link_scope_lsa_ospfv2_links_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that ospfv2_links refers to, null for an empty reference. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_link_table *link_scope_lsa_ospfv2_links_get_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object);

/* Makes ospfv2_links refer to target; null empties it. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_ospfv2_links_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                     link_scope_lsa *object,
                                                     tbl_ospfv2_link_table *target, uint32_t *err);

/* Makes ospfv2_links refer to target; null empties it. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_ospfv2_links_set_by_ref_cr(kelp_handle *handle,
                                                            link_scope_lsa *object,
                                                            tbl_ospfv2_link_table *target);

/* Gives the state byte of ospfv2_links: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_ospfv2_links_state_flag_get(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of ospfv2_links to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_ospfv2_links_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                         link_scope_lsa *object, uint32_t value,
                                                         uint32_t *err);

/* Gives the table that summary refers to, null for an empty reference. A summary LSA's metrics,
 * one row for each topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_topology_table *link_scope_lsa_summary_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that summary refers to, null for an empty reference. A summary LSA's metrics,
 * one row for each topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_topology_table *link_scope_lsa_summary_get_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object);

/* Makes summary refer to target; null empties it. A summary LSA's metrics, one row for each
 * topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_summary_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                link_scope_lsa *object,
                                                tbl_ospfv2_topology_table *target, uint32_t *err);

/* Makes summary refer to target; null empties it. A summary LSA's metrics, one row for each
 * topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_summary_set_by_ref_cr(kelp_handle *handle,
                                                       link_scope_lsa *object,
                                                       tbl_ospfv2_topology_table *target);

/* Gives the state byte of summary: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_summary_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of summary to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_summary_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                    link_scope_lsa *object, uint32_t value,
                                                    uint32_t *err);

/* Gives the table that external refers to, null for an empty reference. An external LSA's
 * entries, one row for each topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_external_table *link_scope_lsa_external_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that external refers to, null for an empty reference. An external LSA's
 * entries, one row for each topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_external_table *link_scope_lsa_external_get_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object);

/* Makes external refer to target; null empties it. An external LSA's entries, one row for each
 * topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_external_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                 link_scope_lsa *object,
                                                 tbl_ospfv2_external_table *target, uint32_t *err);

/* Makes external refer to target; null empties it. An external LSA's entries, one row for each
 * topology.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_external_set_by_ref_cr(kelp_handle *handle,
                                                        link_scope_lsa *object,
                                                        tbl_ospfv2_external_table *target);

/* Gives the state byte of external: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_external_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                        link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of external to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_external_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                     link_scope_lsa *object, uint32_t value,
                                                     uint32_t *err);

/* Gives the table that unknown_tlv refers to, null for an empty reference. TLVs that no field
 * covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_unknown_tlv_table *link_scope_lsa_unknown_tlv_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that unknown_tlv refers to, null for an empty reference. TLVs that no field
 * covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_unknown_tlv_table *link_scope_lsa_unknown_tlv_get_by_ref_cr(
    kelp_handle *handle, link_scope_lsa *object);

/* Makes unknown_tlv refer to target; null empties it. TLVs that no field covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_unknown_tlv_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                    link_scope_lsa *object,
                                                    tbl_ospfv2_unknown_tlv_table *target,
                                                    uint32_t *err);

/* Makes unknown_tlv refer to target; null empties it. TLVs that no field covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_unknown_tlv_set_by_ref_cr(kelp_handle *handle,
                                                           link_scope_lsa *object,
                                                           tbl_ospfv2_unknown_tlv_table *target);

/* Gives the state byte of unknown_tlv: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_unknown_tlv_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of unknown_tlv to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_unknown_tlv_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                        link_scope_lsa *object, uint32_t value,
                                                        uint32_t *err);

/* Gives ospfv3_lsa_val inside the object. The LSA in typed form, if it is of OSPFv3; zero else.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ospfv3_lsa *link_scope_lsa_ospfv3_lsa_val_get(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object, uint32_t *err);

/* Moves the content of source into ospfv3_lsa_val. The LSA in typed form, if it is of OSPFv3;
 * zero else.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void link_scope_lsa_ospfv3_lsa_val_set(kelp_handle *handle, uint32_t space_id,
                                                link_scope_lsa *object, ospfv3_lsa *source,
                                                uint32_t *err);

/* Gives the state byte of ospfv3_lsa_val: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_ospfv3_lsa_val_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of ospfv3_lsa_val to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_ospfv3_lsa_val_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the table that ospfv3_links refers to, null for an empty reference. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv3_link_table *link_scope_lsa_ospfv3_links_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that ospfv3_links refers to, null for an empty reference. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv3_link_table *link_scope_lsa_ospfv3_links_get_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object);

/* Makes ospfv3_links refer to target; null empties it. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_ospfv3_links_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                     link_scope_lsa *object,
                                                     tbl_ospfv3_link_table *target, uint32_t *err);

/* Makes ospfv3_links refer to target; null empties it. A router LSA's links.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_ospfv3_links_set_by_ref_cr(kelp_handle *handle,
                                                            link_scope_lsa *object,
                                                            tbl_ospfv3_link_table *target);

/* Gives the state byte of ospfv3_links: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_ospfv3_links_state_flag_get(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of ospfv3_links to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_ospfv3_links_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                         link_scope_lsa *object, uint32_t value,
                                                         uint32_t *err);

/* Gives the table that prefix_list refers to, null for an empty reference. A link LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv3_prefix_list_table *link_scope_lsa_prefix_list_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that prefix_list refers to, null for an empty reference. A link LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv3_prefix_list_table *link_scope_lsa_prefix_list_get_by_ref_cr(
    kelp_handle *handle, link_scope_lsa *object);

/* Makes prefix_list refer to target; null empties it. A link LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_prefix_list_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                    link_scope_lsa *object,
                                                    tbl_ospfv3_prefix_list_table *target,
                                                    uint32_t *err);

/* Makes prefix_list refer to target; null empties it. A link LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_prefix_list_set_by_ref_cr(kelp_handle *handle,
                                                           link_scope_lsa *object,
                                                           tbl_ospfv3_prefix_list_table *target);

/* Gives the state byte of prefix_list: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_prefix_list_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of prefix_list to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_prefix_list_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                        link_scope_lsa *object, uint32_t value,
                                                        uint32_t *err);

/* Gives the table that ia_prefix_list refers to, null for an empty reference. An intra-area
 * prefix LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv3_ia_prefix_list_table *link_scope_lsa_ia_prefix_list_get_by_ref(
    kelp_handle *handle, uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that ia_prefix_list refers to, null for an empty reference. An intra-area
 * prefix LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv3_ia_prefix_list_table *link_scope_lsa_ia_prefix_list_get_by_ref_cr(
    kelp_handle *handle, link_scope_lsa *object);

/* Makes ia_prefix_list refer to target; null empties it. An intra-area prefix LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_ia_prefix_list_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object,
                                                       tbl_ospfv3_ia_prefix_list_table *target,
                                                       uint32_t *err);

/* Makes ia_prefix_list refer to target; null empties it. An intra-area prefix LSA's prefixes.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_ia_prefix_list_set_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object, tbl_ospfv3_ia_prefix_list_table *target);

/* Gives the state byte of ia_prefix_list: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_ia_prefix_list_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of ia_prefix_list to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_ia_prefix_list_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the table that multi_topology refers to, null for an empty reference. The LSA's topology
 * names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_multi_topology_table *link_scope_lsa_multi_topology_get_by_ref(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that multi_topology refers to, null for an empty reference. The LSA's topology
 * names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_multi_topology_table *link_scope_lsa_multi_topology_get_by_ref_cr(
    kelp_handle *handle, link_scope_lsa *object);

/* Makes multi_topology refer to target; null empties it. The LSA's topology names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_multi_topology_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object,
                                                       tbl_multi_topology_table *target,
                                                       uint32_t *err);

/* Makes multi_topology refer to target; null empties it. The LSA's topology names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_multi_topology_set_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object, tbl_multi_topology_table *target);

/* Gives the state byte of multi_topology: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_multi_topology_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of multi_topology to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_multi_topology_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t value,
                                                           uint32_t *err);

/* Gives router_address inside the object. The router address of traffic-engineering data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ip_address *link_scope_lsa_router_address_get(kelp_handle *handle, uint32_t space_id,
                                                       link_scope_lsa *object, uint32_t *err);

/* Moves the content of source into router_address. The router address of traffic-engineering
 * data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void link_scope_lsa_router_address_set(kelp_handle *handle, uint32_t space_id,
                                                link_scope_lsa *object, ip_address *source,
                                                uint32_t *err);

/* Gives the state byte of router_address: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_router_address_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of router_address to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_router_address_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           link_scope_lsa *object, uint32_t value,
                                                           uint32_t *err);

/* Gives tlv inside the object. The link TLV of traffic-engineering data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ospfv2_link_tlv *link_scope_lsa_tlv_get(kelp_handle *handle, uint32_t space_id,
                                                 link_scope_lsa *object, uint32_t *err);

/* Moves the content of source into tlv. The link TLV of traffic-engineering data.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void link_scope_lsa_tlv_set(kelp_handle *handle, uint32_t space_id,
                                     link_scope_lsa *object, ospfv2_link_tlv *source,
                                     uint32_t *err);

/* Gives the state byte of tlv: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_tlv_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                   link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of tlv to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_tlv_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                link_scope_lsa *object, uint32_t value,
                                                uint32_t *err);

/* Gives the table that unknown_sub_tlv refers to, null for an empty reference. Sub-TLVs that no
 * field covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_unknown_sub_tlv_table *link_scope_lsa_unknown_sub_tlv_get_by_ref(
    kelp_handle *handle, uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Gives the table that unknown_sub_tlv refers to, null for an empty reference. Sub-TLVs that no
 * field covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospfv2_unknown_sub_tlv_table *link_scope_lsa_unknown_sub_tlv_get_by_ref_cr(
    kelp_handle *handle, link_scope_lsa *object);

/* Makes unknown_sub_tlv refer to target; null empties it. Sub-TLVs that no field covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void link_scope_lsa_unknown_sub_tlv_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                        link_scope_lsa *object,
                                                        tbl_ospfv2_unknown_sub_tlv_table *target,
                                                        uint32_t *err);

/* Makes unknown_sub_tlv refer to target; null empties it. Sub-TLVs that no field covers.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t link_scope_lsa_unknown_sub_tlv_set_by_ref_cr(kelp_handle *handle,
    link_scope_lsa *object, tbl_ospfv2_unknown_sub_tlv_table *target);

/* Gives the state byte of unknown_sub_tlv: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t link_scope_lsa_unknown_sub_tlv_state_flag_get(kelp_handle *handle,
    uint32_t space_id, link_scope_lsa *object, uint32_t *err);

/* Sets the state byte of unknown_sub_tlv to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void link_scope_lsa_unknown_sub_tlv_state_flag_set(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            link_scope_lsa *object,
                                                            uint32_t value, uint32_t *err);

KELP_EXTERN_C_END

#endif
