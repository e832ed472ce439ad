// The arena's spans, slots and large blocks. A chunk lies at a multiple of its size, so the chunk
// of any address is one table lookup and the slot in it plain arithmetic. What every block goes
// through is inline here: calls were a third of it.
#include "parts/arena.hpp"

#include <sys/mman.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>

#include "parts/poison.hpp"
#include "store/size_class.hpp"

namespace kelp {

namespace {

// What a block is marked with: whether it is live, whether it is watched, and above these two bits
// what its slot has beyond what was asked for. 0 is free.
using Mark = std::uint16_t;
constexpr Mark kLive = 1;
constexpr Mark kWatched = 2;
constexpr unsigned kSpareAt = 2;
constexpr Mark mark_of(std::size_t spare) { return static_cast<Mark>(spare << kSpareAt | kLive); }
constexpr bool is_live(Mark mark) { return (mark & kLive) != 0; }

using store::kAlignment;
using store::kLargestSlot;
constexpr std::size_t kLargeHeader = 64;
constexpr std::size_t kPage = 4096;

constexpr std::size_t round_up(std::size_t value, std::size_t step) {
  return (value + step - 1) / step * step;
}

// Null when the system has none.
std::byte *map_memory(std::size_t bytes) {
  void *found = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return found == MAP_FAILED ? nullptr : static_cast<std::byte *>(found);
}

// Memory at a multiple of step. The system mostly puts it beside what it gave before, and so there.
std::byte *map_memory(std::size_t bytes, std::size_t step) {
  std::byte *start = map_memory(bytes);
  const auto beyond = [&] { return reinterpret_cast<std::uintptr_t>(start) % step; };
  if (start == nullptr || beyond() == 0) return start;
  munmap(start, bytes);
  const std::size_t asked = bytes + step;
  start = map_memory(asked);
  if (start == nullptr) return nullptr;
  const std::size_t before = (step - beyond()) % step;
  std::byte *wanted = start + before;
  if (before != 0) munmap(start, before);
  if (asked - before > bytes) munmap(wanted + bytes, asked - before - bytes);
  return wanted;
}

void unmap(std::byte *memory, std::size_t bytes) {
  unpoison(memory, bytes);
  munmap(memory, bytes);
}

// Has the system give the memory now rather than page by page; where it cannot, it does so later.
void populate(std::byte *memory, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  madvise(memory, bytes, MADV_POPULATE_WRITE);
#else
  static_cast<void>(memory), static_cast<void>(bytes);
#endif
}

// The memory goes back to the system, its addresses to nobody.
void retire(std::byte *chunk, std::size_t bytes) {
  poison(chunk, bytes);
  madvise(chunk, bytes, MADV_DONTNEED);
}

}  // namespace

// 64 KiB of slots of one size. Their marks stand in front of them.
struct Arena::Span {
  std::byte *first_free = nullptr;  // freed slots, each holding the address of the next
  std::uint32_t fresh = 0;          // slots from here on were never given out
  std::uint32_t slot_count = 0;
  std::uint32_t slot_bytes = 0;
  std::uint32_t slots_of_byte = 0;  // 2^32 / slot_bytes, rounded up
  std::byte *slots = nullptr;
  Mark *marks = nullptr;
  std::uint32_t live = 0;
  std::uint32_t class_index = 0;
  Span *next = nullptr;
  Span *previous = nullptr;
  std::byte *last_free = nullptr;
  std::byte *start = nullptr;  // of the 64 KiB

  bool has_room() const { return first_free != nullptr || fresh < slot_count; }

  // The slot that holds a place of the span, without a division: exact below 2^16.
  std::size_t number_of(const std::byte *place) const {
    return static_cast<std::uint64_t>(place - slots) * slots_of_byte >> 32;
  }

  void divide(std::size_t index, std::size_t bytes) {
    class_index = static_cast<std::uint32_t>(index);
    slot_bytes = static_cast<std::uint32_t>(bytes);
    slots_of_byte = static_cast<std::uint32_t>(((std::uint64_t{1} << 32) + bytes - 1) / bytes);
    slot_count = static_cast<std::uint32_t>((kSpanBytes - kAlignment) / (bytes + sizeof(Mark)));
    marks = reinterpret_cast<Mark *>(start);
    slots = start + round_up(slot_count * sizeof(Mark), kAlignment);
    fresh = live = 0;
    first_free = last_free = nullptr;
    unpoison(start, kSpanBytes);
    std::memset(marks, 0, slot_count * sizeof(Mark));
    poison(slots, slot_count * bytes);
  }

  // The number of a slot, which is free no more. There is one.
  std::size_t take() {
    const bool rather_fresh = kAddressSanitizer && fresh < slot_count;
    if (first_free == nullptr || rather_fresh) return fresh++;
    std::byte *slot = first_free;
    unpoison(slot, sizeof(std::byte *));
    std::memcpy(&first_free, slot, sizeof first_free);
    return number_of(slot);
  }

