// The table of contents of a database: its tables by the LUID of their type and their name or id.
//
// A table that was taken out stays known as removed until its memory goes, so that a free that had
// to wait can be repeated and the collector finds what it has to finish.
#pragma once

#include <cstdint>
#include <string_view>

#include "kelp/table.h"
#include "parts/short_lock.hpp"
#include "store/layout.hpp"
#include "store/memory.hpp"

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

  void attach(store::Memory &memory, store::Directory &directory);

  kelp_table *find(const Key &key) const;

  // A table that stands elsewhere moves. False when another table stands under the key. Throws
  // bad_alloc; without memory for its entry a table stands where it stood.
  bool insert(const Key &key, kelp_table *table);

  // Where the table stood before; it is removed afterwards unless it was absent.
  Place remove(const kelp_table *table);

  Place place(const kelp_table *table) const;

  // The memory of the table has gone. False when it was not known.
  bool forget(const kelp_table *table);

  // For the time of a fork, when nobody else may be inside.
  ShortLock &mutex() { return mutex_; }

 private:
  struct Entry;
  store::Index by_key() const { return {*memory_, directory_->tables}; }
  store::Index by_address() const { return {*memory_, directory_->tables_by_address}; }
  Entry *find_entry(const Key &key) const;
  Entry *find_table(const kelp_table *table) const;
  // Found by its table from then on, not yet by a key. Throws bad_alloc.
  Entry *make_entry(kelp_table *table, std::size_t path_length);
  void drop_entry(Entry *entry);

  mutable ShortLock mutex_;
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
};

}  // namespace kelp
