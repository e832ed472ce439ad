/* ospf_interface: An interface: settings, timers and state.
 *
 * Fields (name: type, form, first variant):
 *   name: kelp_vstring, scalar, 0. The interface's name; key of the table.
 *   network_type: ospf_network_type, enumeration, 0. How OSPF treats the network.
 *   passive: kelp_boolean, scalar, 0. No protocol packets are sent or taken.
 *   demand_circuit: kelp_boolean, scalar, 0. The interface is treated as a demand circuit.
 *   multi_area_val: multi_area, embedded, 0. Settings of a multi-area adjacency.
 *   static_neighbor: tbl_ospf_static_neighbor_table, reference, 0. Configured neighbours.
 *   node_flag: kelp_boolean, scalar, 0. The node flag of the interface's prefix.
 *   fast_reroute_val: fast_reroute, embedded, 0. Settings of fast reroute.
 *   cost: uint16_t, scalar, 0. Output cost.
 *   hello_interval: uint16_t, scalar, 0. Time between hellos; the producer chooses the unit.
 *   dead_interval: uint16_t, scalar, 0. Silence after which a neighbour is down; the producer chooses the unit.
 *   retransmit_interval: uint16_t, scalar, 0. Time between retransmissions; the producer chooses the unit.
 *   transmit_delay: uint16_t, scalar, 0. Estimated time to send an update; the producer chooses the unit.
 *   mtu_ignore: kelp_boolean, scalar, 0. A neighbour's MTU is not compared.
 *   lls: kelp_boolean, scalar, 0. Link-local signalling is on.
 *   prefix_suppression: kelp_boolean, scalar, 0. The interface's prefixes are not advertised.
 *   bfd: kelp_boolean, scalar, 0. Forwarding failures are detected by BFD.
 *   ttl_security_val: ttl_security, embedded, 0. Settings of the TTL check.
 *   enable: kelp_boolean, scalar, 0. OSPF runs on the interface.
 *   authentication_val: ospf_authentication, embedded, 0. How packets are authenticated.
 *   state: kelp_vstring, scalar, 0. The interface state as free text.
 *   hello_timer: uint32_t, scalar, 0. The hello timer when reported; the producer chooses the unit.
 *   wait_timer: uint32_t, scalar, 0. The wait timer when reported; the producer chooses the unit.
 *   dr: ip_address, scalar, 0. Address of the designated router.
 *   bdr: ip_address, scalar, 0. Address of the backup designated router.
 *   neighbor: tbl_ospf_neighbor_table, reference, 0. Neighbours heard on the interface.
 *   link_scope_lsas: tbl_link_scope_lsas_table, reference, 0. Link-state databases of the interface, one row for each LS type.
 *   multi_topology: tbl_multi_topology_table, reference, 0. The interface's topology names.
 *   priority: uint8_t, scalar, 1. The router priority; 0 never becomes designated router.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_OSPF_INTERFACE_H
#define OSPF_HARBOR_OPER_OSPF_INTERFACE_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* Gives the variant number limited to the highest variant of ospf_interface. Negative numbers
 * pass as they are.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API int32_t ospf_interface_variant_data_index_cap(int32_t variant);

/* Gives the 16-byte identity of the object's type, as kelp_get_luid does.
 * Errors: those of kelp_get_luid; null then
 * Ownership: the bytes belong to the type record and live as long
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API const uint8_t *ospf_interface_get_luid(kelp_handle *handle, uint32_t space_id,
                                                const ospf_interface *object, uint32_t *err);

/* Brings the object to the variant that the handle's domain gives to its type, as far as
 * ospf_interface has it. A null object is passed over.
 * Errors: those of kelplib_adjust_variant
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ospf_interface_adjust_variant(kelp_handle *handle, uint32_t space_id,
                                            ospf_interface *object, uint32_t *err);

/* Makes a new ospf_interface: all zero, at the variant of the handle's domain, with state bytes
 * behind it when the handle tracks state. Null when there is no memory or the object cannot be
 * prepared.
 * Errors: no error word; what went wrong is the handle's last error or a trace message
 * Ownership: the object is the caller's, who gives it back with ospf_interface_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API ospf_interface *ospf_interface_create(kelp_handle *handle, uint32_t space_id);

/* As ospf_interface_create, without registering the module with the trace library.
 * Errors: as ospf_interface_create
 * Ownership: as ospf_interface_create
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API ospf_interface *ospf_interface_create_internal(kelp_handle *handle, uint32_t space_id);

/* As ospf_interface_create with the handle's cr_space_id, but without memory, or with an earlier
 * failure in cr_err, the type's null object comes back: a chain of calls may go on with it, and
 * ospf_interface_destroy ignores it. Null when the object cannot be prepared.
 * Errors: KELP_ERR_NO_MEMORY (12) as the last error and in cr_err when there is no memory and
 *   cr_err is 0
 * Ownership: as ospf_interface_create; the null object belongs to the library and is never
 *   written
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API ospf_interface *ospf_interface_create_cr(kelp_handle *handle);

/* Prepares a zeroed ospf_interface in memory that the caller provides, its children too: headers,
 * target types of references, places of nested state bytes. record is the type's static record.
 * notify non-zero announces each store; skip_stats non-zero leaves out the counting and the state
 * bytes; flags are OR-ed into obj_flags; sttr_base is where the state bytes lie, null for
 * directly behind the object.
 * Errors: KELP_ERR_INVALID (22) when the handle tracks state, flags hold OBJ_NESTED and sttr_base
 *   is null; what the domain's lookup leaves
 * Ownership: the memory stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ospf_interface_initialize(kelp_handle *handle, uint32_t space_id,
                                        ospf_interface *object, kelp_type_record *record,
                                        int32_t notify, int32_t skip_stats, uint8_t flags,
                                        void *sttr_base, uint32_t *err);

/* Marks the object and all its children as living inside other memory. A null object is traced
 * and passed over; the type's null object is passed over.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ospf_interface_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                   ospf_interface *object);

/* Ends the object: removes its OID mapping, drops its references, gives back what its fields own
 * and frees it. Null and the type's null object are passed over. An object that is still referred
 * to stays as it is until the last reference is gone.
 * Errors: no error word; an object that cannot be ended stays, with a trace message
 * Ownership: the object and all it owns are freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ospf_interface_destroy(kelp_handle *handle, uint32_t space_id,
                                     ospf_interface *object);

/* As ospf_interface_destroy; with free_it 0 everything is done but the freeing of the object's
 * own memory, the form for an embedded object.
 * Errors: as ospf_interface_destroy
 * Ownership: what the object owns is freed, the object itself when free_it is non-zero
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ospf_interface_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                              ospf_interface *object, int32_t free_it);

/* As ospf_interface_destroy with the handle's cr_space_id.
 * Errors: as ospf_interface_destroy
 * Ownership: as ospf_interface_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API void ospf_interface_destroy_cr(kelp_handle *handle, ospf_interface *object);

/* Gives the bytes that a ospf_interface takes under this handle, its state bytes included when
 * the handle tracks state.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_life (src/types/structure_life.hpp) */
