/* module: Operations of the module as a whole.
 * Written by the emitter from the schema; `make emit` renews it. */
#ifndef OSPF_HARBOR_OPER_MODULE_H
#define OSPF_HARBOR_OPER_MODULE_H

#include <ospf_harbor_oper/types.h>

KELP_EXTERN_C_BEGIN

/* The module's trace identities; the first is read as a 16-bit value, the second by
 * nothing here. */
extern KELP_API uint32_t g_kelp_ospf_harbor_oper_trace_module_id;
extern KELP_API uint32_t g_kelp_ospf_harbor_oper_stub_trace_module_id;

/* The bundle handler registered last; null for none. */
extern KELP_API void *ospf_harbor_oper_bundle_registered_handler;

/* The copies of the 21 table vfts that callers are handed, in the order of their
 * identities; filled once. */
extern KELP_API kelp_table_vft ospf_harbor_oper_table_lut[21];

/* Registers the 103 type records of the module with the handle's runtime: a type that is new
 * there gets a copy of its record, a known one keeps its copy and only has its variants
 * refreshed. The runtime calls this itself when it meets an unknown type.
 * Errors: KELP_ERR_NO_MEMORY (12) when there is no memory for a copy; types registered before
 *   stay registered. The word is not read on entry
 * Ownership: the copies belong to the runtime
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: module_frame (src/module/module.hpp) */
KELP_API void ospf_harbor_oper_typeinfo_initialize(kelp_handle *handle, uint32_t space_id,
                                                   uint32_t *err);

/* Prints how many variants each type has and, for each, its used length and its slop in bytes,
 * through print, which is called as printf is. Types are not named: they come in the order of the
 * records.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: module_frame (src/module/module.hpp) */
KELP_API void ospf_harbor_oper_type_variant_dump(int (*print)(const char *format, ...));

/* Remembers handler and passes all arguments on to tarn_comm_bundle_handler_register. Gives the
 * handler that was remembered before, null for none.
 * Errors: none
 * Ownership: handler and context stay the caller's
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: module_frame (src/module/module.hpp) */
KELP_API void *ospf_harbor_oper_bundle_handler_register(void *handler, void *context,
                                                        uint64_t flags);

/* Forgets the remembered handler and passes all arguments on to
 * tarn_comm_bundle_handler_unregister. Gives the handler that was remembered before, null for
 * none.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: module_frame (src/module/module.hpp) */
KELP_API void *ospf_harbor_oper_bundle_handler_unregister(void *handler, void *context,
                                                          uint64_t flags);

/* Registers the module with the trace library, which gives it its id. May be called again and
 * again; the heavy entry points do so themselves.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: module_frame (src/module/module.hpp) */
KELP_API void kelp_ospf_harbor_oper_trace_init(void);

/* Copies the 21 table vfts into ospf_harbor_oper_table_lut, once in a process. Gives 0 when the
 * copy was started before, else the result of table_vft_cpy. The first call is to be made before
 * threads contend.
 * Errors: none; the result is the code
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: ospf_harbor_oper_table (src/tables/ospf_harbor_oper_table.hpp) */
KELP_API uint32_t ospf_harbor_oper_table_vft_init(void);

/* Writes the vft of the table with the 16-byte LUID to *vft_out, making the copy first if nobody
 * has. The error word says whether that copy failed; the vft that is handed out is then not
 * filled in.
 * Errors: KELP_ERR_NOT_FOUND (2) for an unknown LUID, with null in *vft_out; the code of a failed
 *   copy
 * Ownership: the vft belongs to the library and lives as long as the process
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: ospf_harbor_oper_table (src/tables/ospf_harbor_oper_table.hpp) */
KELP_API void ospf_harbor_oper_table_get_vft(kelp_handle *handle, uint32_t space_id,
                                             const uint8_t *luid, const kelp_table_vft **vft_out,
                                             uint32_t *err);

/* Gives the index in ospf_harbor_oper_table_lut of the table with the 16-byte LUID, which need
 * not be aligned; -1 when there is none.
 * Errors: none
 * Lock: none is taken; the caller owns what it passes for the length of the call
 * Family: ospf_harbor_oper_table (src/tables/ospf_harbor_oper_table.hpp) */
KELP_API int32_t ospf_harbor_oper_table_mrst_lookup(const uint8_t *luid);

KELP_EXTERN_C_END

#endif
