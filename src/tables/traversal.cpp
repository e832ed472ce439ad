#include "tables/traversal.hpp"

#include <kelp/core.h>
#include <kelp/database.h>

#include "module/failure.hpp"

namespace harbor::traversal {

namespace {

std::uint16_t caller_tenant() {
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  return tenant;
}

kelp_record *record_at(e_avl_node *node) {
  return node == nullptr ? nullptr : const_cast<kelp_record *>(&key_order::record_at(node));
}

// The record at the end from which a way leads through the whole table.
kelp_record *end_of(const kelp_table *table, Way way) {
  return record_at(way == Way::next ? e_avl_get_first(&table->avl_root)
                                    : e_avl_get_last(&table->avl_root));
}

kelp_record *beside(const TableFacts &facts, const kelp_table *table, const kelp_record *record,
                    Way way) {
  const auto get = way == Way::next ? e_avl_get_next : e_avl_get_prev;
  return record_at(get(&table->avl_root, &record->avl_node, facts.tree.compare));
}

bool fits(const kelp_record &record, const Filter &filter) {
  const auto wanted = static_cast<std::uint8_t>(filter.src);
  if (filter.filter_src != 0 && record.src != wanted) return false;
  if (wanted == KELP_SRC_ANY && record.src == KELP_SRC_SHADOW) return false;
  return filter.skip_pending == 0 || (record.rec_flags & REC_PENDING_DESTROY) == 0;
}

// A record about to be handed out. Required: a failure of the cache does not stop the step.
kelp_record *found(kelp_handle *handle, std::uint32_t space_id, kelp_table *table,
                   kelp_record *record, std::uint32_t *err) {
  if (record->src != KELP_SRC_SHADOW) kelprepl_add_to_cache(handle, space_id, table, record, err);
  return record;
}

// What the tree's walk is given.
struct Visit {
  RecordCallback callback;
  void *argument;
};

std::uint32_t walk_all(const TableFacts &facts, const kelp_table *table, RecordCallback callback,
                       void *argument) {
  Visit visit{callback, argument};
  return e_avl_walk(&table->avl_root, facts.tree.walk, &visit);
}

}  // namespace

void *step(const TableFacts &facts, Way way, kelp_handle *handle, std::uint32_t space_id,
           void *object, void *reference, const Filter &filter, std::uint32_t *err) {
  if (!begin(handle, err)) return nullptr;
  kelp_table *table = table_of(object);
  const kelp_record *from = record_of(reference);
  const std::uint16_t tenant = caller_tenant();
  kelp_record *record = beside(facts, table, from, way);
  for (; record != nullptr; record = beside(facts, table, record, way)) {
    if (record->tenant_id != tenant) return nullptr;
    if (filter.same_key != 0 && facts.compare_keys(*record, *from) != 0) return nullptr;
    if (fits(*record, filter)) return found(handle, space_id, table, record, err);
  }
  return nullptr;
}

// Passes over the tenants that lie between the table's end and the caller's.
void *start(const TableFacts &facts, Way way, kelp_handle *handle, std::uint32_t space_id,
            void *object, const Filter &filter, std::uint32_t *err) {
  if (!begin(handle, err)) return nullptr;
  kelp_table *table = table_of(object);
  const std::uint16_t tenant = caller_tenant();
  kelp_record *record = end_of(table, way);
  for (; record != nullptr; record = beside(facts, table, record, way)) {
    const bool reached =
        way == Way::next ? record->tenant_id >= tenant : record->tenant_id <= tenant;
    if (!reached || !fits(*record, filter)) continue;
    return record->tenant_id == tenant ? found(handle, space_id, table, record, err) : nullptr;
  }
  return nullptr;
}

// Required: neither filter nor tenant counts. A step from one tenant's last key to an equal key of
// the next tenant gives that tenant's record.
void *neighbour(const TableFacts &facts, Way way, kelp_handle *handle, std::uint32_t space_id,
                void *object, void *reference, std::uint32_t *err) {
  if (!begin(handle, err)) return nullptr;
  kelp_table *table = table_of(object);
  const kelp_record *from = record_of(reference);
  kelp_record *record = beside(facts, table, from, way);
  if (record == nullptr || facts.compare_keys(*record, *from) != 0) return nullptr;
  return found(handle, space_id, table, record, err);
}

// Shadows lie last among the sources of a key, so the search only goes forward.
void *shadow_of(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
                void *record, std::uint32_t *err) {
  while (record != nullptr && record_of(record)->src < KELP_SRC_SHADOW) {
    record = neighbour(facts, Way::next, handle, space_id, table, record, err);
  }
  return record;
}

void *get_cr(const TableFacts &facts, kelp_handle *handle, void *table, std::uint32_t get_op,
             void *record, std::uint8_t src, std::uint32_t get_flags) {
  enum : std::uint32_t { get_first, get_last, get_previous, get_next };
  constexpr std::uint32_t any_source = 1;
  constexpr std::uint32_t show_pending = 2;
  if (get_op > get_next) {
    report(facts, TableForm::invalid_get_flag, get_op);
    kelp_store_err(handle, KELP_ERR_INVALID);
    name_failure(handle, About(facts.name));
    kelp_describe_err(handle, nullptr, "get_cr: found a get_op above 3, expected 0 to 3");
    return nullptr;
  }
  const Way way = get_op == get_first || get_op == get_next ? Way::next : Way::previous;
  const Filter filter{.src = src == KELP_SRC_ANY ? std::uint8_t{KELP_SRC_DEFAULT} : src,
                      .filter_src = (get_flags & any_source) == 0,
                      .skip_pending = (get_flags & show_pending) == 0};
  if (get_op <= get_last) {
    return start(facts, way, handle, handle->cr_space_id, table, filter, &handle->cr_err);
  }
  return step(facts, way, handle, handle->cr_space_id, table, record, filter, &handle->cr_err);
}

void walk(const TableFacts &facts, void *table, RecordCallback callback, void *argument,
          const std::uint32_t *err) {
  if (*err == 0) walk_all(facts, table_of(table), callback, argument);
}

std::uint32_t walk_cr(const TableFacts &facts, kelp_handle *handle, void *table,
                      std::uint32_t key_index, RecordCallback callback, void *argument) {
  if (key_index != 0) {
    report(facts, TableForm::unknown_key, key_index);
    return 0;
  }
  return handle->cr_err != 0 ? 0 : walk_all(facts, table_of(table), callback, argument);
}

std::uint32_t visit(e_avl_node *node, void *context) {
  const auto *visit = static_cast<const Visit *>(context);
  return visit->callback(record_at(node), visit->argument);
}

}  // namespace harbor::traversal
