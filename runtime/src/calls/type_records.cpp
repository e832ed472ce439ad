// The runtime's side of registering type records: copies, and their variant info.
#include <algorithm>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"

extern "C" kelp_type_record *kelp_type_info_ptr_get(kelp_handle *handle, uint32_t space_id,
                                                    kelp_type_record *static_record,
                                                    kelp_typeinfo_initializer initialize) {
  if (handle == nullptr || static_record == nullptr || handle->shared_tinfo == 0) {
    return static_record;
  }
  kelp::TypeTable &types = handle->state->database->types;
  kelp_type_record_copy *copy = nullptr;
  uint32_t code = 0;
  const bool done = kelp::without_exceptions([&] {
    copy = types.find(static_record);
    if (copy != nullptr || initialize == nullptr) return;
    initialize(handle, space_id, &code);
    copy = types.find(static_record);
  });
  if (copy != nullptr) return &copy->record;
  if (!done) code = KELP_ERR_NO_MEMORY;
  kelp_store_err(handle, code == 0 ? static_cast<uint32_t>(KELP_ERR_NOT_FOUND) : code);
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
  const kelp_variant_info &wanted = *static_record->varinfo;
  const std::size_t count =
      static_cast<std::size_t>(std::max<int8_t>(wanted.n_variants, int8_t{0}));
  kelp_variant_info *kept = is_new != 0 ? nullptr : copy->record.varinfo;
  // The copy starts with the static record's own variant info, which is not the copy's to change.
  if (kept == static_record->varinfo) kept = nullptr;

  if (kept == nullptr || kept->n_variants < wanted.n_variants) {
    kelp::Arena &memory = handle->state->database->system;
    auto *info = static_cast<kelp_variant_info *>(
        memory.allocate(sizeof(kelp_variant_info) + count * sizeof(kelp_variant_entry)));
    if (info == nullptr) {
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
    copy->record.varinfo = info;
    kept = info;
  }
  for (std::size_t i = 0; i < count; ++i) {
    kept->entries[i].variant_id = wanted.entries[i].variant_id;
    kept->entries[i].used_length = wanted.entries[i].used_length;
    kept->entries[i].alloc_slop = wanted.entries[i].alloc_slop;
  }
}
