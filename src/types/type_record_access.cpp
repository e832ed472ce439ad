#include "types/type_record_access.hpp"

#include "module/failure.hpp"

namespace harbor::type_record_access {

void require_record(const kelp_type_record *record, const Site &site) {
  if (record == nullptr || record->magic != KELP_TYPE_MAGIC) {
    die(*site.source, site.tinfo_corrupted);
  }
}

// A negative variant, which the limit lets pass and an image can bring in, counts at the first
// entry: there is none below it.
kelp_variant_entry &entry_of(const kelp_type_record *record, std::int32_t variant,
                             std::uint8_t variants, const Site &site) {
  const kelp_variant_info *varinfo = record->varinfo;
  if (varinfo == nullptr) die(*site.source, site.varinfo_null);
  if (varinfo->n_variants < variant) {
    trace(*site.source, Level::information, site.variant_above, static_cast<std::uint32_t>(variant),
          static_cast<std::uint32_t>(varinfo->n_variants));
  }
  const std::int8_t index = capped_variant(variant, variants);
  return varinfo->entries[index < 0 ? 0 : index];
}

void add_one(const kelp_type_record *record, std::uint64_t &counter) {
  kelp::quick::add_to_counter(record, &counter);
}

void announce_and_add_one(kelp_handle *handle, std::uint32_t space_id,
                          const kelp_type_record *record, std::uint64_t &counter) {
  kelp::quick::count(handle, space_id, record, &counter);
}

bool may_ask(std::string_view type, kelp_handle *handle, const void *object,
             std::uint32_t error_present, std::uint32_t object_null, std::uint32_t *err) {
  if (*err != 0) {
    trace(type_source, Level::error, error_present);
    return false;
  }
  if (object == nullptr) {
    trace(type_source, Level::error, object_null);
    fail(handle, KELP_ERR_INVALID, err, About(type), "found a null object, expected one");
    return false;
  }
  return true;
}

}  // namespace harbor::type_record_access
