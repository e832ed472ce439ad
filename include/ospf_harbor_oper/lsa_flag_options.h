/* lsa_flag_options: The OSPFv2 option bits.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_LSA_FLAG_OPTIONS_H
#define OSPF_HARBOR_OPER_LSA_FLAG_OPTIONS_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* Gives the variant number limited to the highest variant of lsa_flag_options. Negative numbers
 * pass as they are.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API int32_t lsa_flag_options_variant_data_index_cap(int32_t variant);

/* Gives the 16-byte identity of the object's type, as kelp_get_luid does.
 * Errors: those of kelp_get_luid; null then
 * Ownership: the bytes belong to the type record and live as long
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API const uint8_t *lsa_flag_options_get_luid(kelp_handle *handle, uint32_t space_id,
                                                  const lsa_flag_options *object, uint32_t *err);

/* Brings the object to the variant that the handle's domain gives to its type, as far as
 * lsa_flag_options has it. A null object is passed over.
 * Errors: those of kelplib_adjust_variant
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_adjust_variant(kelp_handle *handle, uint32_t space_id,
                                              lsa_flag_options *object, uint32_t *err);

/* Creates an object of type lsa_flag_options at the variant that the handle's domain gives, with
 * a value of 0. Null when there is no memory. A domain that gives no variant is told in the
 * trace, and the object is created all the same.
 * Errors: none is reported
 * Ownership: the caller owns the result and gives it to lsa_flag_options_destroy
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API lsa_flag_options *lsa_flag_options_create(kelp_handle *handle, uint32_t space_id);

/* The work of lsa_flag_options_create, with the same result.
 * Errors: as lsa_flag_options_create
 * Ownership: as lsa_flag_options_create
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API lsa_flag_options *lsa_flag_options_create_internal(kelp_handle *handle, uint32_t space_id);

/* As lsa_flag_options_create, in the handle's cr_space_id. Gives the null object of
 * lsa_flag_options, which destroy ignores, when cr_err is set already or there is no memory.
 * Errors: KELP_ERR_NO_MEMORY (12) as the handle's last error and in cr_err when there is no
 *   memory and cr_err is 0
 * Ownership: as lsa_flag_options_create; the null object belongs to the library
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API lsa_flag_options *lsa_flag_options_create_cr(kelp_handle *handle);

/* Prepares the header of an object of type lsa_flag_options in memory of the caller's: the
 * variant that the handle's domain gives, the type record, and flags, OR-ed into obj_flags.
 * Stores are announced when notify is not 0. The object is not counted; skip_stats and sttr_base
 * are not looked at.
 * Errors: those of kelp_domain_lookup_variant; the header is stored all the same. The word is not
 *   read on entry
 * Ownership: the object stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_initialize(kelp_handle *handle, uint32_t space_id,
                                          lsa_flag_options *object, kelp_type_record *record,
                                          int32_t notify, int32_t skip_stats, uint8_t flags,
                                          void *sttr_base, uint32_t *err);

/* Marks the object as living inside other memory. A null object is told in the trace and
 * otherwise passed over; the null object of lsa_flag_options is passed over.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                     lsa_flag_options *object);

/* Counts and frees the object. Null and the null object are ignored. Ends the process when the
 * object's type record is missing or broken, as after an earlier destroy.
 * Errors: none
 * Ownership: takes the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_destroy(kelp_handle *handle, uint32_t space_id,
                                       lsa_flag_options *object);

/* As lsa_flag_options_destroy when free_it is not 0; nothing at all when it is 0.
 * Errors: none
 * Ownership: takes the object when free_it is not 0
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                                lsa_flag_options *object, int32_t free_it);

/* As lsa_flag_options_destroy, in the handle's cr_space_id, whatever cr_err holds.
 * Errors: none
 * Ownership: takes the object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_destroy_cr(kelp_handle *handle, lsa_flag_options *object);

/* Gives the bytes that an object of type lsa_flag_options is allocated with.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API size_t lsa_flag_options_sizeof(void);

/* Gives the number of by-reference fields of lsa_flag_options, whatever the object's variant: the
 * slots that lsa_flag_options_get_object_references fills.
 * Errors: KELP_ERR_INVALID (22) for a null object; 0 then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API uint32_t lsa_flag_options_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                                 const lsa_flag_options *object, uint32_t *err);

/* Stores nothing: an object of type lsa_flag_options refers to no table.
 * Errors: KELP_ERR_INVALID (22) for a null object
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: light_object (src/types/light_object.hpp) */
KELP_API void lsa_flag_options_get_object_references(kelp_handle *handle, uint32_t space_id,
                                                     const lsa_flag_options *object,
                                                     void **tables, uint32_t count, uint32_t *err);

