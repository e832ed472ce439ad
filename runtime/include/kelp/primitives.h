/* The seven primitive types that fields and keys are made of: u_int8, u_int16, u_int32, double,
 * kelp_boolean, ip_address and kelp_vstring, each with its family of operations. The generated code
 * of modules calls them for every field; users call them for values of their own.
 *
 * What holds for all of them. handle and space_id come first and the error word last. An operation
 * that finds a non-zero error word does nothing and returns 0 or null (kelp_vstring_set names its
 * one exception). A failure sets the word and is stored as the handle's last error, once. The last
 * error is not cleared: the caller's operation has done so. Every store into a value is announced
 * through the handle's write_notify first, with the exact range. No operation takes a lock. Images
 * are described in docs/wire-format.md, the limits of buffers for text and XML in kelp/text.h and
 * kelp/xml.h. */
#ifndef KELP_PRIMITIVES_H
#define KELP_PRIMITIVES_H

#include <kelp/handle.h>
#include <kelp/primitive_layout.h>

KELP_EXTERN_C_BEGIN

/* u_int8: an unsigned 8-bit number. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API uint8_t *u_int8_get(kelp_handle *handle, uint32_t space_id, const uint8_t *address,
                             uint32_t *err);

/* Returns the value at address. Errors: 22 for a null address, with 0 as the result. Lock: the
 * object's, for reading. */
KELP_API uint8_t u_int8_get_value(kelp_handle *handle, uint32_t space_id, const uint8_t *address,
                                  uint32_t *err);

/* Stores the value at source into address; announces the 1 byte first. Errors: 22 for a null
 * argument. Lock: the object's, for writing. */
KELP_API void u_int8_set(kelp_handle *handle, uint32_t space_id, uint8_t *address,
                         const uint8_t *source, uint32_t *err);

/* As u_int8_set, with the value itself. Errors: 22 for a null address. */
KELP_API void u_int8_set_value(kelp_handle *handle, uint32_t space_id, uint8_t *address,
                               uint8_t value, uint32_t *err);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed. The
 * byte counts as it lies in memory. */
KELP_API uint32_t u_int8_hash(const uint8_t *address, uint32_t seed);

/* Returns the bytes that u_int8_marshal writes for address, which may be null: 1. */
KELP_API uint32_t u_int8_len(kelp_handle *handle, uint32_t space_id, const uint8_t *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t u_int8_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                 const uint8_t *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. reuse is not looked at. Errors: 22 for a null address, 90 when the image is longer
 * than length; address is unchanged then. */
KELP_API uint32_t u_int8_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                   uint8_t *address, int32_t length, uint32_t reuse, uint32_t *err);

/* Writes the line "<label>@u_int8:<value>" behind indent blanks into buffer, at most size bytes,
 * and returns the bytes written. The value is decimal. A null address shows no value. */
KELP_API uint32_t u_int8_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                               uint32_t indent, const char *label, const uint8_t *address,
                               uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t u_int8_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                char *buffer, const uint8_t *address, uint32_t size,
                                uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is a
 * decimal number from 0 to 255. Errors: 2 when the element is not there, 22 for a text or path of
 * another form; address is unchanged then, and for all but 2 the message (message_size bytes, or
 * null) says the path, what was found where, and what was expected. */
KELP_API void u_int8_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                              kelp_xml_document *document, uint8_t *address, uint32_t *err,
                              char *message, int32_t message_size);

/* Returns a new zeroed u_int8 of its own, or null when obj_alloc gives none. The caller owns it. */
KELP_API uint8_t *u_int8_create(kelp_handle *handle, uint32_t space_id);

/* Gives back what u_int8_create returned; null is ignored. */
KELP_API void u_int8_destroy(kelp_handle *handle, uint32_t space_id, uint8_t *address);

/* Returns the bytes that one u_int8 takes in memory: 1. */
KELP_API size_t u_int8_sizeof(void);

/* u_int16: an unsigned 16-bit number. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API uint16_t *u_int16_get(kelp_handle *handle, uint32_t space_id, const uint16_t *address,
                               uint32_t *err);

/* Returns the value at address. Errors: 22 for a null address, with 0 as the result. Lock: the
 * object's, for reading. */
