// The allocator of a store: blocks out of 64 KiB spans of equal slots, and runs of spans for large
// blocks. Everything that it knows stands in the store itself, and each change is saved in the
// journal first, unless what changes was made by the running transaction: a rollback forgets that
// as a whole.
//
// Used by the holder of the store's write lock alone; finding blocks needs a read lock.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "store/layout.hpp"

namespace kelp::store {

// What the heap asks of the store that it lies in.
class Ground {
 public:
  // Saves bytes about to change; what cannot be saved makes the store turn to private memory.
  virtual void save(const void *address, std::size_t length) = 0;
  // Bytes that belong to the transaction without being saved, since it made them.
  virtual void mark(const void *address, std::size_t length) = 0;
  // A block of objects that was there before the transaction changes, or goes.
  virtual void note_change(const void *block, bool goes) = 0;
  // Has the file back that many spans; false with the reason kept.
  virtual bool back(std::uint64_t spans) = 0;
  // Has the file back these spans again, if they were given back to the disk; false with the reason
  // kept.
  virtual bool back_again(std::uint64_t first, std::uint64_t spans) = 0;
  // Has spans that the file was grown by, and that nobody was given yet, in memory.
  virtual void provide_pages(std::uint64_t first, std::uint64_t spans) = 0;

 protected:
  ~Ground() = default;
};

struct Block {
  std::byte *start = nullptr;
  std::size_t asked = 0;
  std::size_t used = 0;
  Span *span = nullptr;
  Slot *slot = nullptr;  // null for a large block
  std::uint8_t state() const { return slot != nullptr ? slot->state : span->state; }
};

class Heap {
 public:
  // memory is where the heap lies; most is how many spans there can be.
  void attach(Ground *ground, Head *head, std::byte *memory, std::uint64_t most) {
    ground_ = ground;
    head_ = head;
    memory_ = memory;
    most_ = most;
  }

  // A transaction of that stamp begins. others: whether another process may have changed the heap
  // since the last.
  void begin(std::uint32_t stamp, bool others) {
    stamp_ = stamp;
    grown_from_ = head_->spans;
    if (others) forget_fresh();
  }
  // What was grown may have gone back to the file's end.
  void forget_fresh() { fresh_ = fresh_end_ = 0; }

  static constexpr std::size_t kLargestBlock = (kSegmentSpans - 1) * kSpanBytes;

  // Null without room. owner is kRuntimes or 0.
  void *allocate(std::size_t size, std::uint8_t owner);

  // The live or dead block that holds the address; false when there is none.
  bool find(const void *address, Block *block) const;

  // Gives back a block that find has shown as live.
  void release(const Block &block);

  // Saves the block that holds the address, once in a transaction. Gives memory around the address
  // that the transaction needs no more saved: the block, all of a span that it divided itself, or
  // all that it has grown the heap by.
  std::span<const std::byte> save_block(const void *address);
  // Saves these bytes; small blocks are saved as a whole.
  void save_range(const void *address, std::size_t length);

  // Spans without a live block become free runs, and the file needs none behind the last other one.
  void trim();
  // Calls visit with the first and the number of the spans of each free run.
  template <typename Visit>
  void each_free_run(const Visit &visit) const {
    for (const std::uint32_t first : head_->bins) {
      for (std::uint32_t at = first; at != kNoSpan; at = span(at)->next) visit(at, span(at)->run);
    }
  }

  // After the stamp has come round: no block may look as if it were saved.
  void forget_stamps();

 private:
  std::byte *span_start(std::uint64_t number) const { return memory_ + number * kSpanBytes; }
  Span *span(std::uint64_t number) const {
    std::byte *table = span_start(number / kSegmentSpans * kSegmentSpans);
    return reinterpret_cast<Span *>(table) + number % kSegmentSpans;
  }
  // Large for what lies before the heap.
  std::uint64_t span_of(const void *address) const {
    return (reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(memory_)) /
           kSpanBytes;
  }
  std::uint64_t number_of(const Span *span) const;
  Slot *slots_of(const Span *span) const {
    return reinterpret_cast<Slot *>(span_start(number_of(span)));
  }
  bool is_new(const Span *span) const { return span->made == stamp_; }
  std::span<const std::byte> new_memory(std::uint64_t number) const;
  void use_fresh(std::uint64_t first, std::uint32_t spans);
  void save_span(Span *span);
  void save_slot(const Span *span, Slot *slot);
  void note_change(const Block &block, bool goes) const {
    if ((block.state() & kRuntimes) == 0) ground_->note_change(block.start, goes);
  }
  void *allocate_slot(std::size_t size, std::uint8_t owner);
  void *allocate_large(std::size_t size, std::uint8_t owner);
  Span *span_with_room(std::size_t class_index);
  Span *take_run(std::uint32_t spans);
  void release_run(std::uint64_t first, std::uint32_t spans);
  void mark_free(std::uint64_t first, std::uint32_t spans);
  bool grow(std::uint32_t spans);
  void link(std::uint32_t &list, Span *span);
  void unlink(std::uint32_t &list, Span *span);
  void count(std::size_t asked, std::size_t used, std::uint8_t owner, bool in);

  Ground *ground_ = nullptr;
  Head *head_ = nullptr;
  std::byte *memory_ = nullptr;
  std::uint64_t most_ = 0;
  std::uint32_t stamp_ = 0;       // of the running transaction
  std::uint64_t grown_from_ = 0;  // spans from here on came with the running transaction
  // Of the run that this process grew the heap by last: what was not given out, nor provided with
  // pages. A free run is given out from its front.
  std::uint64_t fresh_ = 0;
  std::uint64_t fresh_end_ = 0;
};

inline bool Heap::find(const void *address, Block *block) const {
  std::uint64_t number = span_of(address);
  if (number >= head_->spans) return false;
  Span *found = span(number);
  if (found->kind == SpanKind::slots && found->slot_bytes != 0) [[likely]] {
    const auto place =
        static_cast<std::uint32_t>(static_cast<const std::byte *>(address) - span_start(number));
    if (place < found->slots_offset) return false;
    const std::uint32_t slot = (place - found->slots_offset) / found->slot_bytes;
    if (slot >= found->fresh) return false;
    block->span = found;
    block->start = span_start(number) + found->slots_offset + std::size_t{slot} * found->slot_bytes;
    block->slot = reinterpret_cast<Slot *>(span_start(number)) + slot;
    block->asked = block->slot->asked;
    block->used = found->slot_bytes;
    return true;
  }
  if (found->kind == SpanKind::large_rest) {
    if (found->run > number) return false;
    number -= found->run;
    found = span(number);
  }
  if (found->kind != SpanKind::large) return false;
  block->span = found;
  block->start = span_start(number);
  block->asked = found->asked;
  block->used = std::size_t{found->run} * kSpanBytes;
  block->slot = nullptr;
  return true;
}

}  // namespace kelp::store
