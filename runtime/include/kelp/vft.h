/* The table vft: 48 words by which the runtime drives a table that it knows only by its identity.
 * All words are constant: two pointers to the identity, then operations whose signatures are those
 * of the family members named at the slots. */
#ifndef KELP_VFT_H
#define KELP_VFT_H

#include <kelp/table.h>

KELP_EXTERN_C_BEGIN

/* An operation of any signature; cast it to the slot's own before a call. */
typedef void (*kelp_vft_word)(void);

enum kelp_vft_slot {
  KELP_VFT_LUID = 0,
  KELP_VFT_NAME = 1,
  KELP_VFT_TABLE_OPEN = 2,
  KELP_VFT_TABLE_OPEN_BY_ID = 3,
  KELP_VFT_TABLE_OPEN_BY_IOR_WITH_NAME = 4,
  KELP_VFT_TABLE_OPEN_BY_IOR_WITH_ID = 5,
  KELP_VFT_TABLE_CLOSE = 6,
  KELP_VFT_TABLE_FREE = 7,
  KELP_VFT_RECORD_CREATE_CB = 8,
  KELP_VFT_RECORD_MODIFY_CB = 9,
  KELP_VFT_RECORD_DELETE_CB = 10,
  KELP_VFT_RECORD_CREATE_DM_CB = 11,
  KELP_VFT_RECORD_DELETE_DM_CB = 12,
  KELP_VFT_RECORD_GROUPING_CB = 13,
  KELP_VFT_RECORD_FREE_CB = 14,
  KELP_VFT_SEARCH = 15,
  KELP_VFT_SEARCH_W_SRC = 16,
  KELP_VFT_CREATE_RECORD = 17,
  KELP_VFT_RECORD_ADD_REF = 18,
  KELP_VFT_DESTROY_RECORD = 19,
  KELP_VFT_INSERT = 20,
  KELP_VFT_DELETE = 21,
  KELP_VFT_PKEY_INSERT = 22,
  KELP_VFT_PKEY_GET_NEXT = 23,
  KELP_VFT_PKEY_GET_PREV = 24,
  KELP_VFT_PKEY_GET_FIRST = 25,
  KELP_VFT_PKEY_GET_LAST = 26,
  KELP_VFT_TABLE_GET_COUNT = 27,
  KELP_VFT_TABLE_GET_COUNT_BY_SRC = 28,
  KELP_VFT_PKEY_GET_FIRST_BY_SRC = 29,
  KELP_VFT_PKEY_GET_FIRST_IGNORE_SRC = 30,
  KELP_VFT_PKEY_GET_NEXT_BY_SRC = 31,
  KELP_VFT_PKEY_GET_NEXT_IGNORE_SRC = 32,
  KELP_VFT_RECORD_PRINT = 33,
  KELP_VFT_RECORD_TO_XML = 34,
  KELP_VFT_RECORD_FROM_XML = 35,
  KELP_VFT_UNUSED = 36, /* null in every table */
  KELP_VFT_REQUEST_RECORD_DESTROY = 37,
  KELP_VFT_RECORD_MARSHAL = 38,
  KELP_VFT_RECORD_UNMARSHAL = 39,
  KELP_VFT_RECORD_LEN = 40,
  KELP_VFT_PKEY_MARSHAL = 41,
  KELP_VFT_PKEY_UNMARSHAL = 42,
  KELP_VFT_PKEY_LEN = 43,
  KELP_VFT_PKEY_DESTROY = 44,
  KELP_VFT_GET_NEXT_BY_KEY = 45,
  KELP_VFT_GET_PREV_BY_KEY = 46,
  KELP_VFT_PKEY_PRINT = 47,
  KELP_VFT_WORDS = 48
};

typedef struct kelp_table_vft {
  const uint8_t *luid;
  const char *name;
  kelp_vft_word operations[KELP_VFT_WORDS - 2]; /* operations[slot - 2] */
} kelp_table_vft;

KELP_EXTERN_C_END

#endif
