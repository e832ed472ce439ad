/* Intrusive AVL trees. The node lies inside the thing that it links, so a tree allocates nothing.
 * Tables use them for their records (kelp/table.h has the layouts).
 *
 * The stores that a tree makes into nodes, root and aux are declared to the store behind obj_pool
 * by the tree itself. No function here takes a lock: the caller holds the database's. */
#ifndef KELP_TREE_H
#define KELP_TREE_H

#include <kelp/table.h>

KELP_EXTERN_C_BEGIN

/* 0 when a sorts before b, 1 when they are equal, 2 when a sorts after b. */
typedef uint32_t (*e_avl_comparator)(const e_avl_node *a, const e_avl_node *b);

/* Called with a node and the walk's context; a non-zero result ends the walk. */
typedef uint32_t (*e_avl_walker)(e_avl_node *node, void *context);

/* Enters a node. 1 on success, 0 when an equal node is in the tree already; nothing has changed
 * then. aux is a word of the caller's that starts at 0 and belongs to the tree: it holds the number
 * of nodes. aux may be null, obj_pool may be null. O(log n). */
KELP_API uint32_t e_avl_insert(void *obj_pool, uint32_t space_id, e_avl_root *root,
                               e_avl_node *node, uint64_t *aux, e_avl_comparator compare);

/* Takes a node out and zeroes its links. 1 on success, 0 when this node is not in this tree, also
 * when an equal one is. The node is found by its links and not by comparison, so that a key that
 * was changed in place does not hide it; compare is not called. O(log n). */
KELP_API uint32_t e_avl_delete(void *obj_pool, uint32_t space_id, e_avl_root *root,
                               e_avl_node *node, uint64_t *aux, e_avl_comparator compare);

/* The first and the last node in order, null in an empty tree. O(log n). */
KELP_API e_avl_node *e_avl_get_first(const e_avl_root *root);
KELP_API e_avl_node *e_avl_get_last(const e_avl_root *root);

/* The neighbour of a node in order, null at the end. A node that is in no tree stands as a position
 * and is placed by comparison: its neighbour is the nearest node after (before) it. A step from a
 * node of the tree calls no comparator and is O(1) amortised over a traversal. */
KELP_API e_avl_node *e_avl_get_next(const e_avl_root *root, const e_avl_node *node,
                                    e_avl_comparator compare);
KELP_API e_avl_node *e_avl_get_prev(const e_avl_root *root, const e_avl_node *node,
                                    e_avl_comparator compare);

/* Calls the walker on each node in order until one call gives a non-zero value; gives that value,
 * or 0 at the end. The walker may delete the node that it was given, and no other. */
KELP_API uint32_t e_avl_walk(const e_avl_root *root, e_avl_walker walker, void *context);

/* Register the trace modules "snap_avl" and "snap_gbt" of the tree libraries. Safe to repeat. */
KELP_API void snap_avl_trace_init(void);
KELP_API void snap_gbt_trace_init(void);

KELP_EXTERN_C_END

#endif