  // A freed slot is used again at once, while it is in the cache; under the address sanitizer it
  // waits behind all the others, so that a late use of it is noticed.
  void give_back(std::byte *slot) {
    unpoison(slot, slot_bytes);
    std::byte *following = kAddressSanitizer ? nullptr : first_free;
    std::memcpy(slot, &following, sizeof following);
    if (kAddressSanitizer && first_free != nullptr) {
      unpoison(last_free, sizeof slot);
      std::memcpy(last_free, &slot, sizeof slot);
      poison(last_free, sizeof slot);
    } else {
      first_free = slot;
    }
    last_free = slot;
    poison(slot, slot_bytes);
  }
};

// What the system gave: sixteen spans, or one large block behind a head.
struct Arena::Chunk {
  bool large = false;
  bool withheld = false;  // from later arenas
  std::size_t bytes = 0;  // from the start of the chunk
  std::byte *memory = nullptr;
  std::size_t asked = 0;  // large only
  Mark mark = 0;
  Span spans[kSpansPerChunk];
};

struct Arena::Block {
  Chunk *chunk = nullptr;
  Span *span = nullptr;  // null for a large block
  std::byte *start = nullptr;
  std::size_t asked = 0;
  std::size_t used = 0;
  Mark *mark = nullptr;
};

Arena::~Arena() {
  for (Chunk *chunk : chunks_) {
    if (chunk != nullptr) end_chunk(chunk);
  }
  for (const auto &[start, chunk] : large_) end_chunk(chunk);
}

void Arena::end_chunk(Chunk *chunk) {
  if (chunk->withheld) {
    retire(chunk->memory, chunk->bytes);
  } else {
    unmap(chunk->memory, chunk->bytes);
  }
  delete chunk;
}

void Arena::set_release_hook(ReleaseHook hook, void *context) {
  release_hook_ = hook;
  release_context_ = context;
}

inline bool Arena::within_limit(std::size_t bytes) const {
  const std::uint64_t limit = statistics_.limit_bytes;
  return limit == 0 || (bytes <= limit && statistics_.used_bytes <= limit - bytes);
}

// Nothing that follows from the rest is kept up here: statistics makes it.
inline void Arena::count_in(std::size_t asked, std::size_t used) {
  ++statistics_.live_allocations;
  statistics_.live_bytes += asked;
  statistics_.used_bytes += used;
}

inline void Arena::count_out(std::size_t asked, std::size_t used) {
  note_peak();
  ++freed_;
  --statistics_.live_allocations;
  statistics_.live_bytes -= asked;
  statistics_.used_bytes -= used;
}

// What is used only grows until something is freed.
inline void Arena::note_peak() {
  statistics_.peak_used_bytes = std::max(statistics_.peak_used_bytes, statistics_.used_bytes);
}

// The class that a block of so many bytes falls into.
inline std::size_t class_with_room(std::size_t size) { return store::class_of(size + kRedZone); }
constexpr std::size_t kLargestInSlot = kLargestSlot - kRedZone;

// The span has room.
inline void *Arena::take_slot(Span *span, std::size_t size) {
  const std::size_t number = span->take();
  const std::size_t bytes = span->slot_bytes;
  std::byte *slot = span->slots + number * bytes;
  span->marks[number] = mark_of(bytes - size);
  ++span->live;
  if (!span->has_room()) [[unlikely]] {
    available_[span->class_index] = span->next;
    if (span->next != nullptr) span->next->previous = nullptr;
    span->next = nullptr;
  }
  poison(slot, bytes);
  unpoison(slot, size);
  count_in(size, bytes);
  return slot;
}

// Nearly every block is the next of a span, where no limit is to be looked at and nobody to be
// waited for: without a call.
void *Arena::allocate(std::size_t size) {
  if (size <= kLargestInSlot && mutex_.try_lock()) [[likely]] {
    const std::lock_guard lock(mutex_, std::adopt_lock);
    Span *span = available_[class_with_room(size)];
    if (span != nullptr && statistics_.limit_bytes == 0) [[likely]]
      return take_slot(span, size);
  }
  return allocate_by_steps(size);
}

void *Arena::allocate_by_steps(std::size_t size) {
  const std::lock_guard lock(mutex_);
  void *block = nullptr;
  try {
    if (size <= kLargestInSlot) {
      block = allocate_slot(size, class_with_room(size));
    } else if (size <= kLargestBlock) {
      block = allocate_large(size);
    }
  } catch (const std::bad_alloc &) {
    block = nullptr;
  }
  if (block == nullptr) refuse(size);
  return block;
}

void *Arena::allocate_slot(std::size_t size, std::size_t class_index) {
  if (!within_limit(store::class_bytes(class_index))) return nullptr;
  Span *span = available_[class_index];
  if (span == nullptr) span = begin_span(class_index);
  return span == nullptr ? nullptr : take_slot(span, size);
}

void *Arena::allocate_large(std::size_t size) {
  const std::size_t bytes = round_up(size + kRedZone, kAlignment);
  if (!within_limit(bytes)) return nullptr;
  Chunk *chunk = add_chunk(kLargeHeader + bytes, true);
  if (chunk == nullptr) return nullptr;
  chunk->asked = size;
  chunk->mark = kLive;
  std::byte *block = chunk->memory + kLargeHeader;
  poison(chunk->memory, chunk->bytes);
  unpoison(block, size);
  count_in(size, bytes);
  return block;
}

Arena::Span *Arena::begin_span(std::size_t class_index) {
  Span *span = take_free_span();
  if (span == nullptr) return nullptr;
  // A class that has so many soon fills one more, and can spare what it does not.
  constexpr std::uint32_t kMany = 16;
  if (spans_[class_index]++ >= kMany) populate(span->start, kSpanBytes);
  span->divide(class_index, store::class_bytes(class_index));
  span->next = span->previous = nullptr;
  available_[class_index] = span;
  return span;
}

Arena::Span *Arena::take_free_span() {
  if (free_spans_ == nullptr) {
    Chunk *chunk = add_chunk(kChunkBytes, false);
    if (chunk == nullptr) return nullptr;
    for (std::size_t i = kSpansPerChunk; i-- > 0;) {
      Span &span = chunk->spans[i];
      span.start = chunk->memory + i * kSpanBytes;
      span.next = free_spans_;
      free_spans_ = &span;
    }
    poison(chunk->memory, chunk->bytes);
  }
  Span *span = free_spans_;
  free_spans_ = span->next;
  return span;
}

// An empty span goes back so that any class can use it.
void Arena::retire_span(Span *span) {
  if (span->previous != nullptr) {
    span->previous->next = span->next;
  } else {
    available_[span->class_index] = span->next;
  }
  if (span->next != nullptr) span->next->previous = span->previous;
  span->previous = nullptr;
  span->next = free_spans_;
  span->slots = nullptr;
  free_spans_ = span;
  --spans_[span->class_index];
  poison(span->start, kSpanBytes);
}

Arena::Chunk *Arena::add_chunk(std::size_t bytes, bool large) {
  const std::size_t rounded = round_up(bytes, kPage);
  std::unique_ptr<Chunk> chunk(new (std::nothrow) Chunk);
  if (chunk == nullptr) return nullptr;
  chunk->large = large;
  chunk->bytes = rounded;
  chunk->memory = large ? map_memory(rounded) : map_memory(rounded, kChunkBytes);
  if (chunk->memory == nullptr) return nullptr;
  const auto start = reinterpret_cast<std::uintptr_t>(chunk->memory);
  try {
    if (large) {
      large_[start] = chunk.get();
    } else {
      enter_chunk(chunk.get());
    }
  } catch (const std::bad_alloc &) {
    unmap(chunk->memory, rounded);
    return nullptr;
  }
  statistics_.reserved_bytes += rounded;
  return chunk.release();
}

void Arena::drop_large(Chunk *chunk) {
  large_.erase(reinterpret_cast<std::uintptr_t>(chunk->memory));
  statistics_.reserved_bytes -= chunk->bytes;
  unmap(chunk->memory, chunk->bytes);
  delete chunk;
}

std::size_t Arena::place_of(std::uintptr_t number, std::size_t places) {
  return (number * UINT64_C(0x9E3779B97F4A7C15) >> 32) & (places - 1);
}

// Throws bad_alloc.
void Arena::enter_chunk(Chunk *chunk) {
  const auto enter = [](std::vector<Chunk *> &table, Chunk *entered) {
    const auto start = reinterpret_cast<std::uintptr_t>(entered->memory);
    std::size_t place = place_of(start / kChunkBytes, table.size());
    while (table[place] != nullptr) place = (place + 1) & (table.size() - 1);
    table[place] = entered;
  };
  if (2 * (chunk_count_ + 1) > chunks_.size()) {
    std::vector<Chunk *> wider(std::max<std::size_t>(2 * chunks_.size(), 8));
    for (Chunk *known : chunks_) {
      if (known != nullptr) enter(wider, known);
    }
    chunks_.swap(wider);
  }
  enter(chunks_, chunk);
  ++chunk_count_;
}

inline Arena::Chunk *Arena::chunk_of(const void *address) const {
  const auto value = reinterpret_cast<std::uintptr_t>(address);
  if (!chunks_.empty()) {
    std::size_t place = place_of(value / kChunkBytes, chunks_.size());
    for (; chunks_[place] != nullptr; place = (place + 1) & (chunks_.size() - 1)) {
      Chunk *chunk = chunks_[place];
      if (value - reinterpret_cast<std::uintptr_t>(chunk->memory) < kChunkBytes) return chunk;
    }
  }
  if (large_.empty()) return nullptr;
  const auto behind = large_.upper_bound(value);
  if (behind == large_.begin()) return nullptr;
  const auto &[start, chunk] = *std::prev(behind);
  return value - start < chunk->bytes ? chunk : nullptr;
}

inline bool Arena::find(const void *address, Block *block) const {
  Chunk *chunk = chunk_of(address);
  if (chunk == nullptr) return false;
  const auto offset =
      static_cast<std::size_t>(static_cast<const std::byte *>(address) - chunk->memory);
  block->chunk = chunk;
  if (chunk->large) {
    if (offset < kLargeHeader || offset >= chunk->bytes) return false;
    block->start = chunk->memory + kLargeHeader;
    block->asked = chunk->asked;
    block->used = round_up(chunk->asked + kRedZone, kAlignment);
    block->mark = &chunk->mark;
    return true;
  }
  Span *span = &chunk->spans[offset / kSpanBytes];
  if (span->slots == nullptr) return false;
  const std::byte *place = chunk->memory + offset;
  if (place < span->slots) return false;
  const std::size_t number = span->number_of(place);
  if (number >= span->slot_count) return false;
  block->span = span;
  block->start = span->slots + number * span->slot_bytes;
  block->used = span->slot_bytes;
  block->mark = &span->marks[number];
  block->asked = block->used - (*block->mark >> kSpareAt);
  return true;
}

bool Arena::free(void *pointer) {
  const std::lock_guard lock(mutex_);
  Block block;
  if (!find(pointer, &block) || block.start != pointer || !is_live(*block.mark)) return false;
  if (release_hook_ != nullptr) {
    release_hook_(release_context_, pointer, block.asked, (*block.mark & kWatched) != 0);
  }
  *block.mark = 0;
  count_out(block.asked, block.used);
  if (block.span == nullptr) {
    drop_large(block.chunk);
    return true;
  }
  Span *span = block.span;
  const bool was_full = !span->has_room();
  span->give_back(block.start);
  if (was_full) {
    span->previous = nullptr;
    span->next = available_[span->class_index];
    if (span->next != nullptr) span->next->previous = span;
    available_[span->class_index] = span;
  }
  // The last span of a class stays divided, so that one object made and freed in turn costs
  // nothing.
  const bool only_one = span->next == nullptr && span->previous == nullptr;
  if (--span->live == 0 && !only_one) retire_span(span);
  return true;
}

BlockState Arena::watch(const void *address) {
  const std::lock_guard lock(mutex_);
  Block block;
  if (!find(address, &block)) {
    return chunk_of(address) == nullptr ? BlockState::foreign : BlockState::dead;
  }
  if (!is_live(*block.mark)) return BlockState::dead;
  *block.mark |= kWatched;
  return BlockState::live;
}

bool Arena::holds(const void *address, std::size_t length) const {
  const std::lock_guard lock(mutex_);
  Block block;
  if (!find(address, &block) || !is_live(*block.mark)) return false;
  const auto offset =
      static_cast<std::size_t>(static_cast<const std::byte *>(address) - block.start);
  return offset <= block.asked && length <= block.asked - offset;
}

bool Arena::live_size(const void *block, std::size_t *size) const {
  const std::lock_guard lock(mutex_);
  Block found;
  if (!find(block, &found) || found.start != block || !is_live(*found.mark)) return false;
  *size = found.asked;
  return true;
}

void Arena::withhold(const void *address) {
  const std::lock_guard lock(mutex_);
  Block block;
  if (find(address, &block)) block.chunk->withheld = true;
}

ArenaStatistics Arena::statistics() const {
  const std::lock_guard lock(mutex_);
  ArenaStatistics found = statistics_;
  found.peak_used_bytes = std::max(found.peak_used_bytes, found.used_bytes);
  found.total_allocations = found.live_allocations + freed_;
  return found;
}

bool Arena::set_limit(std::size_t bytes) {
  const std::lock_guard lock(mutex_);
  if (bytes != 0 && bytes < statistics_.used_bytes) return false;
  statistics_.limit_bytes = bytes;
  return true;
}

Arena::Refusal Arena::last_refusal() const {
  const std::lock_guard lock(mutex_);
  return refusal_;
}

void Arena::note_refusal(std::size_t size) {
  const std::lock_guard lock(mutex_);
  refuse(size);
}

void Arena::refuse(std::size_t asked) {
  ++statistics_.failed_allocations;
  refusal_ = Refusal{asked, statistics_.used_bytes, statistics_.limit_bytes, true};
}

}  // namespace kelp
