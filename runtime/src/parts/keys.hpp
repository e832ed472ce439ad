// The pointers that modules keep in a database under texts.
//
// A module remembers where a block lies that it found under a key, and asks later whether that lies
// in the store. So what was ever seen here under two keys, or in two stores, is not confirmed
// again: after a rollback, or in another file at the same addresses, something else may lie there.
#pragma once

#include <cstdint>
#include <mutex>
#include <unordered_map>

#include "store/layout.hpp"
#include "store/memory.hpp"

namespace kelp {

class Keys {
 public:
  // identity tells stores apart.
  void attach(store::Memory &memory, store::Directory &directory,
              const std::uint8_t (&identity)[16]);

  // Null when there is none.
  void *find(const char *key) const;

  // Null takes the key out. Throws bad_alloc.
  void set(const char *key, void *pointer);

  // Whether what a module remembers of the pointer still holds: it never stood under a key, or
  // stands under the one key of this store that it was ever seen under.
  bool confirms(const void *pointer) const;

  // Calls visit with each pointer that stands under a key, once.
  template <typename Visit>
  void each_pointer(const Visit &visit) const {
    const std::lock_guard lock(mutex_);
    keys().each<Entry>([&](const Entry &entry) {
      if (is_first(entry)) visit(entry.pointer);
    });
  }

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  // Lies in the database's memory, with the key behind it.
  struct Entry {
    store::IndexNode node;
    void *pointer;
    std::uint64_t key_length;
    char *key() { return reinterpret_cast<char *>(this + 1); }
  };

  store::Index keys() const { return {*memory_, directory_->keys}; }
  bool is_first(const Entry &entry) const;
  Entry *find_entry(std::uint64_t hash, const char *key, std::size_t length) const;
  std::uint64_t place_of(std::uint64_t hash) const;
  void remember(const void *pointer, std::uint64_t hash) const;

  mutable std::mutex mutex_;
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
  std::uint64_t store_ = 0;
};

}  // namespace kelp