KELP_API uint16_t u_int16_get_value(kelp_handle *handle, uint32_t space_id, const uint16_t *address,
                                    uint32_t *err);

/* Stores the value at source into address; announces the 2 bytes first. Errors: 22 for a null
 * argument. Lock: the object's, for writing. */
KELP_API void u_int16_set(kelp_handle *handle, uint32_t space_id, uint16_t *address,
                          const uint16_t *source, uint32_t *err);

/* As u_int16_set, with the value itself. Errors: 22 for a null address. */
KELP_API void u_int16_set_value(kelp_handle *handle, uint32_t space_id, uint16_t *address,
                                uint16_t value, uint32_t *err);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed. The
 * 2 bytes count as they lie in memory. */
KELP_API uint32_t u_int16_hash(const uint16_t *address, uint32_t seed);

/* Returns the bytes that u_int16_marshal writes for address, which may be null: 2. */
KELP_API uint32_t u_int16_len(kelp_handle *handle, uint32_t space_id, const uint16_t *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t u_int16_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                  const uint16_t *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. reuse is not looked at. Errors: 22 for a null address, 90 when the image is longer
 * than length; address is unchanged then. */
KELP_API uint32_t u_int16_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                    uint16_t *address, int32_t length, uint32_t reuse,
                                    uint32_t *err);

/* Writes the line "<label>@u_int16:<value>" behind indent blanks into buffer, at most size bytes,
 * and returns the bytes written. The value is decimal. A null address shows no value. */
KELP_API uint32_t u_int16_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                uint32_t indent, const char *label, const uint16_t *address,
                                uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t u_int16_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                 char *buffer, const uint16_t *address, uint32_t size,
                                 uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is a
 * decimal number from 0 to 65535. Errors: 2 when the element is not there, 22 for a text or path of
 * another form; address is unchanged then, and for all but 2 the message (message_size bytes, or
 * null) says the path, what was found where, and what was expected. */
KELP_API void u_int16_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                               kelp_xml_document *document, uint16_t *address, uint32_t *err,
                               char *message, int32_t message_size);

/* u_int32: an unsigned 32-bit number. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API uint32_t *u_int32_get(kelp_handle *handle, uint32_t space_id, const uint32_t *address,
                               uint32_t *err);

/* Returns the value at address. Errors: 22 for a null address, with 0 as the result. Lock: the
 * object's, for reading. */
KELP_API uint32_t u_int32_get_value(kelp_handle *handle, uint32_t space_id, const uint32_t *address,
                                    uint32_t *err);

/* Stores the value at source into address; announces the 4 bytes first. Errors: 22 for a null
 * argument. Lock: the object's, for writing. */
KELP_API void u_int32_set(kelp_handle *handle, uint32_t space_id, uint32_t *address,
                          const uint32_t *source, uint32_t *err);

/* As u_int32_set, with the value itself. Errors: 22 for a null address. */
KELP_API void u_int32_set_value(kelp_handle *handle, uint32_t space_id, uint32_t *address,
                                uint32_t value, uint32_t *err);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed. The
 * 4 bytes count as they lie in memory. */
KELP_API uint32_t u_int32_hash(const uint32_t *address, uint32_t seed);

/* Returns the bytes that u_int32_marshal writes for address, which may be null: 4. */
KELP_API uint32_t u_int32_len(kelp_handle *handle, uint32_t space_id, const uint32_t *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t u_int32_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                  const uint32_t *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. reuse is not looked at. Errors: 22 for a null address, 90 when the image is longer
 * than length; address is unchanged then. */
KELP_API uint32_t u_int32_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                    uint32_t *address, int32_t length, uint32_t reuse,
                                    uint32_t *err);

/* Writes the line "<label>@u_int32:<value>" behind indent blanks into buffer, at most size bytes,
 * and returns the bytes written. The value is decimal. A null address shows no value. */
