#include "tables/record.hpp"

#include <kelp/core.h>
#include <kelp/database.h>

#include <cstring>

#include "module/failure.hpp"

namespace harbor::record {

using type_record_access::announce_and_add_one;
using type_record_access::record_for;

// Required: a create runs also when the error word holds a code, and clears it. The null record
// that stands in under a _cr create is neither filled nor counted, and the failure stays.
void *create(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
             std::uint32_t src, std::uint32_t *err) {
  register_trace(handle);
  void *memory = handle->obj_alloc(handle->obj_pool, space_id, facts.record_size);
  if (memory == nullptr) {
    if (handle->cr_create == 0) return nullptr;
    if (handle->cr_err == 0) {
      kelp_store_err(handle, KELP_ERR_NO_MEMORY);
      name_failure(handle, About(facts.name));
    }
    return facts.null_record;
  }
  std::memset(memory, 0, facts.record_size);
  kelp_record *record = record_of(memory);
  announce(handle, space_id, &record->header.tinfo, sizeof record->header.tinfo);
  const kelp_type_record *type = record->header.tinfo =
      record_for(handle, space_id, facts.record_type);
  kelp_variant_entry &entry = only_entry(
      type, count_site(facts, TableForm::create_varinfo_null, TableForm::create_variant_above));
  announce_and_add_one(handle, space_id, type, entry.create_count);
  *err = 0;
  record->ref_word = 1;
  record->src = static_cast<std::uint8_t>(src);
  mt_get_tenant_id(&record->tenant_id);
  return record;
}

void *create_cr(const TableFacts &facts, kelp_handle *handle, std::uint32_t with_objects) {
  handle->cr_create = 1;
  void *record = create(facts, handle, handle->cr_space_id, KELP_SRC_DEFAULT, &handle->cr_err);
  if (with_objects != 0 && record != facts.null_record) {
    for (std::uint32_t at = 0; at < facts.object_count; ++at) {
      store(handle, handle->cr_space_id, object_slot(record, at),
            facts.objects[at].create(handle, handle->cr_space_id));
    }
  }
  handle->cr_create = 0;
  return record;
}

std::uint32_t add_ref(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                      void *object, std::uint32_t *err) {
  if (object == nullptr) {
    fail(handle, KELP_ERR_NOT_FOUND, err, About(facts.name), "found a null record, expected one");
    return 0;
  }
  kelp_record *record = record_of(object);
  if (record == facts.null_record) return 0;
  const std::uint32_t count = record->ref_word & reference_mask;
  if (count == reference_mask) {
    bassert("((1 << 24) - 1) != __ref_cnt",
            "infra/kelp/_gen_kelp_noarch/ospf_harbor_oper/src/ospf_harbor_oper_table", __LINE__);
  }
  store(handle, space_id, &record->ref_word, (count + 1) & reference_mask);
  return count;
}

void *pkey_create(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id) {
  return facts.objects[0].create(handle, space_id);
}

void pkey_destroy(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                  void *pkey) {
  facts.objects[0].destroy(handle, space_id, pkey);
}

}  // namespace harbor::record