KELP_API size_t ospf_interface_sizeof(const kelp_handle *handle);

/* Orders two objects by their fields, the first difference deciding: below, at or above 0 as a
 * sorts before, with or after b. Null sorts first. Headers do not count.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API int32_t ospf_interface_compare(const ospf_interface *a, const ospf_interface *b);

/* Gives the hash of the object's fields, seeded with seed; a null object gives the seed.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API uint32_t ospf_interface_hash(const ospf_interface *object, uint32_t seed);

/* 1 when the variant that the handle's domain gives to ospf_interface holds the field of that
 * number, counted from 0 in declared order, else 0. The object is not looked at.
 * Errors: those of the domain's lookup, in the handle's cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API uint32_t ospf_interface_is_valid_cr(kelp_handle *handle, const ospf_interface *object,
                                             uint32_t field_number);

/* Gives the object itself.
 * Errors: none
 * Ownership: as the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API ospf_interface *ospf_interface_get(kelp_handle *handle, uint32_t space_id,
                                            const ospf_interface *object);

/* Reads the numbers, booleans, enumerations and array counts of the object, each into the
 * argument of its name. Arguments of fields that the object's variant lacks are left as they are,
 * without an error.
 * Errors: none
 * Ownership: the places that are written to are the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API void ospf_interface_get_all(kelp_handle *handle, uint32_t space_id,
                                     const ospf_interface *object, uint32_t *network_type,
                                     kelp_boolean *passive, kelp_boolean *demand_circuit,
                                     kelp_boolean *node_flag, uint16_t *cost,
                                     uint16_t *hello_interval, uint16_t *dead_interval,
                                     uint16_t *retransmit_interval, uint16_t *transmit_delay,
                                     kelp_boolean *mtu_ignore, kelp_boolean *lls,
                                     kelp_boolean *prefix_suppression, kelp_boolean *bfd,
                                     kelp_boolean *enable, uint32_t *hello_timer,
                                     uint32_t *wait_timer, uint8_t *priority, uint32_t *err);

/* Writes the numbers, booleans and enumerations of the object, each from the argument of its
 * name. Fields that the object's variant lacks are passed over, without an error. No state byte
 * changes.
 * Errors: KELP_ERR_EPOCH (43) for an enumeration's value that its variant does not hold; the
 *   arguments behind it are not written then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: structure_values (src/types/structure_values.hpp) */
KELP_API void ospf_interface_set_all(kelp_handle *handle, uint32_t space_id,
                                     ospf_interface *object, uint32_t network_type,
                                     kelp_boolean passive, kelp_boolean demand_circuit,
                                     kelp_boolean node_flag, uint16_t cost,
                                     uint16_t hello_interval, uint16_t dead_interval,
                                     uint16_t retransmit_interval, uint16_t transmit_delay,
                                     kelp_boolean mtu_ignore, kelp_boolean lls,
                                     kelp_boolean prefix_suppression, kelp_boolean bfd,
                                     kelp_boolean enable, uint32_t hello_timer,
                                     uint32_t wait_timer, uint8_t priority, uint32_t *err);

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
KELP_API void ospf_interface_set(kelp_handle *handle, uint32_t space_id,
                                 ospf_interface *destination, ospf_interface *source,
                                 uint32_t *err);

/* Ends a transfer after the bytes of source were copied to destination: source gives up its
 * arrays and arms, and its children are moved each by its own set.
 * Errors: those of the children's set
 * Ownership: what both held after the copy is destination's alone
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ospf_interface_post_copyout_cleanup(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *destination,
                                                  ospf_interface *source, uint32_t *err);

/* Tells the runtime where the state bytes of the embedded structures lie, at any depth, when the
 * object's own begin at sttr_base. Does nothing for a ospf_interface without embedded structures.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ospf_interface_offset_update(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, void *sttr_base);

/* Makes the runtime forget where the state bytes of the embedded structures lie, at any depth.
 * Does nothing for a ospf_interface without embedded structures.
 * Errors: those of kelp_hd_mapping_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: transfer (src/types/transfer.hpp) */
KELP_API void ospf_interface_offset_remove(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, uint32_t *err);

/* Gives the number of by-reference fields of ospf_interface, whatever the object's variant: the
 * slots that ospf_interface_get_object_references fills.
 * Errors: KELP_ERR_INVALID (22) for a null object; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (whole object) (src/types/reference_field.hpp) */
KELP_API uint32_t ospf_interface_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                               const ospf_interface *object, uint32_t *err);