KELP_API uint32_t u_int32_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                uint32_t indent, const char *label, const uint32_t *address,
                                uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t u_int32_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                 char *buffer, const uint32_t *address, uint32_t size,
                                 uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is a
 * decimal number from 0 to 4294967295. Errors: 2 when the element is not there, 22 for a text or
 * path of another form; address is unchanged then, and for all but 2 the message (message_size
 * bytes, or null) says the path, what was found where, and what was expected. */
KELP_API void u_int32_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                               kelp_xml_document *document, uint32_t *address, uint32_t *err,
                               char *message, int32_t message_size);

/* Returns a new zeroed u_int32 of its own, or null when obj_alloc gives none. The caller owns
 * it. */
KELP_API uint32_t *u_int32_create(kelp_handle *handle, uint32_t space_id);

/* Gives back what u_int32_create returned; null is ignored. */
KELP_API void u_int32_destroy(kelp_handle *handle, uint32_t space_id, uint32_t *address);

/* As u_int32_destroy when free_it is non-zero; does nothing when it is 0. */
KELP_API void u_int32_destroy_internal(kelp_handle *handle, uint32_t space_id, uint32_t *address,
                                       int32_t free_it);

/* Returns the bytes that one u_int32 takes in memory: 4. */
KELP_API size_t u_int32_sizeof(void);

/* double: an IEEE 754 double. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API double *double_get(kelp_handle *handle, uint32_t space_id, const double *address,
                            uint32_t *err);

/* Returns the value at address. Errors: 22 for a null address, with 0 as the result. Lock: the
 * object's, for reading. */
KELP_API double double_get_value(kelp_handle *handle, uint32_t space_id, const double *address,
                                 uint32_t *err);

/* Stores the value at source into address; announces the 8 bytes first. Errors: 22 for a null
 * argument. Lock: the object's, for writing. */
KELP_API void double_set(kelp_handle *handle, uint32_t space_id, double *address,
                         const double *source, uint32_t *err);

/* As double_set, with the value itself. Errors: 22 for a null address. */
KELP_API void double_set_value(kelp_handle *handle, uint32_t space_id, double *address,
                               double value, uint32_t *err);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed. 0.0
 * and -0.0, which compare equal, hash alike. */
KELP_API uint32_t double_hash(const double *address, uint32_t seed);

/* Returns the bytes that double_marshal writes for address, which may be null: 8. */
KELP_API uint32_t double_len(kelp_handle *handle, uint32_t space_id, const double *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t double_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                 const double *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. reuse is not looked at. Errors: 22 for a null address, 90 when the image is longer
 * than length; address is unchanged then. */
KELP_API uint32_t double_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                   double *address, int32_t length, uint32_t reuse, uint32_t *err);

/* Writes the line "<label>@double:<value>" behind indent blanks into buffer, at most size bytes,
 * and returns the bytes written. The value is the shortest text that reads back to the same number.
 * A null address shows no value. */
KELP_API uint32_t double_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                               uint32_t indent, const char *label, const double *address,
                               uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t double_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                char *buffer, const double *address, uint32_t size,
                                uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is a
 * decimal number, "inf" or "nan". Errors: 2 when the element is not there, 22 for a text or path of
 * another form; address is unchanged then, and for all but 2 the message (message_size bytes, or
 * null) says the path, what was found where, and what was expected. */
KELP_API void double_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                              kelp_xml_document *document, double *address, uint32_t *err,
                              char *message, int32_t message_size);

/* kelp_boolean: a boolean. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API kelp_boolean *kelp_boolean_get(kelp_handle *handle, uint32_t space_id,
                                        const kelp_boolean *address, uint32_t *err);

/* Returns the value at address. Errors: 22 for a null address, with 0 as the result. Lock: the
 * object's, for reading. */
KELP_API kelp_boolean kelp_boolean_get_value(kelp_handle *handle, uint32_t space_id,
                                             const kelp_boolean *address, uint32_t *err);

/* Stores the value at source into address; announces the 4 bytes first. Any value but 0 is stored
 * as 1. Errors: 22 for a null argument. Lock: the object's, for writing. */
KELP_API void kelp_boolean_set(kelp_handle *handle, uint32_t space_id, kelp_boolean *address,
                               const kelp_boolean *source, uint32_t *err);

