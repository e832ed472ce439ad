// Which memory a block comes from and goes back to.
#include "parts/object_memory.hpp"

#include "store/size_class.hpp"
#include "store/store.hpp"

namespace kelp {

void ObjectMemory::set_release_hook(Arena::ReleaseHook hook, void *context) {
  arena_.set_release_hook(hook, context);
  release_hook_ = hook;
  release_context_ = context;
}

bool ObjectMemory::is_in_store(const void *address) const {
  return store_ != nullptr && store_->holds(address);
}

void *ObjectMemory::allocate_in_store(std::size_t size) {
  const store::Statistics &counts = store_->head().statistics;
  const bool within = limit_ == 0 || (size <= limit_ && counts.used_bytes <= limit_ - size);
  void *block = within ? store_->heap().allocate(size, 0) : nullptr;
  if (block == nullptr) arena_.note_refusal(size);
  return block;
}

bool ObjectMemory::free(void *pointer) {
  if (!is_in_store(pointer)) return arena_.free(pointer);
  store::Block block;
  if (!store_->is_writing() || !store_->heap().find(pointer, &block) || block.start != pointer ||
      block.state() != store::kLive) {
    return false;
  }
  if (release_hook_ != nullptr) release_hook_(release_context_, pointer, block.asked, true);
  store_->heap().release(block);
  return true;
}

// A store knows every block that is freed.
BlockState ObjectMemory::watch(const void *address) {
  if (!is_in_store(address)) return arena_.watch(address);
  store::Block block;
  if (!store_->heap().find(address, &block)) return BlockState::dead;
  return (block.state() & store::kLive) != 0 ? BlockState::live : BlockState::dead;
}

bool ObjectMemory::holds(const void *address, std::size_t length) const {
  if (!is_in_store(address)) return arena_.holds(address, length);
  if (store_->in_types(address)) return true;
  store::Block block;
  if (!store_->heap().find(address, &block) || (block.state() & store::kLive) == 0) return false;
  const auto offset =
      static_cast<std::size_t>(static_cast<const std::byte *>(address) - block.start);
  return offset <= block.asked && length <= block.asked - offset;
}

void ObjectMemory::withhold(const void *address) {
  if (!is_in_store(address)) arena_.withhold(address);
}

ArenaStatistics ObjectMemory::statistics() const {
  ArenaStatistics found = arena_.statistics();
  if (store_ == nullptr) return found;
  const store::Head &head = store_->head();
  found.live_allocations = head.statistics.live_allocations;
  found.live_bytes = head.statistics.live_bytes;
  found.used_bytes = head.statistics.used_bytes;
  found.peak_used_bytes = head.statistics.peak_used_bytes;
  found.total_allocations = head.statistics.total_allocations;
  found.reserved_bytes = store::kHeapOffset + head.spans * store::kSpanBytes;
  found.limit_bytes = limit_;
  return found;
}

bool ObjectMemory::set_limit(std::size_t bytes) {
  if (store_ == nullptr) return arena_.set_limit(bytes);
  if (bytes != 0 && bytes < store_->head().statistics.used_bytes) return false;
  limit_ = bytes;
  return true;
}

ObjectMemory::Refusal ObjectMemory::last_refusal() const {
  Refusal refusal{arena_.last_refusal(), {}};
  if (store_ == nullptr) return refusal;
  refusal.used = store_->head().statistics.used_bytes;
  refusal.limit = limit_;
  refusal.reason = store_->failure().text;
  return refusal;
}

}  // namespace kelp
