// A table of the schema, reached by its exported names, for the drivers of table messages: the
// calls that they make on the way to the one that is to fail.
#pragma once

#include <kelp/core.h>
#include <kelp/table.h>

#include <cstdint>
#include <string>
#include <utility>

#include "model/lists.hpp"

namespace messages {

// A table of the schema, by its exported names, in whatever store a driver makes.
class TableCase {
 public:
  // twin: what stands behind the name of a function that has a twin, "_unsafe" or nothing.
  explicit TableCase(const harbor::model::Table &table, std::string twin = {})
      : table_(table), twin_(std::move(twin)) {}

  std::string name() const { return "tbl_" + std::string(table_.name); }
  const harbor::model::Table &schema() const { return table_; }
  // The exported name of an operation, of its twin where that is asked for and there is one.
  std::string operation(const std::string &suffix) const;

  // Of a record: the key first where it is an object of its own.
  std::uint32_t object_count() const { return table_.key_structure == nullptr ? 1 : 2; }
  std::string object_type(std::uint32_t object) const;

  kelp_type_record &table_record() const;
  kelp_type_record &record_record() const;

  // Each passes an error word that starts at 0 and gives it back.
  std::uint32_t open(kelp_handle *handle, std::uint32_t read_only = 0) const;
  std::uint32_t open_by_id(kelp_handle *handle, std::uint32_t read_only = 0) const;
  std::uint32_t free(kelp_handle *handle, kelp_table *table) const;
  std::uint32_t request_free(kelp_handle *handle, kelp_table *table) const;
  std::uint32_t on_record(const char *suffix, kelp_handle *handle, kelp_table *table,
                          kelp_record *record) const;
  std::uint32_t destroy(kelp_handle *handle, kelp_record *record) const;

  // These must succeed.
  kelp_table *opened(kelp_handle *handle, const char *path = "rows") const;
  kelp_record *empty_record(kelp_handle *handle) const;
  kelp_record *record(kelp_handle *handle) const;  // with its objects
  void give(kelp_handle *handle, kelp_record *record, std::uint32_t object) const;

 private:
  const harbor::model::Table &table_;
  std::string twin_;
};

}  // namespace messages
