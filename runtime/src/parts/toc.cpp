// Entering, finding and taking out tables.
#include "parts/toc.hpp"

#include <cstring>

namespace kelp {

namespace {

constexpr std::size_t kLuidLength = 16;

}  // namespace

TableOfContents::Id TableOfContents::id_of(const Key &key) {
  Id id;
  std::memcpy(id.luid.data(), key.luid, kLuidLength);
  id.id = key.id;
  return id;
}

std::string TableOfContents::name_of(const Key &key) {
  std::string name(reinterpret_cast<const char *>(key.luid), kLuidLength);
  name += key.path;
  return name;
}

std::size_t TableOfContents::IdHash::operator()(const Id &id) const {
  std::uint64_t luid;
  std::memcpy(&luid, id.luid.data(), sizeof luid);
  return static_cast<std::size_t>(luid ^ id.id * UINT64_C(0x9E3779B97F4A7C15));
}

kelp_table *TableOfContents::find(const Key &key) const {
  const std::lock_guard lock(mutex_);
  const auto table_in = [](const auto &entries, const auto &wanted) -> kelp_table * {
    const auto found = entries.find(wanted);
    return found == entries.end() ? nullptr : found->second;
  };
  return key.by_name ? table_in(by_name_, name_of(key)) : table_in(by_id_, id_of(key));
}

bool TableOfContents::insert(const Key &key, kelp_table *table) {
  const std::lock_guard lock(mutex_);
  const auto insert_into = [&](auto &entries, const auto &wanted, Known known) {
    const auto [entry, fresh] = entries.try_emplace(wanted, table);
    if (!fresh) return entry->second == table;
    try {
      known_[table] = std::move(known);
    } catch (...) {
      entries.erase(entry);
      throw;
    }
    return true;
  };
  if (key.by_name) {
    const std::string name = name_of(key);
    return insert_into(by_name_, name, Known{true, {}, name, false});
  }
  const Id id = id_of(key);
  return insert_into(by_id_, id, Known{false, id, {}, false});
}

void TableOfContents::erase_entry(const Known &known) {
  if (known.by_name) {
    by_name_.erase(known.name);
  } else {
    by_id_.erase(known.id);
  }
}

TableOfContents::Place TableOfContents::remove(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  const auto known = known_.find(table);
  if (known == known_.end()) return Place::absent;
  if (known->second.removed) return Place::removed;
  erase_entry(known->second);
  known->second.removed = true;
  return Place::entered;
}

TableOfContents::Place TableOfContents::place(const kelp_table *table) const {
  const std::lock_guard lock(mutex_);
  const auto known = known_.find(table);
  if (known == known_.end()) return Place::absent;
  return known->second.removed ? Place::removed : Place::entered;
}

bool TableOfContents::forget(const kelp_table *table) {
  const std::lock_guard lock(mutex_);
  const auto known = known_.find(table);
  if (known == known_.end()) return false;
  if (!known->second.removed) erase_entry(known->second);
  known_.erase(known);
  return true;
}

}  // namespace kelp
