// Entering, finding and taking out tables.
#include "parts/toc.hpp"

#include <cstring>
#include <mutex>
#include <new>

namespace kelp {

namespace {

constexpr std::size_t kLuidBytes = 16;

// Ids of one type count up.
std::uint64_t hash_of_key(const TableOfContents::Key &key) {
  std::uint64_t halves[2];
  std::memcpy(halves, key.luid, sizeof halves);
  const std::uint64_t of_type = mix(halves[0] ^ mix(halves[1]));
  return key.by_name ? mix(of_type ^ hash_of(key.path.data(), key.path.size()))
                     : hash_of_number(of_type, key.id);
}

}  // namespace

// Lies in the database's memory, with the path behind it. Found by its table's address as long as
// there is one, by its key until it is removed.
struct TableOfContents::Entry {
  store::IndexNode by_key;
  store::IndexNode by_address;
  kelp_table *table;
  std::uint64_t id;
  std::uint8_t luid[kLuidBytes];
  std::uint32_t by_name;
  std::uint32_t removed;
  std::uint64_t path_length;

  char *path() { return reinterpret_cast<char *>(this + 1); }
  bool stands_under(const Key &key) {
    if (std::memcmp(luid, key.luid, kLuidBytes) != 0 || (by_name != 0) != key.by_name) return false;
    return key.by_name ? std::string_view(path(), path_length) == key.path : id == key.id;
  }
};

void TableOfContents::attach(store::Memory &memory, store::Directory &directory) {
  memory_ = &memory;
  directory_ = &directory;
}

TableOfContents::Entry *TableOfContents::find_entry(const Key &key) const {
  return by_key().find<Entry>(hash_of_key(key),
                              [&](Entry &entry) { return entry.stands_under(key); });
}

TableOfContents::Entry *TableOfContents::find_table(const kelp_table *table) const {
  return by_address().find<Entry, offsetof(Entry, by_address)>(
      hash_of_address(table), [&](const Entry &entry) { return entry.table == table; });
}

kelp_table *TableOfContents::find(const Key &key) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find_entry(key);
  return entry == nullptr ? nullptr : entry->table;
}

TableOfContents::Entry *TableOfContents::make_entry(kelp_table *table, std::size_t path_length) {
  auto *made = static_cast<Entry *>(memory_->take(sizeof(Entry) + path_length));
  if (made == nullptr) throw std::bad_alloc();
  *made = {};
  made->table = table;
  made->path_length = path_length;
  try {
    by_address().insert(&made->by_address, hash_of_address(table));
  } catch (...) {
    memory_->give_back(made);
    throw;
  }
  return made;
}

void TableOfContents::drop_entry(Entry *entry) {
  if (entry->removed == 0) by_key().remove(&entry->by_key);
  by_address().remove(&entry->by_address);
  memory_->give_back(entry);
}

bool TableOfContents::insert(const Key &key, kelp_table *table) {
  const std::lock_guard lock(mutex_);
  if (const Entry *known = find_entry(key)) return known->table == table;
  const std::size_t path_length = key.by_name ? key.path.size() : 0;
  Entry *entry = find_table(table);
  if (entry == nullptr || entry->path_length != path_length) {
    Entry *made = make_entry(table, path_length);
    if (entry != nullptr) drop_entry(entry);
    entry = made;
  } else if (entry->removed == 0) {
    by_key().remove(&entry->by_key);
  }
  memory_->touch(entry, sizeof *entry + path_length);
  entry->id = key.id;
  std::memcpy(entry->luid, key.luid, kLuidBytes);
  entry->by_name = key.by_name ? 1 : 0;
  std::memcpy(entry->path(), key.path.data(), path_length);
  try {
    by_key().insert(&entry->by_key, hash_of_key(key));
  } catch (...) {
    entry->removed = 1;
    drop_entry(entry);
    throw;
  }
  entry->removed = 0;
  return true;
}

TableOfContents::Place TableOfContents::remove(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  Entry *entry = find_table(table);
  if (entry == nullptr) return Place::absent;
  if (entry->removed != 0) return Place::removed;
  by_key().remove(&entry->by_key);
  memory_->set(entry->removed, std::uint32_t{1});
  return Place::entered;
}

TableOfContents::Place TableOfContents::place(const kelp_table *table) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find_table(table);
  if (entry == nullptr) return Place::absent;
  return entry->removed != 0 ? Place::removed : Place::entered;
}

bool TableOfContents::forget(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  Entry *entry = find_table(table);
  if (entry == nullptr) return false;
  drop_entry(entry);
  return true;
}

}  // namespace kelp