/* Writes the table of each by-reference field of ospf_interface to references, in field order,
 * null for an empty one. references has room for as many as ospf_interface_get_oid_count gives;
 * size is not looked at.
 * Errors: KELP_ERR_INVALID (22) for a null object; what the runtime sets for an OID that names
 *   nothing, with this output and the later ones left alone
 * Ownership: the tables stay the database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (whole object) (src/types/reference_field.hpp) */
KELP_API void ospf_interface_get_object_references(kelp_handle *handle, uint32_t space_id,
                                                   const ospf_interface *object,
                                                   void **references, uint32_t size, uint32_t *err);

/* Sets every state byte of the object, those of embedded structures too, to the low 8 bits of
 * value, unannounced. Only for objects without array elements: the pointers to the state bytes of
 * elements are overwritten too. Does nothing unless handle and object track state.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (whole object) (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_set_all_state_tracking_flag(kelp_handle *handle, uint32_t space_id,
                                                         ospf_interface *object, uint32_t value);

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
KELP_API uint32_t ospf_interface_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                         const ospf_interface *object, int32_t length,
                                         uint32_t *err);

/* Writes the image of object as ospf_interface_marshal does, but at the object's own variant when
 * that is above the domain's. Objects embedded in it are lowered all the same.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1, also inside, where an embedded object
 *   begins at the end of the buffer; KELP_ERR_EPOCH (43) when the object's variant is above the
 *   domain's; KELP_ERR_NO_ROOM (90) when the buffer is too short; KELP_ERR_NOT_FOUND (2) when the
 *   selected arm of a choice is missing; KELP_ERR_INVALID (22) for a null object. The image is
 *   ended properly all the same
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ospf_interface_marshal_for_clone(kelp_handle *handle, uint32_t space_id,
                                                   void *buffer, const ospf_interface *object,
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
KELP_API uint32_t ospf_interface_unmarshal(kelp_handle *handle, uint32_t space_id,
                                           const void *buffer, ospf_interface *object,
                                           int32_t length, uint32_t reuse, uint32_t *err);

/* Gives the bytes to provide for the image of object, without an ra-data block. An image may be
 * shorter: an empty array leaves out its state byte. It is longer by a byte for each array
 * element when the handle tracks state and the object does not.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ospf_interface_len(kelp_handle *handle, uint32_t space_id,
                                     const ospf_interface *object);

/* Gives what ospf_interface_len gives under the handle's cr_space_id, 0 when its cr_err is set.
 * Errors: none; cr_err is only read
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: image (src/encodings/image.hpp) */
KELP_API uint32_t ospf_interface_len_cr(kelp_handle *handle, const ospf_interface *object);

/* Writes object as text at the start of buffer, at most size bytes and none for a negative size,
 * each line behind indent blanks, the first one with label; gives the bytes written. The closing
 * line of an object with an indent stands behind a gap of as many bytes, which keeps what buffer
 * held; an object of variant 0 has no closing line when ospf_interface has two variants.
 * Errors: none of its own; what a field's print sets stands, and nothing is written behind it. A
 *   text that does not fit is cut without a failure: a result equal to size says that some may be
 *   missing, and the call is repeated with more room
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: text (src/encodings/text.hpp) */
KELP_API uint32_t ospf_interface_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                       uint32_t indent, const char *label,
                                       const ospf_interface *object, uint32_t size, uint32_t *err);

/* Writes object as text with the type's name as label and no indent, under the handle's
 * cr_space_id; gives the bytes written, or 0xFFFFFFFF when cr_err is set afterwards. Nothing is
 * written for a negative size.
 * Errors: as ospf_interface_print, in cr_err; a text is cut as there
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: text (src/encodings/text.hpp) */
KELP_API uint32_t ospf_interface_print_cr(kelp_handle *handle, const ospf_interface *object,
                                          char *buffer, int32_t size);

/* Writes object as the element tag into buffer, at most size bytes and none for a negative size,
 * and gives the bytes written. state_byte is that of the element; under a tracking handle each
 * field's element carries its own.
 * Errors: what the field writers set, such as KELP_ERR_NO_ROOM (90) when the buffer is too short;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not. What was written
 *   stays
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API uint32_t ospf_interface_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                        char *buffer, const ospf_interface *object, uint32_t size,
                                        uint32_t state_byte, uint32_t *err);

/* Writes object as an element with the type's name, under the handle's cr_space_id; gives the
 * bytes written, or 0xFFFFFFFF when cr_err is set afterwards.
 * Errors: as ospf_interface_to_xml, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: xml (src/encodings/xml.hpp) */
