// The type records as data: what the emitted records, the data symbols and the manifest are written
// from.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace emit {

struct Entry {
  std::uint32_t variant_id, used_length, alloc_slop;
};

struct Record {
  std::string symbol;  // without the leading underscore and the tail
  std::string type_name;
  std::string kind;
  std::string md5;
  std::string manifest_md5;
  std::uint32_t manifest_size;
  std::string schema;   // the schema constant that it belongs to
  std::string mapping;  // which variable maps the constant to the record
  std::vector<Entry> entries;
};

// In the order of the list that the library registers.
std::vector<Record> records();

}  // namespace emit
