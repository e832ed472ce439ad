/* The elements of a document without paths, for modules that read many values of one: what is in an
 * element is found by its parent and its tag. Nothing here says why it did nothing: who wants the
 * words asks once more by the path, through the functions of kelp/xml.h and kelp/primitives.h. */
#ifndef KELP_XML_ELEMENTS_H
#define KELP_XML_ELEMENTS_H

#include <kelp/primitives.h>
#include <kelp/xml.h>

KELP_EXTERN_C_BEGIN

/* An element of a document, good as long as that is. */
typedef struct kelp_xml_element kelp_xml_element;

/* The elements of one tag below one parent, in document order. */
typedef struct kelp_xml_row {
  const kelp_xml_element *const *elements;
  uint32_t count;
} kelp_xml_row;

/* Returns the first element at path, or null when there is none, for another form of path and for a
 * null argument. */
KELP_API const kelp_xml_element *kelp_xml_find(const kelp_xml_document *document, const char *path);

/* Returns the children of parent whose tag is the length bytes at tag; a row of none when there are
 * none. *next says where to look first: 0 to begin with, and then what the last call left there,
 * which finds at once what is asked for in the order of the document. Nothing may be null. */
KELP_API kelp_xml_row kelp_xml_children(const kelp_xml_document *document,
                                        const kelp_xml_element *parent, const char *tag,
                                        size_t length, uint32_t *next);

/* Puts the tags of the children of parent, which all must be empty, into tags, and returns how many
 * there are. UINT32_MAX when there are more than room or one of them holds something. */
KELP_API uint32_t kelp_xml_empty_children(const kelp_xml_element *parent, const char **tags,
                                          uint32_t room);

/* Reads the text of the element into address, announcing what it stores, and returns 1. Returns 0
 * where the from_xml operation of the primitive would fail, with nothing done; that one says why.
 */
KELP_API uint32_t u_int8_read_element(kelp_handle *handle, uint32_t space_id,
                                      const kelp_xml_element *element, uint8_t *address);
KELP_API uint32_t u_int16_read_element(kelp_handle *handle, uint32_t space_id,
                                       const kelp_xml_element *element, uint16_t *address);
KELP_API uint32_t u_int32_read_element(kelp_handle *handle, uint32_t space_id,
                                       const kelp_xml_element *element, uint32_t *address);
KELP_API uint32_t double_read_element(kelp_handle *handle, uint32_t space_id,
                                      const kelp_xml_element *element, double *address);
KELP_API uint32_t kelp_boolean_read_element(kelp_handle *handle, uint32_t space_id,
                                            const kelp_xml_element *element, kelp_boolean *address);
KELP_API uint32_t ip_address_read_element(kelp_handle *handle, uint32_t space_id,
                                          const kelp_xml_element *element, ip_address *address);

/* The same for a text, which can also fail with 7 or 12 as kelp_vstring_from_xml does; 1 then. */
KELP_API uint32_t kelp_vstring_read_element(kelp_handle *handle, uint32_t space_id,
                                            const kelp_xml_element *element, kelp_vstring *address,
                                            uint32_t *err);

/* Reads the elements of a row, in order, into values, which has room for all, and returns how many
 * it read: it ends before the first that from_xml would not read. Nothing is announced; what stands
 * behind the values read may have changed. */
KELP_API uint32_t u_int8_read_row(const kelp_xml_row *row, uint8_t *values);
KELP_API uint32_t u_int32_read_row(const kelp_xml_row *row, uint32_t *values);

KELP_EXTERN_C_END

#endif
