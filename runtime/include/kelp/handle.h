/* The handle: the context that is the first argument of nearly every function. The runtime makes
 * and owns it (kelp/embed.h); modules of types read and write the members below. */
#ifndef KELP_HANDLE_H
#define KELP_HANDLE_H

#include <kelp/object.h>

KELP_EXTERN_C_BEGIN

enum kelp_sttr_mode { STTR_MODE_ON = 0xEEEE, STTR_MODE_OFF = 0xDDDD };

/* The state tracking descriptor of a handle. Any sttr_mode but the two named is a corrupt handle. */
typedef struct kelp_sttr {
  uint32_t sttr_mode;
} kelp_sttr;

/* The variants that a handle's domain gives to types. Only the runtime looks inside. */
typedef struct kelp_domain {
  void *variants;
} kelp_domain;

struct kelp_handle {
  void *(*type_alloc)(void *type_pool, uint32_t space_id, size_t size);
  void *(*obj_alloc)(void *obj_pool, uint32_t space_id, size_t size);
  void (*obj_free)(void *obj_pool, uint32_t space_id, void *pointer);
  void (*write_notify)(void *obj_pool, const void *address, size_t length, uint32_t space_id);
  void (*counter_notify)(void *obj_pool, const void *address, size_t length, uint32_t space_id);
  void (*type_table_insert)(void *type_table, uint32_t space_id, const char *key,
                            kelp_type_record_copy *copy);
  kelp_type_record_copy *(*type_table_lookup)(void *type_table, uint32_t space_id, const char *key);
  uint32_t shared_tinfo;
  void *obj_pool;
  void *type_table;
  void *type_pool;
  kelp_domain domain;
  uint32_t cr_err;
  uint32_t cr_space_id;
  uint32_t cr_create;
  kelp_sttr *sttr;
  uint64_t hd_mapped;
  /* Read by tables only. */
  uint32_t db_lock_state; /* 0 none, 1 read lock, 2 write lock */
  const char *db_name;
  uint32_t collector_context;
  uint32_t force_toc_delete;
  uint32_t quiet_insert;
  uint32_t peer_stamp;
  /* The runtime's own. */
  struct kelp_handle_state *state;
  struct kelp_quick *quick; /* a word for kelp/quick.hpp; null: every call is made */
};

KELP_EXTERN_C_END

#endif
