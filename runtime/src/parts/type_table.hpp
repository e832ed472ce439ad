// A database's own copies of type records, found by the text of their md5 or by the static record
// that they were made from. The copies lie in the database's system memory and go with it.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

#include "kelp/object.h"

namespace kelp {

class TypeTable {
 public:
  // Enters a copy; one entered under the same key before is replaced. Throws bad_alloc.
  void insert(const char *key, kelp_type_record_copy *copy);

  kelp_type_record_copy *find(const char *key) const;

  // As find by the record's md5_text, remembered by the record's address.
  kelp_type_record_copy *find(const kelp_type_record *record);

 private:
  mutable std::mutex mutex_;
  std::unordered_map<std::string, kelp_type_record_copy *> copies_;
  std::unordered_map<const kelp_type_record *, kelp_type_record_copy *> by_record_;
};

}  // namespace kelp
