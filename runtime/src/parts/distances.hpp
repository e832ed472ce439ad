// Where the state bytes of embedded objects lie: a distance for each, by the object's address.
//
// They are kept beside the objects because a whole-object copy would overwrite anything inside
// them. Each is entered a second time by its 4 KiB page, so that those within a freed block are
// found without looking at the others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>

#include "store/layout.hpp"
#include "store/memory.hpp"

namespace kelp {

class Distances {
 public:
  void attach(store::Memory &memory, store::Directory &directory);

  // Throws bad_alloc.
  void set(const void *object, std::uint32_t distance);

  // 0 when none is known.
  std::uint32_t get(const void *object) const;

  void drop(const void *object);
  void drop_range(const void *start, std::size_t length);

  bool empty() const { return __atomic_load_n(&directory_->distance_count, __ATOMIC_RELAXED) == 0; }

  // For the time of a fork, when nobody else may be inside.
  std::mutex &mutex() { return mutex_; }

 private:
  // Lies in the database's memory.
  struct Entry {
    store::IndexNode by_object;
    store::IndexNode by_page;
    std::uintptr_t object;
    std::uint64_t distance;
  };

  static constexpr std::uintptr_t kPageBytes = 4096;

  store::Index by_object() const { return {*memory_, directory_->distances}; }
  store::Index by_page() const { return {*memory_, directory_->distances_by_page}; }
  Entry *find(std::uintptr_t object) const;
  void remove(Entry *entry);
  void change_count(std::uint64_t by);

  mutable std::mutex mutex_;
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
};

}  // namespace kelp
