// A database's own copies of type records, found by the text of their md5 or by the static record
// that they were made from. The copies lie in the database's memory and go with it.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <unordered_map>

#include "kelp/object.h"
#include "store/layout.hpp"
#include "store/memory.hpp"

namespace kelp {

class TypeTable {
 public:
  void attach(store::Memory &memory, store::Directory &directory);

  // Enters a copy; one entered under the same key before is replaced. Throws bad_alloc.
  void insert(const char *key, kelp_type_record_copy *copy);

  // The copy under that key; else that of another edition of the type which a module of this
  // process has under it.
  kelp_type_record_copy *find(const char *key) const;
  kelp_type_record_copy *find_exactly(const char *key) const;

  // As find by the record's md5_text, remembered by the record's address. Throws bad_alloc.
  kelp_type_record_copy *find(const kelp_type_record *record);

  // What was remembered may be there no more.
  void forget_remembered();

  // Rises when a copy was entered or may be gone, or has got other variants.
  std::uint64_t version() const { return version_.load(std::memory_order_relaxed); }
  void note_change() { version_.fetch_add(1, std::memory_order_relaxed); }

  std::uint64_t count() const { return directory_->types.count; }

  // Calls visit with each copy.
  template <typename Visit>
  void each(Visit &&visit) const {
    const std::lock_guard lock(mutex_);
    copies().each<Entry>([&](Entry &entry) { visit(*entry.copy); });
  }

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  using Entry = store::TypeEntry;

  store::Index copies() const { return {*memory_, directory_->types}; }
  Entry *find_entry(const char *key) const;
  kelp_type_record_copy *find_edition(const char *key) const;

  mutable std::mutex mutex_;
  std::atomic<std::uint64_t> version_{0};
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
  struct Remembered {
    kelp_type_record_copy *copy;
    std::uint8_t md5[16];  // of the record; the copy may be of another edition
  };
  std::unordered_map<const kelp_type_record *, Remembered> by_record_;
};

}  // namespace kelp