/* As kelp_boolean_set, with the value itself. Errors: 22 for a null address. */
KELP_API void kelp_boolean_set_value(kelp_handle *handle, uint32_t space_id, kelp_boolean *address,
                                     kelp_boolean value, uint32_t *err);

/* Returns -1, 0 or 1 as a is below, equal to or above b: null before false before true. */
KELP_API int32_t kelp_boolean_compare(const kelp_boolean *a, const kelp_boolean *b);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed. All
 * true values hash alike. */
KELP_API uint32_t kelp_boolean_hash(const kelp_boolean *address, uint32_t seed);

/* Returns the bytes that kelp_boolean_marshal writes for address, which may be null: 1. */
KELP_API uint32_t kelp_boolean_len(kelp_handle *handle, uint32_t space_id,
                                   const kelp_boolean *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t kelp_boolean_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                       const kelp_boolean *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. reuse is not looked at. Errors: 22 for a null address, for a byte other than 0 and 1,
 * 90 when the image is longer than length; address is unchanged then. */
KELP_API uint32_t kelp_boolean_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                         kelp_boolean *address, int32_t length, uint32_t reuse,
                                         uint32_t *err);

/* Writes the line "<label>@kelp_boolean:<value>" behind indent blanks into buffer, at most size
 * bytes, and returns the bytes written. The value is true or false. A null address shows no
 * value. */
KELP_API uint32_t kelp_boolean_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                     uint32_t indent, const char *label,
                                     const kelp_boolean *address, uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t kelp_boolean_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                      char *buffer, const kelp_boolean *address, uint32_t size,
                                      uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is
 * "true", "false", "1" or "0". Errors: 2 when the element is not there, 22 for a text or path of
 * another form; address is unchanged then, and for all but 2 the message (message_size bytes, or
 * null) says the path, what was found where, and what was expected. */
KELP_API void kelp_boolean_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                    kelp_xml_document *document, kelp_boolean *address,
                                    uint32_t *err, char *message, int32_t message_size);

/* The type record of kelp_boolean. */
extern KELP_API kelp_type_record _kelp_boolean_type_info_internal;

/* Does nothing: a boolean has no header, and the value is left alone. The arguments are those of
 * every initialize operation. */
KELP_API void kelp_boolean_initialize(kelp_handle *handle, uint32_t space_id, kelp_boolean *object,
                                      kelp_type_record *type, int32_t notify, int32_t skip_stats,
                                      uint8_t flags, void *sttr_base, uint32_t *err);

/* Does nothing: a boolean has no header that could carry the mark. */
KELP_API void kelp_boolean_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                 kelp_boolean *object);

/* ip_address: an IPv4 or IPv6 address or none, with an optional prefix length and, for IPv6, a
 * zone. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API ip_address *ip_address_get(kelp_handle *handle, uint32_t space_id,
                                    const ip_address *address, uint32_t *err);

/* Copies all 48 bytes of source, the header too, over destination; announces them first. An address
 * owns nothing, so the source keeps what it holds. Errors: 22 for a null argument. Lock: the
 * destination's, for writing. */
KELP_API void ip_address_set(kelp_handle *handle, uint32_t space_id, ip_address *destination,
                             const ip_address *source, uint32_t *err);

/* Returns -1, 0 or 1 as a sorts before, with or after b: null first; then by family (unset, IPv4,
 * IPv6), by the address bytes, by prefix length (none first), by zone. Bytes that the family does
 * not use and the header do not count. */
KELP_API int32_t ip_address_compare(const ip_address *a, const ip_address *b);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed.
 * Addresses that compare equal hash alike: unused bytes and the header do not count. */
KELP_API uint32_t ip_address_hash(const ip_address *address, uint32_t seed);

/* Returns the bytes that ip_address_marshal writes for address, which may be null: 22, whatever the
 * family. */
KELP_API uint32_t ip_address_len(kelp_handle *handle, uint32_t space_id, const ip_address *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t ip_address_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                     const ip_address *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. The header is left alone and reuse is not looked at. Errors: 22 for a null address,
 * for an image of no valid address, 90 when the image is longer than length; address is unchanged
 * then. */
KELP_API uint32_t ip_address_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                       ip_address *address, int32_t length, uint32_t reuse,
                                       uint32_t *err);

