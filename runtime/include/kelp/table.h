/* Table objects and record shells: the layouts that the runtime's database side and the modules'
 * table families share. */
#ifndef KELP_TABLE_H
#define KELP_TABLE_H

#include <kelp/object.h>

KELP_EXTERN_C_BEGIN

/* A node of an AVL tree; it lies inside the thing that it links. */
typedef struct e_avl_node {
  struct e_avl_node *left;
  struct e_avl_node *right;
  struct e_avl_node *parent;
  int32_t balance;
  uint32_t tree; /* the tree's own: its number, the same in all of its nodes; 0 for none */
} e_avl_node;

typedef struct e_avl_root {
  e_avl_node *top;
} e_avl_root;

enum kelp_open_type { KELP_OPEN_BY_NAME = 0, KELP_OPEN_BY_ID = 1, KELP_OPEN_AUTO_ID = 2 };

struct kelp_table {
  kelp_object_header header;
  char tbl_name[208]; /* the name path; empty for a table opened by id */
  uint32_t record_count;
  uint32_t pending_destroy_count;
  uint64_t table_id;
  uint32_t open_type;
  kelp_table *toc_next;
  kelp_table **toc_prev; /* the predecessor's toc_next, or the list head's first word */
  uint64_t gc_word;
  uint32_t shadow_count;
  e_avl_root avl_root;
  uint64_t avl_aux;
  void *runtime_state; /* the runtime's: cursors, tenant counters */
};

/* The head of a database's list of tables. */
typedef struct kelp_table_list {
  kelp_table *first;
  kelp_table **last_link; /* address of the last table's toc_next, or of first when empty */
} kelp_table_list;

/* What modules read of a database's table of contents. */
typedef struct kelp_toc_root {
  uint8_t flags; /* KELP_TOC_SHARED */
} kelp_toc_root;

enum kelp_toc_flag { KELP_TOC_SHARED = 0x01 };

/* One per table type and store: the ids given out to tables of that type. */
typedef struct kelp_tbi_root {
  uint32_t tbi_table_count;
  uint32_t reserved_word;
  uint64_t tbi_next_id;
  uint64_t reserved[2];
} kelp_tbi_root;

enum kelp_record_flag {
  REC_IN_TABLE = 0x01,
  REC_PENDING_DESTROY = 0x02,
  REC_PKEY = 0x10,
  REC_HD_MAPPED = 0x20,
  REC_RUNTIME_REMOVED = 0x100
};

/* The source tags with a meaning of their own. */
enum kelp_record_source { KELP_SRC_ANY = 0, KELP_SRC_DEFAULT = 1, KELP_SRC_SHADOW = 255 };

/* A reference-counted shell around one object, or around a key object and a data object. */
struct kelp_record {
  kelp_object_header header;
  kelp_table *record_table; /* null while in no table */
  uint32_t ref_word;        /* low 24 bits: the reference count */
  uint16_t tenant_id;
  uint32_t rec_flags;
  uint8_t src;
  e_avl_node avl_node;
  void *objects[1]; /* the object; in a composite-key table the key object, then the data object */
};

KELP_EXTERN_C_END

#endif
