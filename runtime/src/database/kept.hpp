// What libraries keep under a handle of a store, for as long as the store's types are the same.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <unordered_map>

namespace kelp {

class Kept {
 public:
  Kept() = default;
  Kept(const Kept &) = delete;
  Kept &operator=(const Kept &) = delete;
  ~Kept() { clear(); }

  // The place of owner; what was kept for another state of the types is freed first. Throws
  // bad_alloc.
  void **place(const void *owner, std::uint64_t types, std::uint64_t editions) {
    if (types != types_ || editions != editions_) {
      clear();
      types_ = types;
      editions_ = editions;
    }
    return &blocks_[owner];
  }

 private:
  void clear() {
    for (const auto &[owner, block] : blocks_) std::free(block);
    blocks_.clear();
  }

  std::unordered_map<const void *, void *> blocks_;
  std::uint64_t types_ = 0;
  std::uint64_t editions_ = 0;
};

}  // namespace kelp