/* Writes the line "<label>@ip_address:<value>" behind indent blanks into buffer, at most size
 * bytes, and returns the bytes written. The value is as ip_address_format gives it. A null address
 * shows no value. */
KELP_API uint32_t ip_address_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                   uint32_t indent, const char *label, const ip_address *address,
                                   uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t ip_address_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                    char *buffer, const ip_address *address, uint32_t size,
                                    uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is as
 * ip_address_parse takes it; no text gives the unset address. Errors: 2 when the element is not
 * there, 22 for a text or path of another form; address is unchanged then, and for all but 2 the
 * message (message_size bytes, or null) says the path, what was found where, and what was
 * expected. */
KELP_API void ip_address_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                  kelp_xml_document *document, ip_address *address, uint32_t *err,
                                  char *message, int32_t message_size);

/* The type record of ip_address. */
extern KELP_API kelp_type_record _ip_address_type_info_internal;

/* Prepares the header of an address in memory that the caller provides: variants 0, the type
 * record, flags OR-ed into obj_flags; each store is announced when notify is non-zero. Under
 * shared_tinfo the record is the type table's copy, or null while there is none, so that no address
 * of one process enters a shared store. skip_stats and sttr_base are not looked at: addresses are
 * neither counted nor state tracked. The value is left alone. Errors: 22 for a null object. */
KELP_API void ip_address_initialize(kelp_handle *handle, uint32_t space_id, ip_address *object,
                                    kelp_type_record *type, int32_t notify, int32_t skip_stats,
                                    uint8_t flags, void *sttr_base, uint32_t *err);

/* Announces obj_flags and sets OBJ_EMBEDDED in it; null is ignored. */
KELP_API void ip_address_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                               ip_address *object);

/* Returns a new unset address with its header prepared, or null when obj_alloc gives none. The
 * caller owns it. */
KELP_API ip_address *ip_address_create(kelp_handle *handle, uint32_t space_id);

/* Gives back what ip_address_create returned; null is ignored. */
KELP_API void ip_address_destroy(kelp_handle *handle, uint32_t space_id, ip_address *address);

/* As ip_address_destroy when free_it is non-zero. Does nothing when it is 0, the form for an
 * embedded address, since an address owns nothing. */
KELP_API void ip_address_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                          ip_address *address, int32_t free_it);

/* Returns the bytes that one ip_address takes in memory: 48. */
KELP_API size_t ip_address_sizeof(void);

/* Returns 0: an ip_address holds no reference. Errors: 22 for a null object. */
KELP_API uint32_t ip_address_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                           const ip_address *object, uint32_t *err);

/* Writes nothing into array, as there are no references. Errors: 22 for a null object. */
KELP_API void ip_address_get_object_references(kelp_handle *handle, uint32_t space_id,
                                               const ip_address *object, void **array,
                                               uint32_t count, uint32_t *err);

/* Copies the value of source, not its header, into *destination, which is created first when it is
 * null. The work buffer that clones of structures need is not looked at. Errors: 2 for a null
 * destination pointer, 12 when none can be created, 22 for a null source. */
KELP_API void ip_address_clone_internal(kelp_handle *handle, uint32_t space_id,
                                        const ip_address *source, ip_address **destination,
                                        void *work, uint32_t work_size, uint32_t *err);

/* Does nothing: after a copy of its bytes an address has nothing that source would have to give
 * up. */
KELP_API void ip_address_post_copyout_cleanup(kelp_handle *handle, uint32_t space_id,
                                              ip_address *destination, ip_address *source,
                                              uint32_t *err);

/* Does nothing: an address has no state bytes of its own; the object around it keeps its byte. */
KELP_API void ip_address_set_all_state_tracking_flag(kelp_handle *handle, uint32_t space_id,
                                                     ip_address *object, uint8_t value);

enum {
  /* Enough for every text of ip_address_format, the final NUL included. */
  IP_ADDRESS_TEXT_SIZE = 64
};

