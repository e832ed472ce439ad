/* Checks images and XML documents that come from outside, before a reader of ospf_harbor_oper
 * touches them, and shows what the bytes of an image are. A library of its own, ospf_harbor_check:
 * the readers trust what they are given, and programs that only look at images need neither a
 * database nor the readers. One walk over the rows of the schema serves the check and the display.
 *
 * What passes is read, given memory, without a failure, without a byte outside the buffer and
 * without an allocation that is not backed by bytes of the image: give the reader exactly the bytes
 * that were checked, and an object of the name under which they were checked, made through the
 * reader's handle. An image with state bytes may end with one
 * that the readers take only when a further byte follows: with `length + 1` told to the reader, and
 * that byte there, it is read too.
 *
 * The OIDs of references are passed as they are. They name tables of the writer: a program that
 * takes in objects from another database ties them again, or zeroes them, before it destroys one.
 *
 * All functions may be called from any thread at any time; nothing is kept between calls, and no
 * handle and no lock is needed. */
#ifndef OSPF_HARBOR_CHECK_H
#define OSPF_HARBOR_CHECK_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define OSPF_HARBOR_CHECK_API __attribute__((visibility("default")))

/* What an image or document is of. */
enum ospf_harbor_check_kind {
  /* <type>_marshal, <type>_to_xml; the name is that of a structure, an enumeration or a flag set,
   * such as "ospf_area" */
  OSPF_HARBOR_CHECK_OBJECT = 0,
  /* tbl_<t>_table_record_marshal, tbl_<t>_table_record_to_xml; the name is that of a table, such as
   * "tbl_ospf_area". Null for an image of any table: its identity in the frame tells which */
  OSPF_HARBOR_CHECK_RECORD = 1,
  /* tbl_<t>_table_pkey_marshal; the name is that of a table. There is no XML form */
  OSPF_HARBOR_CHECK_KEY = 2
};

/* What is wrong. */
enum ospf_harbor_check_fault {
  OSPF_HARBOR_FAULT_NONE = 0,
  OSPF_HARBOR_FAULT_NAME = 1,     /* no type or table of that name, or no such form of it */
  OSPF_HARBOR_FAULT_SIZE = 2,     /* more bytes than a reader can be told, or than allowed */
  OSPF_HARBOR_FAULT_CUT = 3,      /* the bytes end, or a jump word ends the object, in a piece */
  OSPF_HARBOR_FAULT_MARKER = 4,   /* frame: not 188 */
  OSPF_HARBOR_FAULT_RESERVED = 5, /* frame: not all 255 */
  OSPF_HARBOR_FAULT_TRACKING_MARK = 6,   /* frame: not what the first object's flags say */
  OSPF_HARBOR_FAULT_FRAME_LENGTH = 7,    /* frame: not the length of the bytes */
  OSPF_HARBOR_FAULT_LUID = 8,            /* frame: an unknown table, or not the expected one */
  OSPF_HARBOR_FAULT_VARIANT = 9,         /* negative */
  OSPF_HARBOR_FAULT_FLAGS = 10,          /* a bit beside 8 and 32 */
  OSPF_HARBOR_FAULT_MIXED_TRACKING = 11, /* objects of one image differ in having state bytes */
  OSPF_HARBOR_FAULT_JUMP = 12,           /* below 4, or leads out of the object around it */
  OSPF_HARBOR_FAULT_COUNT = 13,          /* more elements than what remains, or an LSA, can hold */
  OSPF_HARBOR_FAULT_TEXT_LENGTH = 14,    /* a text longer than what remains */
  OSPF_HARBOR_FAULT_ADDRESS = 15,        /* a family or prefix length that no address has */
  OSPF_HARBOR_FAULT_BOOLEAN = 16,        /* neither 0 nor 1 */
  OSPF_HARBOR_FAULT_TRAILING = 17,       /* bytes behind the image */
  OSPF_HARBOR_FAULT_DOCUMENT = 18,       /* XML: not well-formed, too deep, a DTD or an entity */
  OSPF_HARBOR_FAULT_ELEMENT = 19,        /* XML: an element that is missing or stands twice */
  OSPF_HARBOR_FAULT_VALUE = 20,          /* XML: a text that is no value of its field */
  OSPF_HARBOR_FAULT_MEMORY = 21          /* XML: no memory for the document */
};

/* What a check says. Texts end with a NUL and are cut when they are longer. */
typedef struct ospf_harbor_check_result {
  uint32_t fault;  /* enum ospf_harbor_check_fault */
  uint32_t line;   /* XML: where, from 1; 0 when that is not known */
  uint32_t column; /* in bytes */
  size_t offset;   /* image: the first byte of what is wrong */
  size_t skipped;  /* image: bytes of newer writers that the readers pass over */
  char name[64];   /* the type or table, as it was given or, without a name, found */
  char path[256];  /* "link_scope_lsa.raw_data", in XML "//link_scope_lsa/raw_data" */
  char piece[32];  /* "count", "jump word"; in XML "" */
  char found[128];
  char expected[128];
  /* All of it in one line: "offset 0x2c: link_scope_lsa.raw_data count: found 4294967295, expected
   * at most 17 (what remains)". Empty when nothing is wrong. */
  char text[768];
} ospf_harbor_check_result;

/* Checks an image of length bytes. Returns the fault, 0 for none; result may be null. */
OSPF_HARBOR_CHECK_API uint32_t ospf_harbor_check_image(uint32_t kind, const char *name,
                                                       const void *image, size_t length,
                                                       ospf_harbor_check_result *result);

