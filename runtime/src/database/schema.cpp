// Comparing type records.
#include "database/schema.hpp"

#include <algorithm>

#include "base/failure.hpp"
#include "database/database.hpp"
#include "kelp/core.h"

namespace kelp {

namespace {

std::uint32_t object_bytes(const kelp_type_record &record) {
  const kelp_variant_info *info = record.varinfo;
  if (info == nullptr || info->n_variants < 1) return 0;
  return info->entries[0].used_length + info->entries[0].alloc_slop;
}

}  // namespace

bool are_laid_out_alike(const kelp_type_record &one, const kelp_type_record &other) {
  if (one.varinfo == nullptr || other.varinfo == nullptr) return one.varinfo == other.varinfo;
  if (object_bytes(one) != object_bytes(other)) return false;
  const int both = std::min(one.varinfo->n_variants, other.varinfo->n_variants);
  for (int i = 0; i < both; ++i) {
    if (one.varinfo->entries[i].used_length != other.varinfo->entries[i].used_length) return false;
  }
  return true;
}

std::int32_t check_schema(const kelp_database &database, kelp_error *error) {
  for (const kelp_module_node *module = kelp_module_tot_root.first; module != nullptr;
       module = module->next) {
    for (kelp_type_record *const *type = module->types; *type != nullptr; ++type) {
      const kelp_type_record_copy *copy = database.types.find((*type)->md5_text);
      if (copy == nullptr || are_laid_out_alike(copy->record, **type)) continue;
      return fail(error, KELP_ERR_INVALID,
                  "store '%s': type '%.63s' of module '%.63s': objects of %u bytes in %d variants "
                  "found, expected %u bytes in %d variants, laid out alike",
                  database.name.c_str(), (*type)->type_name, (*type)->module_name,
                  object_bytes(copy->record),
                  copy->record.varinfo == nullptr ? 0 : copy->record.varinfo->n_variants,
                  object_bytes(**type),
                  (*type)->varinfo == nullptr ? 0 : (*type)->varinfo->n_variants);
    }
  }
  return succeed(error);
}

}  // namespace kelp
