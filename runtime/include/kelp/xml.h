/* XML: the tag writers and element look-ups that modules build their XML forms with, and the
 * parsing of a document for whoever embeds the runtime.
 *
 * Writing. A piece (a tag, a text, a whole element of a primitive) is written whole or not at all:
 * when it does not fit, the error word becomes 90, so that the writers behind it add nothing and a
 * cut document never passes for a whole one. A NUL stands behind the last piece when there is room
 * for it. Texts are escaped. A text that XML cannot carry (control characters, bytes that are not
 * UTF-8) is written as hexadecimal digits in an element with the attribute encoding="hex".
 *
 * Reading. Paths have the forms "//name", and behind it any number of "/tag" and "/tag[n]", n from
 * 1; any other path is error 22. "//name" is the first element of that name in document order,
 * "/tag" the first child of that name, "/tag[n]" the n-th. A look-up costs the same in a long
 * document as in a short one. A document is never changed once parsed, so threads may read it side
 * by side. */
#ifndef KELP_XML_H
#define KELP_XML_H

#include <kelp/base.h>

KELP_EXTERN_C_BEGIN

enum {
  /* Elements nested deeper than this are refused. */
  KELP_XML_MAX_DEPTH = 128
};

/* Parses length bytes of UTF-8 at data, which are copied, and returns the document, which the
 * caller gives to kelp_xml_free. Null when it is no well-formed document with one root element, has
 * a document type declaration (none is read, and entities beyond XML's own five are refused), or is
 * nested deeper than KELP_XML_MAX_DEPTH; message (message_size bytes, or null) then says what was
 * found at which line and column. */
KELP_API kelp_xml_document *kelp_xml_parse(const char *data, size_t length, char *message,
                                           uint32_t message_size);

/* Frees a document; null is ignored. */
KELP_API void kelp_xml_free(kelp_xml_document *document);

/* Writes the opening tag of the element tag into buffer, at most size bytes, and returns the bytes
 * written. A non-zero state_byte shows as an attribute: <cost state="2">. Errors: 22 for a null or
 * empty tag, 90 when it does not fit; nothing is written then. */
KELP_API uint32_t start_tag(kelp_handle *handle, uint32_t space_id, char *buffer, const char *tag,
                            uint32_t size, uint32_t state_byte, uint32_t *err);

/* Writes the closing tag of the element tag. Result and errors as start_tag. */
KELP_API uint32_t end_tag(kelp_handle *handle, uint32_t space_id, char *buffer, const char *tag,
                          uint32_t size, uint32_t *err);

/* Copies text_length bytes of text, which is XML already, into buffer, at most size bytes, and
 * returns the bytes written. Errors: 22 for a null text, 90 when it does not fit; nothing is
 * written then. */
KELP_API uint32_t xml_enum_print(kelp_handle *handle, uint32_t space_id, char *buffer,
                                 const char *text, uint32_t size, uint32_t text_length,
                                 uint32_t *err);

/* Gives the text of the element at path, without that of its child elements, into value: at most
 * size - 1 bytes of it and a NUL; with size 0 or a null value only presence is asked. reserved is
 * 0. Returns 0, 2 when the element is not there, 22 for a null argument or another form of path. */
KELP_API uint32_t xml_get_element_value(kelp_xml_document *document, const char *path, char *value,
                                        uint32_t size, uint32_t reserved);

/* Gives the number of elements at path: for "//name" all of that name in the document, for a last
 * part "/tag" all such children, for "/tag[n]" 1 or 0. Returns 0 also when there are none, 22 for a
 * null argument or another form of path, with *count unchanged. */
KELP_API uint32_t xml_get_element_nodecount(kelp_xml_document *document, const char *path,
                                            uint32_t *count);

/* Tells where in the text that was parsed the element at path begins: line and column, both from 1,
 * columns in bytes. For "//name" and "/tag" it is the first such element. Returns 0, 2 when the
 * element is not there, 22 for a null argument or another form of path, with both unchanged. */
KELP_API uint32_t xml_get_element_position(kelp_xml_document *document, const char *path,
                                           uint32_t *line, uint32_t *column);

KELP_EXTERN_C_END

#endif
