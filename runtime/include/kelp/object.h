/* What lies in memory: type records and their variants, the module list, the header that every
 * object starts with, object identifiers and references.
 *
 * These layouts are shared by the runtime and by every module of types that runs on it, so a
 * change here is a change of the binary contract. */
#ifndef KELP_OBJECT_H
#define KELP_OBJECT_H

#include <kelp/base.h>

KELP_EXTERN_C_BEGIN

#define KELP_TYPE_MAGIC UINT32_C(0xbeeff00d)

/* One variant of a type. The counters are written by several threads: see plain_counters. */
typedef struct kelp_variant_entry {
  uint32_t variant_id;
  uint32_t used_length; /* bytes of the object that this variant's fields reach, header included */
  uint32_t alloc_slop;  /* bytes allocated beyond used_length */
  uint32_t reserved;
  uint64_t create_count;
  uint64_t destroy_count;
  uint64_t reserved_counter;
} kelp_variant_entry;

typedef struct kelp_variant_info {
  int8_t n_variants;
  kelp_variant_entry *entries; /* n_variants of them, index = variant number */
} kelp_variant_info;

struct kelp_type_record {
  uint32_t magic;
  uint8_t md5[16];
  char md5_text[33];
  char type_name[64];
  char module_name[64];
  char kind[64]; /* "enum", "flag", "type", "table" or "table_record" */
  int32_t resolved_variant;
  uint32_t reserved;
  kelp_variant_info *varinfo;
  uint32_t plain_counters; /* non-zero: counters are bumped plainly, else atomically */
};

/* The runtime's private version of a type record. */
typedef struct kelp_type_record_copy {
  kelp_type_record record;
  uint64_t runtime_word_a;
  uint64_t runtime_word_b;
} kelp_type_record_copy;

/* A module of types in the process. prev_link is the address of the pointer that points here. */
typedef struct kelp_module_node {
  const char *name;
  kelp_type_record *const *types; /* ends with a null pointer */
  struct kelp_module_node *next;
  struct kelp_module_node **prev_link;
} kelp_module_node;

typedef struct kelp_module_list {
  uint32_t count;
  kelp_module_node *first;
  kelp_module_node **tail_link; /* address of the last node's next, or of first when empty */
} kelp_module_list;

extern KELP_API kelp_module_list kelp_module_tot_root;

/* The first bytes of every object. The value follows directly at offset 11 for a flag set, at the
 * next 32-bit boundary for an enumeration, and at each field's own alignment for a structure. */
typedef struct kelp_object_header {
  kelp_type_record *tinfo;
  int8_t variant;
  int8_t created_variant;
  uint8_t obj_flags;
} kelp_object_header;

enum kelp_object_flag {
  OBJ_OID_MAPPED = 0x01,
  OBJ_EMBEDDED = 0x02,
  OBJ_NESTED = 0x04,
  OBJ_STATE_TRACKED = 0x08,
  OBJ_RA_DATA = 0x20,
  OBJ_STTR_RELOCATED = 0x40,
  OBJ_TINFO_BLOCK = 0x80
};

/* A persistent object identifier. An empty one is all zero; a zero id means that nothing is
 * referred to, and a handle_word below 256 that nothing can be resolved from it. */
typedef struct kelp_oid {
  uint64_t handle_word;
  uint8_t id[16];
  uint8_t source[16];
} kelp_oid;

/* A by-reference field: the type record of the table that it may refer to, and the OID. */
typedef struct kelp_reference {
  kelp_type_record *target_type;
  kelp_oid oid;
} kelp_reference;

KELP_EXTERN_C_END

#endif
