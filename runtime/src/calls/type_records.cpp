// The runtime's side of registering type records: copies, their variant info, and what libraries
// keep while these are the same.
#include <algorithm>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "database/hooks.hpp"
#include "kelp/quick_kept.hpp"
#include "parts/kinship.hpp"

namespace kelp {

namespace {

// A reader of a store, and who has no lock, cannot enter a record.
bool may_register(const kelp_handle *handle) {
  return handle->state->database->store == nullptr || kelplib_database_is_write_locked(handle) != 0;
}

bool has_fewer_variants(const kelp_type_record_copy *copy, const kelp_type_record *record) {
  return record->varinfo != nullptr && copy->record.varinfo != nullptr &&
         copy->record.varinfo->n_variants < record->varinfo->n_variants;
}

}  // namespace

}  // namespace kelp

extern "C" kelp_type_record *kelp_type_info_ptr_get(kelp_handle *handle, uint32_t space_id,
                                                    kelp_type_record *static_record,
                                                    kelp_typeinfo_initializer initialize) {
  if (handle == nullptr || static_record == nullptr || handle->shared_tinfo == 0) {
    return static_record;
  }
  kelp_database &database = *handle->state->database;
  kelp::TypeTable &types = database.types;
  kelp_type_record_copy *copy = nullptr;
  uint32_t code = 0;
  // A table that is refused may be referred to.
  const char *refusal =
      kelp::is_structure(*static_record) ? database.editions.refusal(static_record->md5) : nullptr;
  const bool done = kelp::without_exceptions([&] {
    const auto look = [&] {
      if (refusal != nullptr) {
        code = KELP_ERR_INVALID;
        return true;
      }
      copy = types.find(static_record);
      const bool stale = database.store != nullptr && copy != nullptr &&
                         kelp::has_fewer_variants(copy, static_record);
      return copy != nullptr && !stale;
    };
    if (look() || initialize == nullptr || !kelp::may_register(handle)) return;
    // One thread enters a copy, the others find it.
    const std::lock_guard lock(database.registering);
    if (look()) return;
    initialize(handle, space_id, &code);
    copy = types.find(static_record);
  });
  if (copy != nullptr) return &copy->record;
  if (!done) code = KELP_ERR_NO_MEMORY;
  if (database.store != nullptr && kelplib_database_is_write_locked(handle) != 0) {
    // An object would take the address of a record of this process into the file.
    database.store->refuse(code == 0 ? KELP_ERR_NOT_FOUND : static_cast<int32_t>(code),
                           refusal != nullptr ? refusal : "a type record could not be entered");
  }
  kelp_store_err(handle, code == 0 ? static_cast<uint32_t>(KELP_ERR_NOT_FOUND) : code);
  kelp_describe_err(handle, static_record->type_name, refusal);
  return static_record;
}

extern "C" void kelp_update_variant_info(kelp_handle *handle, uint32_t space_id,
                                         kelp_type_record_copy *copy,
                                         const kelp_type_record *static_record, uint32_t is_new) {
  (void)space_id;
  if (handle == nullptr || copy == nullptr || static_record == nullptr ||
      static_record->varinfo == nullptr) {
    return;
  }
  kelp::store::Store *store = handle->state->database->store.get();
  const kelp_variant_info &wanted = *static_record->varinfo;
  const std::size_t count =
      static_cast<std::size_t>(std::max<int8_t>(wanted.n_variants, int8_t{0}));
  kelp_variant_info *kept = is_new != 0 ? nullptr : copy->record.varinfo;
  // The copy starts with the static record's own variant info, which is not the copy's to change.
  if (kept == static_record->varinfo) kept = nullptr;
  // An older edition has nothing to tell of the type.
  if (store != nullptr && kept != nullptr && kept->n_variants > wanted.n_variants) return;
  if (store != nullptr && is_new != 0) copy->runtime_word_a = kelp::room_of(*static_record);
  handle->state->database->types.note_change();

  if (kept == nullptr || kept->n_variants < wanted.n_variants) {
    auto *info = static_cast<kelp_variant_info *>(kelp::take_type_memory(
        *handle->state->database, sizeof(kelp_variant_info) + count * sizeof(kelp_variant_entry)));
    if (info == nullptr) {
      if (store != nullptr) store->refuse(KELP_ERR_NO_MEMORY, "no room for a type's variants");
      kelp_store_err(handle, KELP_ERR_NO_MEMORY);
      return;
    }
    auto *entries = reinterpret_cast<kelp_variant_entry *>(info + 1);
    info->n_variants = wanted.n_variants;
    info->entries = entries;
    for (std::size_t i = 0; i < count; ++i) {
      const bool has_counts = kept != nullptr && i < static_cast<std::size_t>(kept->n_variants);
      entries[i] = has_counts ? kept->entries[i] : kelp_variant_entry{};
    }
    // Objects may still be counted in the old entries, so these stay until the database closes.
    if (store != nullptr) store->touch_types(&copy->record.varinfo, sizeof copy->record.varinfo);
    copy->record.varinfo = info;
    kept = info;
  }
  if (store != nullptr) store->touch_types(kept->entries, count * sizeof(kelp_variant_entry));
  for (std::size_t i = 0; i < count; ++i) {
    kept->entries[i].variant_id = wanted.entries[i].variant_id;
    kept->entries[i].used_length = wanted.entries[i].used_length;
    kept->entries[i].alloc_slop = wanted.entries[i].alloc_slop;
  }
}

extern "C" void **kelp_quick_kept(kelp_handle *handle, const void *owner) {
  if (kelp::quick::of(handle) == nullptr || handle->db_lock_state == 0) return nullptr;
  kelp_handle_state &state = *handle->state;
  if (state.quick.store_pool == nullptr || !kelp::has_own_hooks(state)) return nullptr;
  const kelp_database &database = *state.database;
  void **place = nullptr;
  kelp::without_exceptions(
      [&] { place = state.kept.place(owner, database.types.version(), database.editions.seen()); });
  return place;
}