/* What a span of an image is. */
enum ospf_harbor_span_piece {
  OSPF_HARBOR_SPAN_MARKER = 0, /* these seven: the frame of a record */
  OSPF_HARBOR_SPAN_RESERVED = 1,
  OSPF_HARBOR_SPAN_TRACKING_MARK = 2,
  OSPF_HARBOR_SPAN_HANDLE_WORD = 3,
  OSPF_HARBOR_SPAN_FRAME_LENGTH = 4,
  OSPF_HARBOR_SPAN_FILL = 5,
  OSPF_HARBOR_SPAN_LUID = 6,
  OSPF_HARBOR_SPAN_VARIANT = 7,
  OSPF_HARBOR_SPAN_FLAGS = 8, /* the flag byte of a structure */
  OSPF_HARBOR_SPAN_RA_DATA = 9,
  OSPF_HARBOR_SPAN_JUMP = 10,
  OSPF_HARBOR_SPAN_VALUE = 11, /* a number, boolean, enumeration's value or flag set's byte; the
                                  elements of an array of octets in one span */
  OSPF_HARBOR_SPAN_COUNT = 12,
  OSPF_HARBOR_SPAN_TEXT_LENGTH = 13,
  OSPF_HARBOR_SPAN_TEXT = 14,
  OSPF_HARBOR_SPAN_ADDRESS_FAMILY = 15,
  OSPF_HARBOR_SPAN_ADDRESS_PREFIX = 16,
  OSPF_HARBOR_SPAN_ADDRESS = 17,
  OSPF_HARBOR_SPAN_ADDRESS_ZONE = 18,
  OSPF_HARBOR_SPAN_OID_HANDLE_WORD = 19,
  OSPF_HARBOR_SPAN_OID_ID = 20,
  OSPF_HARBOR_SPAN_OID_SOURCE = 21,
  OSPF_HARBOR_SPAN_STATE = 22,          /* the state byte of a field */
  OSPF_HARBOR_SPAN_ELEMENT_STATES = 23, /* those of an array's elements in one span */
  OSPF_HARBOR_SPAN_SKIPPED = 24         /* what a newer writer added */
};

/* One span. Spans come in order and without gaps; the texts live until the visitor returns. */
typedef struct ospf_harbor_image_span {
  size_t offset;
  size_t length;     /* at least 1 */
  uint32_t piece;    /* enum ospf_harbor_span_piece */
  uint32_t depth;    /* 0 for the frame and the outermost object, 1 in an object within that, ... */
  const char *path;  /* "ospf_area.area_id", "ospfv2_network.attached_router[2]", "tbl_ospf_area" */
  const char *name;  /* of the piece, such as "jump word" */
  const char *value; /* for people: "10", "POINT_TO_POINT", "fe80::1", "state bytes, ra-data" */
} ospf_harbor_image_span;

typedef void ospf_harbor_image_visitor(const ospf_harbor_image_span *span, void *context);

/* Checks an image as ospf_harbor_check_image does and shows each span to the visitor on the way; a
 * bad image is shown up to the fault. */
OSPF_HARBOR_CHECK_API uint32_t ospf_harbor_check_walk(uint32_t kind, const char *name,
                                                      const void *image, size_t length,
                                                      ospf_harbor_image_visitor *visit,
                                                      void *context,
                                                      ospf_harbor_check_result *result);

/* Receives one line, which ends with a NUL and has no newline. */
typedef void ospf_harbor_line_receiver(const char *line, void *context);

/* Gives the image as lines: offset, the bytes in hexadecimal, path and piece, value. Long spans
 * take several lines. A bad image is given whole: behind the fault, which has a line of its own
 * that starts with "!", come the bytes that are left, unnamed. Returns the fault. */
OSPF_HARBOR_CHECK_API uint32_t ospf_harbor_check_annotate(uint32_t kind, const char *name,
                                                          const void *image, size_t length,
                                                          ospf_harbor_line_receiver *receive,
                                                          void *context,
                                                          ospf_harbor_check_result *result);

/* Gives length bytes at offset of a whole as lines of that form, with text (or none, for null)
 * behind the first bytes: for those who show images within something larger. */
OSPF_HARBOR_CHECK_API void ospf_harbor_check_lines(const void *whole, size_t whole_length,
                                                   size_t offset, size_t length, const char *text,
                                                   ospf_harbor_line_receiver *receive,
                                                   void *context);

/* The bytes that the frame of a record image, with length bytes of it there, says the image has; 0
 * when they are too few to tell (below 16) or no frame begins there. For readers of a stream: it
 * is what the writer claims, so compare it with a limit before waiting for that many. */
OSPF_HARBOR_CHECK_API size_t ospf_harbor_check_frame_length(const void *image, size_t length);

/* The name of the table ("tbl_ospf_area") whose record image this is; null when length is below 43
 * or no table has that identity. Nothing else of the image is looked at. */
OSPF_HARBOR_CHECK_API const char *ospf_harbor_check_table_of(const void *image, size_t length);

/* XML documents longer than this are refused when no other limit is given. */
enum { OSPF_HARBOR_CHECK_XML_LIMIT = 1 << 22 };

/* Checks an XML document of length bytes, against which <type>_from_xml (with the path "//" and the
 * type's name) or tbl_<t>_table_record_from_xml is to be run: its size (limit, 0 for
 * OSPF_HARBOR_CHECK_XML_LIMIT), that it is well-formed, not too deep and without a DTD or entities,
 * that the object's elements are there once and where they belong, that no field stands twice, and
 * that each text is a value of its field. Elements that the schema does not name are passed over,
 * as the readers do. Returns the fault, 0 for none; result may be null. */
OSPF_HARBOR_CHECK_API uint32_t ospf_harbor_check_xml(uint32_t kind, const char *name,
                                                     const char *document, size_t length,
                                                     size_t limit,
                                                     ospf_harbor_check_result *result);

#ifdef __cplusplus
}
#endif

#endif
