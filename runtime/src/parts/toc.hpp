// The table of contents of a database: its tables by the LUID of their type and their name or id.
//
// A table that was taken out stays known as removed until its memory goes, so that a free that had
// to wait can be repeated and the collector finds what it has to finish.
#pragma once

#include <array>
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
  bool insert(const Key &key, kelp_table *table);

  // Where the table stood before; it is removed afterwards unless it was absent.
  Place remove(const kelp_table *table);

  Place place(const kelp_table *table) const;

  // The memory of the table has gone. False when it was not known.
  bool forget(const kelp_table *table);

 private:
  using Luid = std::array<std::uint8_t, 16>;
  // What stands for a key in the maps: numbers for an id, so that a table without a name costs no
  // text, and the LUID with the path behind it for a name.
  struct Id {
    Luid luid;
    std::uint64_t id;
    bool operator==(const Id &) const = default;
  };
  struct IdHash {
    std::size_t operator()(const Id &id) const;
  };
  struct Known {
    bool by_name;
    Id id;
    std::string name;
    bool removed;
  };

  static Id id_of(const Key &key);
  static std::string name_of(const Key &key);
  void erase_entry(const Known &known);

  mutable std::mutex mutex_;
  std::unordered_map<Id, kelp_table *, IdHash> by_id_;
  std::unordered_map<std::string, kelp_table *> by_name_;
  std::unordered_map<const kelp_table *, Known> known_;
};

}  // namespace kelp