/* Builds an address in the caller's own memory from text: "10.0.0.1", "10.0.0.0/8", "fe80::1%3",
 * "fe80::%3/64"; the zone is a number, and the empty text is the unset address. All 48 bytes are
 * written, the header as zero, and nothing is announced; ip_address_set then puts it into an
 * object. Returns 0, or 22 with *address unchanged when text is null or no address. */
KELP_API uint32_t ip_address_parse(const char *text, ip_address *address);

/* Returns the IPv4 address with the 32 bits host_order, most significant octet first, its header
 * zero. */
KELP_API ip_address ip_address_make_ipv4(uint32_t host_order);

/* Returns the IPv6 address with those 16 bytes in network order and that zone (0 for none), its
 * header zero. bytes must not be null. */
KELP_API ip_address ip_address_make_ipv6(const uint8_t bytes[16], uint32_t scope);

/* Gives a prefix length to an address in the caller's own memory; announces nothing. Returns 0, or
 * 22 with *address unchanged for null, for an unset address and for a length above the family's 32
 * or 128 bits. */
KELP_API uint32_t ip_address_give_prefix(ip_address *address, uint8_t prefix_length);

/* Writes the text of address into buffer, cut at size - 1 bytes, and a NUL behind it; returns the
 * bytes without the NUL. Null, the unset address and an unknown family give the empty text. Nothing
 * is written when size is 0. */
KELP_API uint32_t ip_address_format(const ip_address *address, char *buffer, uint32_t size);

/* kelp_vstring: a text of any length and any bytes, which it owns. */

/* Returns address itself, null for null. Sets no error. Lock: the object's, for reading. */
KELP_API kelp_vstring *kelp_vstring_get(kelp_handle *handle, uint32_t space_id,
                                        const kelp_vstring *address, uint32_t *err);

/* Moves the text of source to destination: destination gives back the text that it owned, takes
 * the source's pointer and length, and the source is left empty but valid. Header bytes stay.
 * When both already hold the same text, because the objects around them were copied as bytes,
 * only the source is emptied; that is done even under a set error word, since two owners of one
 * text would free it twice. source's text must come from this handle's obj_alloc. Announces text
 * and length (12 bytes) of each side that it changes. Errors: 22 for a null argument. Lock: both
 * objects', for writing. */
KELP_API void kelp_vstring_set(kelp_handle *handle, uint32_t space_id, kelp_vstring *destination,
                               kelp_vstring *source, uint32_t *err);

/* Returns -1, 0 or 1 as the text of a sorts before, with or after that of b: null first, then by
 * unsigned bytes, a text before its continuations. */
KELP_API int32_t kelp_vstring_compare(const kelp_vstring *a, const kelp_vstring *b);

/* Returns the hash of the value at address, seeded with seed; a null address returns the seed. The
 * bytes of the text count; the empty text does not return the seed itself. */
KELP_API uint32_t kelp_vstring_hash(const kelp_vstring *address, uint32_t seed);

/* Returns the bytes that kelp_vstring_marshal writes for address, which may be null: 4 and the
 * length of the text. */
KELP_API uint32_t kelp_vstring_len(kelp_handle *handle, uint32_t space_id,
                                   const kelp_vstring *address);

/* Writes the image of the value at address into buffer, at most length bytes, and returns the
 * bytes written. Errors: 22 for a null address, 90 when the image does not fit; nothing is
 * written then. */
KELP_API uint32_t kelp_vstring_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                       const kelp_vstring *address, int32_t length, uint32_t *err);

/* Reads an image of at most length bytes into address, announcing what it stores, and returns the
 * bytes read. The text that address owned before is given back; with reuse non-zero a text of the
 * same length is overwritten in place. Errors: 22 for a null address, 90 when the image is longer
 * than length, 12 when there is no memory; address is unchanged then. */
KELP_API uint32_t kelp_vstring_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                         kelp_vstring *address, int32_t length, uint32_t reuse,
                                         uint32_t *err);

/* Writes the line "<label>@kelp_vstring:<value>" behind indent blanks into buffer, at most size
 * bytes, and returns the bytes written. Control characters and backslashes of the text show as \n,
 * \r, \t, \\ and \xHH, so that it stays one line. A null address shows no value. */
