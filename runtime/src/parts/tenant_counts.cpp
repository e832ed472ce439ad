// Counting by tenant and source.
#include "parts/tenant_counts.hpp"

#include <new>

namespace kelp {

namespace {

std::uint64_t hash_of_counted(const void *table) {
  return store::mix(reinterpret_cast<std::uintptr_t>(table));
}

std::uint64_t hash_of_counted(const void *table, std::uint16_t tenant) {
  return store::mix(hash_of_counted(table) ^ tenant);
}

}  // namespace

void TenantCounts::attach(store::Memory &memory, store::Directory &directory) {
  memory_ = &memory;
  directory_ = &directory;
}

TenantCounts::Entry *TenantCounts::find(const void *table, std::uint16_t tenant) const {
  return by_tenant().find<Entry>(hash_of_counted(table, tenant), [&](const Entry &entry) {
    return entry.table == table && entry.tenant == tenant;
  });
}

TenantCounts::Entry *TenantCounts::provide(const void *table, std::uint16_t tenant) {
  if (Entry *known = find(table, tenant)) return known;
  auto *entry = static_cast<Entry *>(memory_->take(sizeof(Entry)));
  if (entry == nullptr) throw std::bad_alloc();
  *entry = {};
  entry->table = table;
  entry->tenant = tenant;
  try {
    by_tenant().insert(&entry->by_tenant, hash_of_counted(table, tenant));
    by_table().insert(&entry->by_table, hash_of_counted(table));
  } catch (...) {
    by_tenant().remove(&entry->by_tenant);
    memory_->give_back(entry);
    throw;
  }
  return entry;
}

void TenantCounts::expect(const kelp_table *table, std::uint16_t tenant) {
  const std::lock_guard lock(mutex_);
  provide(table, tenant);
}

void TenantCounts::add(const kelp_table *table, std::uint16_t tenant, std::uint8_t src) {
  const std::lock_guard lock(mutex_);
  Entry *entry = provide(table, tenant);
  memory_->set(entry->counts[src], entry->counts[src] + 1);
}

void TenantCounts::subtract(const kelp_table *table, std::uint16_t tenant, std::uint8_t src) {
  const std::lock_guard lock(mutex_);
  Entry *entry = find(table, tenant);
  if (entry == nullptr || entry->counts[src] == 0) return;
  memory_->set(entry->counts[src], entry->counts[src] - 1);
}

std::uint32_t TenantCounts::get(const kelp_table *table, std::uint16_t tenant,
                                const std::uint8_t *src) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find(table, tenant);
  if (entry == nullptr) return 0;
  if (src != nullptr) return entry->counts[*src];
  std::uint32_t sum = 0;
  for (const std::uint32_t count : entry->counts) sum += count;
  return sum;
}

void TenantCounts::forget(const void *table) {
  const std::lock_guard lock(mutex_);
  const auto of_table = [&](const Entry &entry) { return entry.table == table; };
  while (Entry *entry =
             by_table().find<Entry, offsetof(Entry, by_table)>(hash_of_counted(table), of_table)) {
    by_tenant().remove(&entry->by_tenant);
    by_table().remove(&entry->by_table);
    memory_->give_back(entry);
  }
}

}  // namespace kelp
