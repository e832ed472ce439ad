// Where the state bytes of embedded objects lie: a distance for each, by the object's address.
//
// They are kept beside the objects because a whole-object copy would overwrite anything inside
// them. Entries are held by 4 KiB page, so that those within a freed block are found without
// looking at the others.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace kelp {

class Distances {
 public:
  // Throws bad_alloc.
  void set(const void *object, std::uint32_t distance);

  // 0 when none is known.
  std::uint32_t get(const void *object) const;

  void drop(const void *object);
  void drop_range(const void *start, std::size_t length);

  bool empty() const { return count_.load(std::memory_order_relaxed) == 0; }

 private:
  struct Entry {
    std::uintptr_t object;
    std::uint32_t distance;
  };
  using Page = std::vector<Entry>;  // ordered by object

  static constexpr std::uintptr_t kPageBytes = 4096;

  void drop_in_page(std::unordered_map<std::uintptr_t, Page>::iterator page, std::uintptr_t first,
                    std::uintptr_t end);

  mutable std::mutex mutex_;
  std::unordered_map<std::uintptr_t, Page> pages_;
  std::atomic<std::size_t> count_ = 0;
};

}  // namespace kelp