KELP_API uint32_t kelp_vstring_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                     uint32_t indent, const char *label,
                                     const kelp_vstring *address, uint32_t size, uint32_t *err);

/* Writes the element tag with the value as its text into buffer, at most size bytes, and returns
 * the bytes written. state_byte shows as in start_tag. A null address gives an empty element.
 * Errors: as start_tag. */
KELP_API uint32_t kelp_vstring_to_xml(kelp_handle *handle, uint32_t space_id, const char *tag,
                                      char *buffer, const kelp_vstring *address, uint32_t size,
                                      uint32_t state_byte, uint32_t *err);

/* Reads the text of the element at path into address, announcing what it stores. The text is taken
 * as it is; with the attribute encoding="hex" it is pairs of hexadecimal digits. Errors: 2 when the
 * element is not there, 22 for a text or path of another form, 12 when there is no memory; address
 * is unchanged then, and for all but 2 the message (message_size bytes, or null) says the path,
 * what was found where, and what was expected. */
KELP_API void kelp_vstring_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                                    kelp_xml_document *document, kelp_vstring *address,
                                    uint32_t *err, char *message, int32_t message_size);

/* The type record of kelp_vstring. */
extern KELP_API kelp_type_record _kelp_vstring_type_info_internal;

/* Prepares the header bytes of a text in memory that the caller provides: variants 0, flags
 * OR-ed into obj_flags; each store is announced when notify is non-zero. There is no type record
 * in it. skip_stats and sttr_base are not looked at. The text is left alone. Errors: 22 for a
 * null object. */
KELP_API void kelp_vstring_initialize(kelp_handle *handle, uint32_t space_id, kelp_vstring *object,
                                      kelp_type_record *type, int32_t notify, int32_t skip_stats,
                                      uint8_t flags, void *sttr_base, uint32_t *err);

/* Announces obj_flags and sets OBJ_EMBEDDED in it; null is ignored. */
KELP_API void kelp_vstring_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                                 kelp_vstring *object);

/* Returns a new empty text, or null when obj_alloc gives none. The caller owns it and gives it back
 * with kelp_vstring_destroy_internal and free_it 1. */
KELP_API kelp_vstring *kelp_vstring_create(kelp_handle *handle, uint32_t space_id);

/* Gives back the text that address owns, announced and cleared, and, when free_it is non-zero, the
 * memory of address itself. free_it 0 is the form for an embedded text. Null is ignored. */
KELP_API void kelp_vstring_destroy_internal(kelp_handle *handle, uint32_t space_id,
                                            kelp_vstring *address, int32_t free_it);

/* Returns 0: a kelp_vstring holds no reference. Errors: 22 for a null object. */
KELP_API uint32_t kelp_vstring_get_oid_count(kelp_handle *handle, uint32_t space_id,
                                             const kelp_vstring *object, uint32_t *err);

/* Writes nothing into array, as there are no references. Errors: 22 for a null object. */
KELP_API void kelp_vstring_get_object_references(kelp_handle *handle, uint32_t space_id,
                                                 const kelp_vstring *object, void **array,
                                                 uint32_t count, uint32_t *err);

enum {
  /* The longest text in bytes: its image still has a length that fits 32 signed bits. */
  KELP_VSTRING_MAX_LENGTH = 0x7FFFFFFB
};

/* Gives vstring a copy of the length bytes at text, which may be null when length is 0, and gives
 * back the text that it owned before. text may lie inside that old text. Errors: 22 for a null
 * argument, 7 for a text longer than KELP_VSTRING_MAX_LENGTH, 12 when there is no memory; vstring
 * is unchanged then. Lock: the object's, for writing. */
KELP_API void kelp_vstring_assign(kelp_handle *handle, uint32_t space_id, kelp_vstring *vstring,
                                  const char *text, size_t length, uint32_t *err);

/* Returns the text of vstring, never null: the empty text for null. It ends with a NUL that its
 * length does not count, and stays valid until vstring is next changed or destroyed. */
KELP_API const char *kelp_vstring_text(const kelp_vstring *vstring);

KELP_EXTERN_C_END

#endif
