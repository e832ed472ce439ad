#include "messages/table_case.hpp"

#include "messages/setting.hpp"

namespace messages {

std::string TableCase::object_type(std::uint32_t object) const {
  const bool is_key = table_.key_structure != nullptr && object == 0;
  return std::string(is_key ? table_.key_structure->name : table_.record->name);
}

std::string TableCase::operation(const std::string &suffix) const {
  const std::string plain = name() + suffix;
  return harness::is_exported(plain + twin_) ? plain + twin_ : plain;
}

kelp_type_record &TableCase::table_record() const { return record_of(name() + "_table"); }
kelp_type_record &TableCase::record_record() const { return record_of(name() + "_table_record"); }

std::uint32_t TableCase::open(kelp_handle *handle, std::uint32_t read_only) const {
  std::uint32_t err = 0;
  call<kelp_table *>(operation("_table_open"), handle, space, "rows", read_only, &err);
  return err;
}
std::uint32_t TableCase::open_by_id(kelp_handle *handle, std::uint32_t read_only) const {
  std::uint32_t err = 0;
  call<kelp_table *>(operation("_table_open_by_id"), handle, space, std::uint64_t{3}, read_only,
                     &err);
  return err;
}
std::uint32_t TableCase::free(kelp_handle *handle, kelp_table *table) const {
  std::uint32_t err = 0;
  call<void>(operation("_table_free"), handle, space, table, &err);
  return err;
}
std::uint32_t TableCase::request_free(kelp_handle *handle, kelp_table *table) const {
  std::uint32_t err = 0;
  call<void>(operation("_request_table_free"), handle, space, table, &err);
  return err;
}
std::uint32_t TableCase::on_record(const char *suffix, kelp_handle *handle, kelp_table *table,
                                   kelp_record *record) const {
  std::uint32_t err = 0;
  call<void>(operation(suffix), handle, space, table, record, &err);
  return err;
}
std::uint32_t TableCase::destroy(kelp_handle *handle, kelp_record *record) const {
  std::uint32_t err = 0;
  call<void>(operation("_destroy_record"), handle, space, record, &err);
  return err;
}

kelp_table *TableCase::opened(kelp_handle *handle, const char *path) const {
  std::uint32_t err = 0;
  auto *table = call<kelp_table *>(operation("_table_open"), handle, space, path, 0u, &err);
  EXPECT_NE(table, nullptr) << name();
  return table;
}
kelp_record *TableCase::empty_record(kelp_handle *handle) const {
  std::uint32_t err = 0;
  auto *record = call<kelp_record *>(operation("_create_record"), handle, space, &err);
  EXPECT_NE(record, nullptr) << name();
  return record;
}
void TableCase::give(kelp_handle *handle, kelp_record *record, std::uint32_t object) const {
  const std::string type = object_type(object);
  call<void>(operation("_" + type + "_set_field"), handle, space, record, create(handle, type));
}
kelp_record *TableCase::record(kelp_handle *handle) const {
  kelp_record *made = empty_record(handle);
  for (std::uint32_t object = 0; object < object_count(); ++object) give(handle, made, object);
  return made;
}

}  // namespace messages
