// The table of contents of a database: its tables by the LUID of their type and their name or id.
//
// A table that was taken out stays known as removed until its memory goes, so that a free that had
// to wait can be repeated and the collector finds what it has to finish.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kelp/table.h"

namespace kelp {

class TableOfContents {
 public:
  enum class Place { absent, entered, removed };

  struct Key {
    const std::uint8_t *luid;  // 16 bytes
    bool by_name;
    std::string_view path;
    std::uint64_t id;
  };

  kelp_table *find(const Key &key) const;

  // False when another table stands under the key. Throws bad_alloc.
  bool insert(const Key &key, kelp_table *table, bool dynamic);

  // Where the table stood before; it is removed afterwards unless it was absent.
  Place remove(const kelp_table *table);

  Place place(const kelp_table *table) const;

  // The memory of the table has gone.
  void forget(const kelp_table *table);

 private:
  struct Entry {
    kelp_table *table;
    bool dynamic;
  };
  struct Known {
    std::string key;
    bool removed;
  };

  static std::string text_of(const Key &key);

  mutable std::mutex mutex_;
  std::unordered_map<std::string, Entry> entries_;
  std::unordered_map<const kelp_table *, Known> known_;
};

}  // namespace kelp