KELP_API uint32_t ospf_interface_toxml_cr(kelp_handle *handle, const ospf_interface *object,
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
KELP_API void ospf_interface_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                      kelp_xml_document *document, ospf_interface *object,
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
KELP_API void ospf_interface_clone_internal(kelp_handle *handle, uint32_t space_id,
                                            const ospf_interface *source,
                                            ospf_interface **destination, void *work,
                                            uint32_t work_size, uint32_t *err);

/* Makes a new object with the content of source in *destination, whatever that pointed at,
 * through the work_size bytes at work.
 * Errors: KELP_ERR_NOT_FOUND (2) for a null destination or work buffer, with nothing done;
 *   KELP_ERR_NO_MEMORY (12) when no object can be made; what writing or reading the image sets,
 *   KELP_ERR_NO_ROOM (90) for a work buffer that is too small
 * Ownership: *destination is the caller's; null after a failure
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void ospf_interface_clone(kelp_handle *handle, uint32_t space_id,
                                   const ospf_interface *source, ospf_interface **destination,
                                   void *work, uint32_t work_size, uint32_t *err);

/* Gives a new object with the content of source, made through the handle's work space.
 * Errors: those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY (12) without memory for the
 *   handle's work space
 * Ownership: the result is the caller's; null after a failure
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API ospf_interface *ospf_interface_clone_cr(kelp_handle *handle, const ospf_interface *source);

/* Overwrites destination with the content of source in place, through the handle's work space.
 * Element blocks that destination held are replaced and not released; arms stay, and the selected
 * ones take the content of source's.
 * Errors: those of clone_internal, in cr_err; KELP_ERR_NO_MEMORY (12) without memory for the
 *   handle's work space
 * Ownership: both stay the caller's; when reading the image fails destination is destroyed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: clone (src/encodings/clone.hpp) */
KELP_API void ospf_interface_copy_cr(kelp_handle *handle, const ospf_interface *source,
                                     ospf_interface *destination);

/* Gives name inside the object. The interface's name; key of the table.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API kelp_vstring *ospf_interface_name_get(kelp_handle *handle, uint32_t space_id,
                                               ospf_interface *object, uint32_t *err);

/* Moves the content of source into name. The interface's name; key of the table.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_name_set(kelp_handle *handle, uint32_t space_id,
                                      ospf_interface *object, kelp_vstring *source, uint32_t *err);

/* Gives the state byte of name: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_name_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object, uint32_t *err);

/* Sets the state byte of name to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_name_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                 ospf_interface *object, uint32_t value,
                                                 uint32_t *err);

/* Gives the place of network_type inside the object. How OSPF treats the network.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API ospf_network_type *ospf_interface_network_type_get(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            ospf_interface *object, uint32_t *err);

/* Gives the value of network_type, 0 for a null object. How OSPF treats the network.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t ospf_interface_network_type_get_value(kelp_handle *handle, uint32_t space_id,
                                                        const ospf_interface *object,
                                                        uint32_t *err);

/* Copies source into network_type. How OSPF treats the network.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_network_type_set(kelp_handle *handle, uint32_t space_id,
                                              ospf_interface *object,
                                              const ospf_network_type *source, uint32_t *err);

/* Sets network_type. How OSPF treats the network.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_network_type_set_value(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object, uint32_t value,
                                                    uint32_t *err);

/* Gives the state byte of network_type: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_network_type_state_flag_get(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            ospf_interface *object, uint32_t *err);

/* Sets the state byte of network_type to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_network_type_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                         ospf_interface *object, uint32_t value,
                                                         uint32_t *err);

/* Gives the place of passive inside the object. No protocol packets are sent or taken.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_passive_get(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, uint32_t *err);

/* Gives the value of passive, 0 for a null object. No protocol packets are sent or taken.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_passive_get_value(kelp_handle *handle, uint32_t space_id,
                                                       const ospf_interface *object, uint32_t *err);

/* Copies source into passive. No protocol packets are sent or taken.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_passive_set(kelp_handle *handle, uint32_t space_id,
                                         ospf_interface *object, const kelp_boolean *source,
                                         uint32_t *err);

/* Sets passive. No protocol packets are sent or taken.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_passive_set_value(kelp_handle *handle, uint32_t space_id,
                                               ospf_interface *object, kelp_boolean value,
                                               uint32_t *err);

/* Gives the state byte of passive: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_passive_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                       ospf_interface *object, uint32_t *err);

/* Sets the state byte of passive to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_passive_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object, uint32_t value,
                                                    uint32_t *err);

/* Gives the place of demand_circuit inside the object. The interface is treated as a demand
 * circuit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_demand_circuit_get(kelp_handle *handle, uint32_t space_id,
                                                         ospf_interface *object, uint32_t *err);

/* Gives the value of demand_circuit, 0 for a null object. The interface is treated as a demand
 * circuit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_demand_circuit_get_value(kelp_handle *handle,
    uint32_t space_id, const ospf_interface *object, uint32_t *err);

/* Copies source into demand_circuit. The interface is treated as a demand circuit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_demand_circuit_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object,
                                                const kelp_boolean *source, uint32_t *err);

/* Sets demand_circuit. The interface is treated as a demand circuit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_demand_circuit_set_value(kelp_handle *handle, uint32_t space_id,
                                                      ospf_interface *object, kelp_boolean value,
                                                      uint32_t *err);

/* Gives the state byte of demand_circuit: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_demand_circuit_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of demand_circuit to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_demand_circuit_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t value,
                                                           uint32_t *err);

/* Gives multi_area_val inside the object. Settings of a multi-area adjacency.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API multi_area *ospf_interface_multi_area_val_get(kelp_handle *handle, uint32_t space_id,
                                                       ospf_interface *object, uint32_t *err);

/* Moves the content of source into multi_area_val. Settings of a multi-area adjacency.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_multi_area_val_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, multi_area *source,
                                                uint32_t *err);

/* Gives the state byte of multi_area_val: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_multi_area_val_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of multi_area_val to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_multi_area_val_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the table that static_neighbor refers to, null for an empty reference. Configured
 * neighbours.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospf_static_neighbor_table *ospf_interface_static_neighbor_get_by_ref(
    kelp_handle *handle, uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Gives the table that static_neighbor refers to, null for an empty reference. Configured
 * neighbours.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospf_static_neighbor_table *ospf_interface_static_neighbor_get_by_ref_cr(
    kelp_handle *handle, ospf_interface *object);

/* Makes static_neighbor refer to target; null empties it. Configured neighbours.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void ospf_interface_static_neighbor_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                        ospf_interface *object,
                                                        tbl_ospf_static_neighbor_table *target,
                                                        uint32_t *err);

/* Makes static_neighbor refer to target; null empties it. Configured neighbours.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t ospf_interface_static_neighbor_set_by_ref_cr(kelp_handle *handle,
    ospf_interface *object, tbl_ospf_static_neighbor_table *target);

/* Gives the state byte of static_neighbor: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_static_neighbor_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of static_neighbor to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_static_neighbor_state_flag_set(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            ospf_interface *object,
                                                            uint32_t value, uint32_t *err);

/* Gives the place of node_flag inside the object. The node flag of the interface's prefix.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_node_flag_get(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object, uint32_t *err);

/* Gives the value of node_flag, 0 for a null object. The node flag of the interface's prefix.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_node_flag_get_value(kelp_handle *handle, uint32_t space_id,
                                                         const ospf_interface *object,
                                                         uint32_t *err);

/* Copies source into node_flag. The node flag of the interface's prefix.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_node_flag_set(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, const kelp_boolean *source,
                                           uint32_t *err);

/* Sets node_flag. The node flag of the interface's prefix.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_node_flag_set_value(kelp_handle *handle, uint32_t space_id,
                                                 ospf_interface *object, kelp_boolean value,
                                                 uint32_t *err);

/* Gives the state byte of node_flag: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_node_flag_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                         ospf_interface *object, uint32_t *err);

/* Sets the state byte of node_flag to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_node_flag_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                      ospf_interface *object, uint32_t value,
                                                      uint32_t *err);

/* Gives fast_reroute_val inside the object. Settings of fast reroute.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API fast_reroute *ospf_interface_fast_reroute_val_get(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t *err);

/* Moves the content of source into fast_reroute_val. Settings of fast reroute.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_fast_reroute_val_set(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, fast_reroute *source,
                                                  uint32_t *err);

/* Gives the state byte of fast_reroute_val: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_fast_reroute_val_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of fast_reroute_val to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_fast_reroute_val_state_flag_set(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t value, uint32_t *err);

/* Gives the place of cost inside the object. Output cost.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t *ospf_interface_cost_get(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, uint32_t *err);

/* Gives the value of cost, 0 for a null object. Output cost.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t ospf_interface_cost_get_value(kelp_handle *handle, uint32_t space_id,
                                                const ospf_interface *object, uint32_t *err);

/* Copies source into cost. Output cost.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_cost_set(kelp_handle *handle, uint32_t space_id,
                                      ospf_interface *object, const uint16_t *source,
                                      uint32_t *err);

/* Sets cost. Output cost.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_cost_set_value(kelp_handle *handle, uint32_t space_id,
                                            ospf_interface *object, uint16_t value, uint32_t *err);

/* Gives the state byte of cost: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_cost_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object, uint32_t *err);

/* Sets the state byte of cost to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_cost_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                 ospf_interface *object, uint32_t value,
                                                 uint32_t *err);

/* Gives the place of hello_interval inside the object. Time between hellos; the producer chooses
 * the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t *ospf_interface_hello_interval_get(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint32_t *err);

/* Gives the value of hello_interval, 0 for a null object. Time between hellos; the producer
 * chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t ospf_interface_hello_interval_get_value(kelp_handle *handle, uint32_t space_id,
                                                          const ospf_interface *object,
                                                          uint32_t *err);

/* Copies source into hello_interval. Time between hellos; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_hello_interval_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, const uint16_t *source,
                                                uint32_t *err);

/* Sets hello_interval. Time between hellos; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_hello_interval_set_value(kelp_handle *handle, uint32_t space_id,
                                                      ospf_interface *object, uint16_t value,
                                                      uint32_t *err);

/* Gives the state byte of hello_interval: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_hello_interval_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of hello_interval to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_hello_interval_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the place of dead_interval inside the object. Silence after which a neighbour is down;
 * the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t *ospf_interface_dead_interval_get(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object, uint32_t *err);

/* Gives the value of dead_interval, 0 for a null object. Silence after which a neighbour is down;
 * the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t ospf_interface_dead_interval_get_value(kelp_handle *handle, uint32_t space_id,
                                                         const ospf_interface *object,
                                                         uint32_t *err);

/* Copies source into dead_interval. Silence after which a neighbour is down; the producer chooses
 * the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_dead_interval_set(kelp_handle *handle, uint32_t space_id,
                                               ospf_interface *object, const uint16_t *source,
                                               uint32_t *err);

/* Sets dead_interval. Silence after which a neighbour is down; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_dead_interval_set_value(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint16_t value,
                                                     uint32_t *err);

/* Gives the state byte of dead_interval: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_dead_interval_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of dead_interval to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_dead_interval_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                          ospf_interface *object, uint32_t value,
                                                          uint32_t *err);

/* Gives the place of retransmit_interval inside the object. Time between retransmissions; the
 * producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t *ospf_interface_retransmit_interval_get(kelp_handle *handle, uint32_t space_id,
                                                          ospf_interface *object, uint32_t *err);

/* Gives the value of retransmit_interval, 0 for a null object. Time between retransmissions; the
 * producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t ospf_interface_retransmit_interval_get_value(kelp_handle *handle,
    uint32_t space_id, const ospf_interface *object, uint32_t *err);

/* Copies source into retransmit_interval. Time between retransmissions; the producer chooses the
 * unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_retransmit_interval_set(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object,
                                                     const uint16_t *source, uint32_t *err);

/* Sets retransmit_interval. Time between retransmissions; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_retransmit_interval_set_value(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint16_t value,
                                                           uint32_t *err);

/* Gives the state byte of retransmit_interval: 0 not written, 2 written by a setter, any other as
 * a caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_retransmit_interval_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of retransmit_interval to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_retransmit_interval_state_flag_set(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t value, uint32_t *err);

/* Gives the place of transmit_delay inside the object. Estimated time to send an update; the
 * producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t *ospf_interface_transmit_delay_get(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint32_t *err);

/* Gives the value of transmit_delay, 0 for a null object. Estimated time to send an update; the
 * producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint16_t ospf_interface_transmit_delay_get_value(kelp_handle *handle, uint32_t space_id,
                                                          const ospf_interface *object,
                                                          uint32_t *err);

/* Copies source into transmit_delay. Estimated time to send an update; the producer chooses the
 * unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_transmit_delay_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, const uint16_t *source,
                                                uint32_t *err);

/* Sets transmit_delay. Estimated time to send an update; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_transmit_delay_set_value(kelp_handle *handle, uint32_t space_id,
                                                      ospf_interface *object, uint16_t value,
                                                      uint32_t *err);

/* Gives the state byte of transmit_delay: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_transmit_delay_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of transmit_delay to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_transmit_delay_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the place of mtu_ignore inside the object. A neighbour's MTU is not compared.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_mtu_ignore_get(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint32_t *err);

/* Gives the value of mtu_ignore, 0 for a null object. A neighbour's MTU is not compared.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_mtu_ignore_get_value(kelp_handle *handle, uint32_t space_id,
                                                          const ospf_interface *object,
                                                          uint32_t *err);

/* Copies source into mtu_ignore. A neighbour's MTU is not compared.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_mtu_ignore_set(kelp_handle *handle, uint32_t space_id,
                                            ospf_interface *object, const kelp_boolean *source,
                                            uint32_t *err);

/* Sets mtu_ignore. A neighbour's MTU is not compared.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_mtu_ignore_set_value(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, kelp_boolean value,
                                                  uint32_t *err);

/* Gives the state byte of mtu_ignore: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_mtu_ignore_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                          ospf_interface *object, uint32_t *err);

/* Sets the state byte of mtu_ignore to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_mtu_ignore_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                       ospf_interface *object, uint32_t value,
                                                       uint32_t *err);

/* Gives the place of lls inside the object. Link-local signalling is on.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_lls_get(kelp_handle *handle, uint32_t space_id,
                                              ospf_interface *object, uint32_t *err);

/* Gives the value of lls, 0 for a null object. Link-local signalling is on.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_lls_get_value(kelp_handle *handle, uint32_t space_id,
                                                   const ospf_interface *object, uint32_t *err);

/* Copies source into lls. Link-local signalling is on.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_lls_set(kelp_handle *handle, uint32_t space_id,
                                     ospf_interface *object, const kelp_boolean *source,
                                     uint32_t *err);

/* Sets lls. Link-local signalling is on.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_lls_set_value(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, kelp_boolean value,
                                           uint32_t *err);

/* Gives the state byte of lls: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_lls_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                   ospf_interface *object, uint32_t *err);

/* Sets the state byte of lls to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_lls_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, uint32_t value,
                                                uint32_t *err);

/* Gives the place of prefix_suppression inside the object. The interface's prefixes are not
 * advertised.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_prefix_suppression_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Gives the value of prefix_suppression, 0 for a null object. The interface's prefixes are not
 * advertised.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_prefix_suppression_get_value(kelp_handle *handle,
    uint32_t space_id, const ospf_interface *object, uint32_t *err);

/* Copies source into prefix_suppression. The interface's prefixes are not advertised.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_prefix_suppression_set(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object,
                                                    const kelp_boolean *source, uint32_t *err);

/* Sets prefix_suppression. The interface's prefixes are not advertised.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_prefix_suppression_set_value(kelp_handle *handle, uint32_t space_id,
                                                          ospf_interface *object,
                                                          kelp_boolean value, uint32_t *err);

/* Gives the state byte of prefix_suppression: 0 not written, 2 written by a setter, any other as
 * a caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_prefix_suppression_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of prefix_suppression to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_prefix_suppression_state_flag_set(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t value, uint32_t *err);

/* Gives the place of bfd inside the object. Forwarding failures are detected by BFD.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_bfd_get(kelp_handle *handle, uint32_t space_id,
                                              ospf_interface *object, uint32_t *err);

/* Gives the value of bfd, 0 for a null object. Forwarding failures are detected by BFD.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_bfd_get_value(kelp_handle *handle, uint32_t space_id,
                                                   const ospf_interface *object, uint32_t *err);

/* Copies source into bfd. Forwarding failures are detected by BFD.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_bfd_set(kelp_handle *handle, uint32_t space_id,
                                     ospf_interface *object, const kelp_boolean *source,
                                     uint32_t *err);

/* Sets bfd. Forwarding failures are detected by BFD.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_bfd_set_value(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, kelp_boolean value,
                                           uint32_t *err);

/* Gives the state byte of bfd: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_bfd_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                   ospf_interface *object, uint32_t *err);

/* Sets the state byte of bfd to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_bfd_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, uint32_t value,
                                                uint32_t *err);

/* Gives ttl_security_val inside the object. Settings of the TTL check.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ttl_security *ospf_interface_ttl_security_val_get(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t *err);

/* Moves the content of source into ttl_security_val. Settings of the TTL check.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_ttl_security_val_set(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, ttl_security *source,
                                                  uint32_t *err);

/* Gives the state byte of ttl_security_val: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_ttl_security_val_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of ttl_security_val to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_ttl_security_val_state_flag_set(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t value, uint32_t *err);

/* Gives the place of enable inside the object. OSPF runs on the interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean *ospf_interface_enable_get(kelp_handle *handle, uint32_t space_id,
                                                 ospf_interface *object, uint32_t *err);

/* Gives the value of enable, 0 for a null object. OSPF runs on the interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API kelp_boolean ospf_interface_enable_get_value(kelp_handle *handle, uint32_t space_id,
                                                      const ospf_interface *object, uint32_t *err);

/* Copies source into enable. OSPF runs on the interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_enable_set(kelp_handle *handle, uint32_t space_id,
                                        ospf_interface *object, const kelp_boolean *source,
                                        uint32_t *err);

/* Sets enable. OSPF runs on the interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_enable_set_value(kelp_handle *handle, uint32_t space_id,
                                              ospf_interface *object, kelp_boolean value,
                                              uint32_t *err);

/* Gives the state byte of enable: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_enable_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                      ospf_interface *object, uint32_t *err);

/* Sets the state byte of enable to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_enable_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                   ospf_interface *object, uint32_t value,
                                                   uint32_t *err);

/* Gives authentication_val inside the object. How packets are authenticated.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ospf_authentication *ospf_interface_authentication_val_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Moves the content of source into authentication_val. How packets are authenticated.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_authentication_val_set(kelp_handle *handle, uint32_t space_id,
                                                    ospf_interface *object,
                                                    ospf_authentication *source, uint32_t *err);

/* Gives the state byte of authentication_val: 0 not written, 2 written by a setter, any other as
 * a caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_authentication_val_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of authentication_val to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_authentication_val_state_flag_set(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t value, uint32_t *err);

/* Gives state inside the object. The interface state as free text.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API kelp_vstring *ospf_interface_state_get(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, uint32_t *err);

/* Moves the content of source into state. The interface state as free text.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_state_set(kelp_handle *handle, uint32_t space_id,
                                       ospf_interface *object, kelp_vstring *source, uint32_t *err);

/* Gives the state byte of state: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_state_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint32_t *err);

/* Sets the state byte of state to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_state_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, uint32_t value,
                                                  uint32_t *err);

/* Gives the place of hello_timer inside the object. The hello timer when reported; the producer
 * chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t *ospf_interface_hello_timer_get(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, uint32_t *err);

/* Gives the value of hello_timer, 0 for a null object. The hello timer when reported; the
 * producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t ospf_interface_hello_timer_get_value(kelp_handle *handle, uint32_t space_id,
                                                       const ospf_interface *object, uint32_t *err);

/* Copies source into hello_timer. The hello timer when reported; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_hello_timer_set(kelp_handle *handle, uint32_t space_id,
                                             ospf_interface *object, const uint32_t *source,
                                             uint32_t *err);

/* Sets hello_timer. The hello timer when reported; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_hello_timer_set_value(kelp_handle *handle, uint32_t space_id,
                                                   ospf_interface *object, uint32_t value,
                                                   uint32_t *err);

/* Gives the state byte of hello_timer: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_hello_timer_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t *err);

/* Sets the state byte of hello_timer to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_hello_timer_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                        ospf_interface *object, uint32_t value,
                                                        uint32_t *err);

/* Gives the place of wait_timer inside the object. The wait timer when reported; the producer
 * chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t *ospf_interface_wait_timer_get(kelp_handle *handle, uint32_t space_id,
                                                 ospf_interface *object, uint32_t *err);

/* Gives the value of wait_timer, 0 for a null object. The wait timer when reported; the producer
 * chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint32_t ospf_interface_wait_timer_get_value(kelp_handle *handle, uint32_t space_id,
                                                      const ospf_interface *object, uint32_t *err);

/* Copies source into wait_timer. The wait timer when reported; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_wait_timer_set(kelp_handle *handle, uint32_t space_id,
                                            ospf_interface *object, const uint32_t *source,
                                            uint32_t *err);

/* Sets wait_timer. The wait timer when reported; the producer chooses the unit.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_wait_timer_set_value(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, uint32_t value,
                                                  uint32_t *err);

/* Gives the state byte of wait_timer: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_wait_timer_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                          ospf_interface *object, uint32_t *err);

/* Sets the state byte of wait_timer to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_wait_timer_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                       ospf_interface *object, uint32_t value,
                                                       uint32_t *err);

/* Gives dr inside the object. Address of the designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ip_address *ospf_interface_dr_get(kelp_handle *handle, uint32_t space_id,
                                           ospf_interface *object, uint32_t *err);

/* Moves the content of source into dr. Address of the designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_dr_set(kelp_handle *handle, uint32_t space_id,
                                    ospf_interface *object, ip_address *source, uint32_t *err);

/* Gives the state byte of dr: 0 not written, 2 written by a setter, any other as a caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_dr_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                  ospf_interface *object, uint32_t *err);

/* Sets the state byte of dr to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_dr_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                               ospf_interface *object, uint32_t value,
                                               uint32_t *err);

/* Gives bdr inside the object. Address of the backup designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the result belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API ip_address *ospf_interface_bdr_get(kelp_handle *handle, uint32_t space_id,
                                            ospf_interface *object, uint32_t *err);

/* Moves the content of source into bdr. Address of the backup designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the handle tracks state and the object does not, with the content moved, or a
 *   structure as the source does not, with its bytes copied and both holding the same texts,
 *   arrays and arms
 * Ownership: source stays the caller's, but gives up the texts, arrays and arms that it owned;
 *   what the field owned before is forgotten and not freed
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: object_field (src/types/object_field.hpp) */
KELP_API void ospf_interface_bdr_set(kelp_handle *handle, uint32_t space_id,
                                     ospf_interface *object, ip_address *source, uint32_t *err);

/* Gives the state byte of bdr: 0 not written, 2 written by a setter, any other as a caller set
 * it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_bdr_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                   ospf_interface *object, uint32_t *err);

/* Sets the state byte of bdr to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_bdr_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, uint32_t value,
                                                uint32_t *err);

/* Gives the table that neighbor refers to, null for an empty reference. Neighbours heard on the
 * interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospf_neighbor_table *ospf_interface_neighbor_get_by_ref(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Gives the table that neighbor refers to, null for an empty reference. Neighbours heard on the
 * interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_ospf_neighbor_table *ospf_interface_neighbor_get_by_ref_cr(kelp_handle *handle,
    ospf_interface *object);

/* Makes neighbor refer to target; null empties it. Neighbours heard on the interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void ospf_interface_neighbor_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                 ospf_interface *object,
                                                 tbl_ospf_neighbor_table *target, uint32_t *err);

/* Makes neighbor refer to target; null empties it. Neighbours heard on the interface.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t ospf_interface_neighbor_set_by_ref_cr(kelp_handle *handle,
                                                        ospf_interface *object,
                                                        tbl_ospf_neighbor_table *target);

/* Gives the state byte of neighbor: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_neighbor_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                        ospf_interface *object, uint32_t *err);

/* Sets the state byte of neighbor to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_neighbor_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint32_t value,
                                                     uint32_t *err);

/* Gives the table that link_scope_lsas refers to, null for an empty reference. Link-state
 * databases of the interface, one row for each LS type.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_link_scope_lsas_table *ospf_interface_link_scope_lsas_get_by_ref(
    kelp_handle *handle, uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Gives the table that link_scope_lsas refers to, null for an empty reference. Link-state
 * databases of the interface, one row for each LS type.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_link_scope_lsas_table *ospf_interface_link_scope_lsas_get_by_ref_cr(
    kelp_handle *handle, ospf_interface *object);

/* Makes link_scope_lsas refer to target; null empties it. Link-state databases of the interface,
 * one row for each LS type.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void ospf_interface_link_scope_lsas_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                        ospf_interface *object,
                                                        tbl_link_scope_lsas_table *target,
                                                        uint32_t *err);

/* Makes link_scope_lsas refer to target; null empties it. Link-state databases of the interface,
 * one row for each LS type.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t ospf_interface_link_scope_lsas_set_by_ref_cr(kelp_handle *handle,
    ospf_interface *object, tbl_link_scope_lsas_table *target);

/* Gives the state byte of link_scope_lsas: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_link_scope_lsas_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of link_scope_lsas to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_link_scope_lsas_state_flag_set(kelp_handle *handle,
                                                            uint32_t space_id,
                                                            ospf_interface *object,
                                                            uint32_t value, uint32_t *err);

/* Gives the table that multi_topology refers to, null for an empty reference. The interface's
 * topology names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_multi_topology_table *ospf_interface_multi_topology_get_by_ref(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Gives the table that multi_topology refers to, null for an empty reference. The interface's
 * topology names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) when the field was made for tables of another type; what the runtime sets for an OID
 *   that names nothing; null then
 * Ownership: the table stays the database's; the reference is the object's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API tbl_multi_topology_table *ospf_interface_multi_topology_get_by_ref_cr(
    kelp_handle *handle, ospf_interface *object);

/* Makes multi_topology refer to target; null empties it. The interface's topology names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API void ospf_interface_multi_topology_set_by_ref(kelp_handle *handle, uint32_t space_id,
                                                       ospf_interface *object,
                                                       tbl_multi_topology_table *target,
                                                       uint32_t *err);

/* Makes multi_topology refer to target; null empties it. The interface's topology names.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; KELP_ERR_INVALID
 *   (22) for a target of another type than the field's, with the old reference kept;
 *   KELP_ERR_PERMISSION (1) for a target that lives inside another object; KELP_ERR_INVALID (22)
 *   when the handle tracks state and the object does not, with the reference taken; what the
 *   runtime sets
 * Ownership: the object takes a counted reference and gives up the earlier one; target stays the
 *   database's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: reference_field (src/types/reference_field.hpp) */
KELP_API uint32_t ospf_interface_multi_topology_set_by_ref_cr(kelp_handle *handle,
    ospf_interface *object, tbl_multi_topology_table *target);

/* Gives the state byte of multi_topology: 0 not written, 2 written by a setter, any other as a
 * caller set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_multi_topology_state_flag_get(kelp_handle *handle,
    uint32_t space_id, ospf_interface *object, uint32_t *err);

/* Sets the state byte of multi_topology to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_multi_topology_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                           ospf_interface *object, uint32_t value,
                                                           uint32_t *err);

/* Gives the place of priority inside the object. The router priority; 0 never becomes designated
 * router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; null then
 * Ownership: the place belongs to the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint8_t *ospf_interface_priority_get(kelp_handle *handle, uint32_t space_id,
                                              ospf_interface *object, uint32_t *err);

/* Gives the value of priority, 0 for a null object. The router priority; 0 never becomes
 * designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API uint8_t ospf_interface_priority_get_value(kelp_handle *handle, uint32_t space_id,
                                                   const ospf_interface *object, uint32_t *err);

/* Copies source into priority. The router priority; 0 never becomes designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_INVALID (22) when the handle tracks state and the object does not, with the value
 *   stored
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_priority_set(kelp_handle *handle, uint32_t space_id,
                                          ospf_interface *object, const uint8_t *source,
                                          uint32_t *err);

/* Sets priority. The router priority; 0 never becomes designated router.
 * Errors: KELP_ERR_EPOCH (43) when the object's variant does not hold the field or the value;
 *   KELP_ERR_NOT_FOUND (2) for a null object; KELP_ERR_INVALID (22) when the handle tracks state
 *   and the object does not, with the value stored
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: value_field (src/types/value_field.hpp) */
KELP_API void ospf_interface_priority_set_value(kelp_handle *handle, uint32_t space_id,
                                                ospf_interface *object, uint8_t value,
                                                uint32_t *err);

/* Gives the state byte of priority: 0 not written, 2 written by a setter, any other as a caller
 * set it.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API uint8_t ospf_interface_priority_state_flag_get(kelp_handle *handle, uint32_t space_id,
                                                        ospf_interface *object, uint32_t *err);

/* Sets the state byte of priority to the low 8 bits of value.
 * Errors: KELP_ERR_INVALID (22) when the handle has tracking switched off or the object has no
 *   state bytes; KELP_ERR_EPOCH (43) when the object's variant does not hold the field
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: state_tracking (src/types/state_tracking.hpp) */
KELP_API void ospf_interface_priority_state_flag_set(kelp_handle *handle, uint32_t space_id,
                                                     ospf_interface *object, uint32_t value,
                                                     uint32_t *err);

KELP_EXTERN_C_END

#endif