/* Gives object.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API lsa_flag_options *lsa_flag_options_get(kelp_handle *handle, uint32_t space_id,
                                                lsa_flag_options *object);

/* Gives 1 when lsa_flag_options has a flag with this bit number, else 0.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API uint32_t lsa_flag_options_in_range(uint32_t bit);

/* Orders two objects by their byte, taken as unsigned; null stands below all. Only the sign of
 * the result means something.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API int32_t lsa_flag_options_compare(const lsa_flag_options *a, const lsa_flag_options *b);

/* Gives the hash of the byte, which is the next seed; a null object gives the seed.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API uint32_t lsa_flag_options_hash(const lsa_flag_options *object, uint32_t seed);

/* Gives the mask of the flag when it is set, 0 when it is clear. Test for non-zero only: the mask
 * of bit 7 is 0xFFFFFF80. The last error is not cleared.
 * Errors: KELP_ERR_EPOCH (43) for a null object or a bit that lsa_flag_options does not have; 0
 *   then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API uint32_t lsa_flag_options_get_value(kelp_handle *handle, uint32_t space_id,
                                             const lsa_flag_options *object, uint32_t bit,
                                             uint32_t *err);

/* As lsa_flag_options_get_value, with cr_err as the error word.
 * Errors: as lsa_flag_options_get_value, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API uint32_t lsa_flag_options_get_cr(kelp_handle *handle, const lsa_flag_options *object,
                                          uint32_t bit);

/* Copies source over destination, all 24 bytes: destination gets the variants, the flags and the
 * type record of source too. No variant is looked at. Neither may be null.
 * Errors: none
 * Ownership: source stays the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API void lsa_flag_options_set(kelp_handle *handle, uint32_t space_id,
                                   lsa_flag_options *destination, const lsa_flag_options *source,
                                   uint32_t *err);

/* Sets the flag when on is not 0, else clears it; the other flags keep their values. Passes
 * silently over a null object, and over a bit that lsa_flag_options does not have on an object of
 * a later variant.
 * Errors: KELP_ERR_EPOCH (43) for a bit that lsa_flag_options does not have on an object of
 *   variant 0; the object is unchanged then
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API void lsa_flag_options_set_value(kelp_handle *handle, uint32_t space_id,
                                         lsa_flag_options *object, uint32_t bit, uint32_t on,
                                         uint32_t *err);

/* As lsa_flag_options_set_value, in the handle's cr_space_id. Gives cr_err as it is afterwards.
 * Errors: as lsa_flag_options_set_value, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API uint32_t lsa_flag_options_set_cr(kelp_handle *handle, lsa_flag_options *object,
                                          uint32_t bit, uint32_t on);

/* Gives 0 when lsa_flag_options does not have the bit and the handle's domain is at variant 0,
 * else 1.
 * Errors: those of kelp_domain_lookup_variant, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set (src/types/flag_set.hpp) */
KELP_API uint32_t lsa_flag_options_is_valid_cr(kelp_handle *handle, uint32_t bit);

/* Gives the bytes of an image: 6. The object may be null.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_len(kelp_handle *handle, uint32_t space_id,
                                       const lsa_flag_options *object);

/* Gives the bytes of an image, or 0 when cr_err is set.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_len_cr(kelp_handle *handle, const lsa_flag_options *object);

/* Writes the object's image into buffer, which has length bytes, and gives the bytes written. The
 * jump word is written again whatever went before: buffer must really have 5 bytes, also where
 * length is less.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1; KELP_ERR_EPOCH (43) when the object's
 *   variant is above the domain's, with the jump word written and the flags left out;
 *   KELP_ERR_NO_ROOM (90) when there is no room for the flags; those of the runtime's writers
 * Ownership: buffer and object stay the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                           const lsa_flag_options *object, int32_t length,
                                           uint32_t *err);

/* Reads an image into object and gives the bytes read, those of a later variant included. The
 * byte of flags is read without a test of length, right behind the jump word, or where that
 * failed in its place: buffer must really have it. reuse is not looked at.
 * Errors: KELP_ERR_NO_MEMORY (12) for a length below 1; those of the runtime's readers
 * Ownership: buffer and object stay the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_unmarshal(kelp_handle *handle, uint32_t space_id,
                                             const void *buffer, lsa_flag_options *object,
                                             int32_t length, uint32_t reuse, uint32_t *err);

/* Writes "<label>@lsa_flag_options:", the name of each set flag with a blank behind it, and a
 * newline, behind indent blanks into buffer, at most size bytes, and gives the bytes written. A
 * null object gives "ERR " for each flag.
 * Errors: none of its own; a null object leaves KELP_ERR_EPOCH (43) as the last error
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                         uint32_t indent, const char *label,
                                         const lsa_flag_options *object, int32_t size,
                                         uint32_t *err);

/* As lsa_flag_options_print with indent 0 and the type's name as label. 0xFFFFFFFF when cr_err is
 * set afterwards.
 * Errors: as lsa_flag_options_print, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_print_cr(kelp_handle *handle, const lsa_flag_options *object,
                                            char *buffer, int32_t size);

/* Writes the element tag with one empty element for each set flag in it into buffer, at most size
 * bytes, and gives the bytes written. A null object gives <error>ERR</error> for each flag.
 * state_byte is not looked at.
 * Errors: those of start_tag, xml_enum_print and end_tag; a null object leaves KELP_ERR_EPOCH
 *   (43) as the last error
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                          char *buffer, const lsa_flag_options *object,
                                          int32_t size, uint32_t state_byte, uint32_t *err);

/* As lsa_flag_options_to_xml with the type's name as tag. 0xFFFFFFFF when cr_err is set
 * afterwards.
 * Errors: as lsa_flag_options_to_xml, in cr_err
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API uint32_t lsa_flag_options_toxml_cr(kelp_handle *handle, const lsa_flag_options *object,
                                            char *buffer, uint32_t size);

/* Sets each flag whose empty element stands in the element at path; flags that are not there stay
 * as they were. A null object is passed over.
 * Errors: those of xml_get_element_value but KELP_ERR_NOT_FOUND (2), with the flags found before
 *   set; message (message_size bytes, or null) then says the path
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: flag_set_encodings (src/encodings/flag_set_encodings.hpp) */
KELP_API void lsa_flag_options_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                        kelp_xml_document *document, lsa_flag_options *object,
                                        uint32_t *err, char *message, int32_t message_size);

KELP_EXTERN_C_END

#endif
