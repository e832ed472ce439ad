// How many records of a table were counted for each tenant and source.
#pragma once

#include <cstdint>
#include <mutex>

#include "kelp/table.h"
#include "store/layout.hpp"
#include "store/memory.hpp"

namespace kelp {

class TenantCounts {
 public:
  void attach(store::Memory &memory, store::Directory &directory);

  // Makes sure that a record of the tenant can be counted. Throws bad_alloc.
  void expect(const kelp_table *table, std::uint16_t tenant);

  // A count of 0 stays 0. Throws bad_alloc when the first of a tenant is counted.
  void add(const kelp_table *table, std::uint16_t tenant, std::uint8_t src);
  void subtract(const kelp_table *table, std::uint16_t tenant, std::uint8_t src);

  // Of the source, or of all sources when src is null.
  std::uint32_t get(const kelp_table *table, std::uint16_t tenant, const std::uint8_t *src) const;

  // The memory of the table has gone.
  void forget(const void *table);

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  // Lies in the database's memory.
  struct Entry {
    store::IndexNode by_tenant;
    store::IndexNode by_table;
    const void *table;
    std::uint64_t tenant;
    std::uint32_t counts[256];
  };

  store::Index by_tenant() const { return {*memory_, directory_->tenants}; }
  store::Index by_table() const { return {*memory_, directory_->tenants_by_table}; }
  Entry *provide(const void *table, std::uint16_t tenant);
  Entry *find(const void *table, std::uint16_t tenant) const;

  mutable std::mutex mutex_;
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
};

}  // namespace kelp
