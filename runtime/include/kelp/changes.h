/* What changed in a store, for who keeps something beside it: an index of rows, what was sent to
 * others. The store keeps the latest blocks of memory that commits changed, whosever they are, so
 * that nobody has to look through all of it after each commit. */
#ifndef KELP_CHANGES_H
#define KELP_CHANGES_H

#include <kelp/embed.h>

KELP_EXTERN_C_BEGIN

/* What kelp_changes_since gives when the store does not know that far back, so that anything may have
 * changed. */
#define KELP_TOO_LONG_AGO 75

/* Hears of a block: where it begins, and whether it was freed. */
typedef void (*kelp_block_heard)(void *context, const void *block, uint32_t freed);

/* Tells which blocks of objects (records, tables, objects, what these own) commits changed or freed
 * since a place, in order, and moves the place to the present. Told are blocks that were there
 * already: to what was made since, something that was changed leads. A block may be told that was
 * not changed; where a freed one was, another may be by now. 0 is the place before everything.
 * Hold a lock. 0; KELP_TOO_LONG_AGO with nothing told; 22 for a private database, 1 without a lock,
 * 12. */
KELP_API int32_t kelp_changes_since(kelp_handle *handle, uint64_t *place, kelp_block_heard heard,
                                    void *context, kelp_error *error);

/* Tells the blocks that a record consists of: its own, its objects', and those of what they own
 * (texts, arrays). A word within them that only looks like the address of a block is told too.
 * Hold a lock. 22 for a private database or a record of another, 1 without a lock, 12. */
KELP_API int32_t kelp_record_blocks(kelp_handle *handle, const kelp_record *record,
                                    kelp_block_heard heard, void *context, kelp_error *error);

KELP_EXTERN_C_END

#endif
