/* The pieces of marshalled images that are not field values: variant and flag bytes, the ra-data
 * block, the jump word, OIDs and the message header. docs/wire-format.md shows each with its bytes.
 *
 * All numbers travel in network byte order. Each operation takes the bytes that are left in the
 * buffer, returns the bytes it used, and never touches the buffer beyond them: a buffer too short
 * for the piece is error 90, on reading as on writing, with 0 as the result, nothing written, and
 * the item that was to be read left alone except where noted. A null item or buffer is error 22. A
 * set error word makes every reader, and every writer but the four that say so, do nothing and
 * return 0. A failure is stored as the handle's last error. Readers announce nothing;
 * kelplib_oid_unmarshal, which stores into objects, does. No lock. */
#ifndef KELP_WIRE_H
#define KELP_WIRE_H

#include <kelp/handle.h>

KELP_EXTERN_C_BEGIN

/* What heads a record's image, as the table side fills it in: 16 bytes, no padding. */
typedef struct kelp_message_header_record {
  uint8_t marker;      /* KELP_MESSAGE_MARKER */
  uint8_t reserved[6]; /* all 255 */
  uint8_t tracking;    /* the tracking mark of the first object's image */
  uint32_t handle_word;
  uint32_t length; /* bytes of the whole image, this header included */
} kelp_message_header_record;

enum kelp_wire_size {
  KELP_WIRE_VARIANT_SIZE = 1,
  KELP_WIRE_OBJ_FLAG_SIZE = 1,
  KELP_WIRE_RA_DATA_SIZE = 9,
  KELP_WIRE_JUMP_SIZE = 4,
  KELP_WIRE_OID_SIZE = 40,
  KELP_WIRE_MESSAGE_HEADER_SIZE = 27
};

enum { KELP_MESSAGE_MARKER = 188 };

/* Writes the variant byte; returns 1. It is written also under a set error word, so that the frame
 * of an image stays readable; its own failure leaves a set word alone. */
KELP_API uint32_t _kelp_instance_variant_marshal(kelp_handle *handle, uint32_t space_id,
                                                 void *buffer, const int8_t *variant,
                                                 int32_t remaining, uint32_t *err);

/* Reads the variant byte; returns 1. */
KELP_API uint32_t _kelp_instance_variant_unmarshal(kelp_handle *handle, uint32_t space_id,
                                                   const void *buffer, int8_t *variant,
                                                   int32_t remaining, uint32_t *err);

/* Writes the object flag byte; returns 1. As the variant byte under a set error word. */
KELP_API uint32_t _kelp_instance_obj_flag_marshal(kelp_handle *handle, uint32_t space_id,
                                                  void *buffer, const uint8_t *flags,
                                                  int32_t remaining, uint32_t *err);

/* Reads the object flag byte; returns 1. */
KELP_API uint32_t _kelp_instance_obj_flag_unmarshal(kelp_handle *handle, uint32_t space_id,
                                                    const void *buffer, uint8_t *flags,
                                                    int32_t remaining, uint32_t *err);

/* Writes the ra-data block, a 64-bit word and a byte; returns 9. As the variant byte under a set
 * error word. */
KELP_API uint32_t _kelp_instance_ra_data_marshal(kelp_handle *handle, uint32_t space_id,
                                                 void *buffer, const uint64_t *word,
                                                 const uint8_t *byte, int32_t remaining,
                                                 uint32_t *err);

/* Reads the ra-data block; returns 9. */
KELP_API uint32_t _kelp_instance_ra_data_unmarshal(kelp_handle *handle, uint32_t space_id,
                                                   const void *buffer, uint64_t *word,
                                                   uint8_t *byte, int32_t remaining, uint32_t *err);

/* Writes the jump word; returns 4. It is written also under a set error word, since writers patch
 * it last, whatever happened before; its own failure leaves a set word alone. */
KELP_API uint32_t _kelp_variant_jump_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                             const int32_t *jump, int32_t remaining, uint32_t *err);

/* Reads the jump word; returns 4. A word that is negative or reaches beyond remaining, counted from
 * the word itself, is error 90, so that no reader is led outside its buffer. On any failure *jump
 * becomes 0. */
KELP_API uint32_t _kelp_variant_jump_unmarshal(kelp_handle *handle, uint32_t space_id,
                                               const void *buffer, int32_t *jump, int32_t remaining,
                                               uint32_t *err);

/* Writes the 27 bytes of the message header; returns 27. */
KELP_API uint32_t _kelp_message_header_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                               const kelp_message_header_record *record,
                                               int32_t remaining, uint32_t *err);

/* Reads the message header into *record as it stands, unchecked; returns 27. */
KELP_API uint32_t _kelp_message_header_unmarshal(kelp_handle *handle, uint32_t space_id,
                                                 const void *buffer,
                                                 kelp_message_header_record *record,
                                                 int32_t remaining, uint32_t *err);

/* Returns the bytes of an OID's image, 40; oid may be null. */
KELP_API uint32_t kelplib_oid_len(kelp_handle *handle, uint32_t space_id, const kelp_oid *oid);

/* Writes the 40 bytes of an OID; returns 40. */
KELP_API uint32_t kelplib_oid_marshal(kelp_handle *handle, uint32_t space_id, void *buffer,
                                      const kelp_oid *oid, int32_t length, uint32_t *err);

/* Reads an OID, announcing its 40 bytes first; returns 40. No reference is counted. reuse is not
 * looked at. */
KELP_API uint32_t kelplib_oid_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                        kelp_oid *oid, int32_t length, uint32_t reuse,
                                        uint32_t *err);

KELP_EXTERN_C_END

#endif
