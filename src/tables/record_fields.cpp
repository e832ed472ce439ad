#include "tables/record_fields.hpp"

#include <kelp/core.h>
#include <kelp/database.h>

#include "module/failure.hpp"

namespace harbor::record_fields {

namespace {

// Only an object that lives on its own may be placed in a record.
bool takes(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
           const void *object, TableForm refused) {
  const std::uint32_t code = kelplib_validate_object_flags(object, 1, 1);
  if (code == 0) return true;
  report_about(facts, object_index, refused);
  kelp_store_err(handle, code);
  name_failure(handle, About(facts.name));
  kelp_describe_err(handle, nullptr,
                    "set_field: found an object that lies in another or in a record, expected one "
                    "that lives on its own");
  return false;
}

// The null record takes nothing: it outlives every database.
void place(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
           std::uint32_t space_id, void *record, void *object) {
  if (record == facts.null_record) return;
  store(handle, space_id, object_slot(record, object_index), object);
  facts.objects[object_index].set_instance_embedded(handle, space_id, object);
}

// The calling thread's count in the table, of one source or, with null, of all.
std::uint32_t count_of_tenant(kelp_handle *handle, std::uint32_t space_id, const kelp_table *table,
                              std::uint16_t tenant, const std::uint8_t *src) {
  std::uint32_t count = 0;
  kelpdb_get_tenant_counter(handle, space_id, table, &count, tenant, src);
  return count;
}

}  // namespace

void *get(const TableFacts &, std::uint32_t object_index, kelp_handle *, std::uint32_t,
          void *record) {
  return *object_slot(record, object_index);
}

void *detach(const TableFacts &, std::uint32_t object_index, kelp_handle *handle,
             std::uint32_t space_id, void *record) {
  void **slot = object_slot(record, object_index);
  void *object = *slot;
  store(handle, space_id, slot, static_cast<void *>(nullptr));
  return object;
}

// Required: an object that the record held is overwritten and not destroyed.
void set(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
         std::uint32_t space_id, void *record, void *object) {
  if (!takes(facts, object_index, handle, object, TableForm::set_field_refused)) return;
  place(facts, object_index, handle, space_id, record, object);
}

void free_and_set(const TableFacts &facts, std::uint32_t object_index, kelp_handle *handle,
                  std::uint32_t space_id, void *record, void *object) {
  if (!takes(facts, object_index, handle, object, TableForm::free_and_set_field_refused)) return;
  void *old = *object_slot(record, object_index);
  if (old != nullptr) facts.objects[object_index].destroy(handle, space_id, old);
  place(facts, object_index, handle, space_id, record, object);
}

std::uint32_t count(const TableFacts &, kelp_handle *handle, std::uint32_t space_id,
                    const void *object) {
  if (object == nullptr) return 0;
  const auto *table = static_cast<const kelp_table *>(object);
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  if (tenant == 0) return table->record_count;
  return count_of_tenant(handle, space_id, table, tenant, nullptr);
}

// Required: without a tenant the table knows only how many shadow records it has.
std::uint32_t count_by_source(const TableFacts &, kelp_handle *handle, std::uint32_t space_id,
                              const void *object, std::uint8_t src) {
  if (object == nullptr) return 0;
  const auto *table = static_cast<const kelp_table *>(object);
  std::uint16_t tenant = 0;
  mt_get_tenant_id(&tenant);
  if (tenant != 0) return count_of_tenant(handle, space_id, table, tenant, &src);
  return src == KELP_SRC_SHADOW ? table->shadow_count : 0;
}

}  // namespace harbor::record_fields
