// Allocating and releasing. Lists of spans are doubly linked by number, through their headers.
#include "store/heap.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

#include "store/size_class.hpp"

namespace kelp::store {

namespace {

constexpr std::uint32_t bin_of(std::uint32_t spans) {
  return static_cast<std::uint32_t>(std::bit_width(spans)) - 1;
}

constexpr std::size_t rounded(std::size_t value, std::size_t step) {
  return (value + step - 1) / step * step;
}

}  // namespace

std::uint64_t Heap::number_of(const Span *span) const {
  const auto offset =
      static_cast<std::uint64_t>(reinterpret_cast<const std::byte *>(span) - memory_);
  const std::uint64_t table = offset / kSegmentBytes * kSegmentSpans;
  return table + offset % kSegmentBytes / sizeof(Span);
}

void Heap::save_span(Span *span) {
  if (span->saved == stamp_) return;
  ground_->save(span, sizeof *span);
  span->saved = stamp_;
}

void Heap::save_slot(const Span *span, Slot *slot) {
  if (is_new(span)) {
    ground_->mark(slot, sizeof *slot);
  } else {
    ground_->save(slot, sizeof *slot);
  }
}

void Heap::link(std::uint32_t &list, Span *span) {
  span->previous = kNoSpan;
  span->next = list;
  if (list != kNoSpan) {
    Span *following = this->span(list);
    save_span(following);
    following->previous = static_cast<std::uint32_t>(number_of(span));
  }
  list = static_cast<std::uint32_t>(number_of(span));
}

void Heap::unlink(std::uint32_t &list, Span *span) {
  if (span->previous != kNoSpan) {
    Span *before = this->span(span->previous);
    save_span(before);
    before->next = span->next;
  } else {
    list = span->next;
  }
  if (span->next != kNoSpan) {
    Span *following = this->span(span->next);
    save_span(following);
    following->previous = span->previous;
  }
  span->next = span->previous = kNoSpan;
}

void Heap::count(std::size_t asked, std::size_t used, std::uint8_t owner, bool in) {
  Statistics &counts = head_->statistics;
  if ((owner & kRuntimes) != 0) {
    counts.own_bytes += in ? used : -used;
    return;
  }
  if (in) {
    ++counts.live_allocations;
    ++counts.total_allocations;
    counts.live_bytes += asked;
    counts.used_bytes += used;
    counts.peak_used_bytes = std::max(counts.peak_used_bytes, counts.used_bytes);
  } else {
    --counts.live_allocations;
    counts.live_bytes -= asked;
    counts.used_bytes -= used;
  }
}

void *Heap::allocate(std::size_t size, std::uint8_t owner) {
  if (size > kLargestBlock) return nullptr;
  return size <= kLargestSlot ? allocate_slot(size, owner) : allocate_large(size, owner);
}

void *Heap::allocate_slot(std::size_t size, std::uint8_t owner) {
  const std::size_t index = class_of(size);
  Span *span = span_with_room(index);
  if (span == nullptr) return nullptr;
  save_span(span);
  Slot *slots = slots_of(span);
  const std::uint16_t number = span->first_free != kNoSlot ? span->first_free : span->fresh;
  Slot &slot = slots[number];
  if (span->first_free != kNoSlot) {
    save_slot(span, &slot);
    span->first_free = slot.asked;
  } else {
    // A slot that was never given out is known by its number alone.
    ground_->mark(&slot, sizeof slot);
    ++span->fresh;
  }
  slot =
      Slot{stamp_, static_cast<std::uint16_t>(size), static_cast<std::uint8_t>(kLive | owner), 0};
  ++span->live;
  if (span->first_free == kNoSlot && span->fresh == span->slot_count) {
    unlink(head_->classes[index], span);
  }
  count(size, span->slot_bytes, owner, true);
  std::byte *block =
      span_start(number_of(span)) + span->slots_offset + std::size_t{number} * span->slot_bytes;
  ground_->mark(block, size);
  return block;
}

void *Heap::allocate_large(std::size_t size, std::uint8_t owner) {
  const auto spans = static_cast<std::uint32_t>((size + kSpanBytes - 1) / kSpanBytes);
  Span *first = take_run(spans);
  if (first == nullptr) return nullptr;
  const std::uint64_t number = number_of(first);
  for (std::uint32_t i = 1; i < spans; ++i) {
    Span *rest = span(number + i);
    save_span(rest);
    rest->kind = SpanKind::large_rest;
    rest->run = i;
  }
  first->kind = SpanKind::large;
  first->run = spans;
  first->asked = size;
  first->state = static_cast<std::uint8_t>(kLive | owner);
  first->made = first->block_saved = stamp_;
  count(size, spans * kSpanBytes, owner, true);
  ground_->mark(span_start(number), size);
  return span_start(number);
}

Span *Heap::span_with_room(std::size_t index) {
  if (head_->classes[index] != kNoSpan) return span(head_->classes[index]);
  Span *made = take_run(1);
  if (made == nullptr) return nullptr;
  const std::size_t bytes = class_bytes(index);
  const std::size_t slots = slots_of_span(bytes);
  made->kind = SpanKind::slots;
  made->state = 0;
  made->class_index = static_cast<std::uint16_t>(index);
  made->slot_count = static_cast<std::uint16_t>(slots);
  made->first_free = kNoSlot;
  made->fresh = made->live = 0;
  made->slot_bytes = static_cast<std::uint32_t>(bytes);
  made->slots_offset = static_cast<std::uint32_t>(rounded(slots * sizeof(Slot), kAlignment));
  made->run = 1;
  made->made = stamp_;
  link(head_->classes[index], made);
  return made;
}

// A run of exactly so many spans, its first header saved; null without room.
Span *Heap::take_run(std::uint32_t spans) {
  for (int turn = 0; turn < 2; ++turn) {
    for (std::uint32_t bin = bin_of(spans); bin < kBins; ++bin) {
      for (std::uint32_t at = head_->bins[bin]; at != kNoSpan; at = span(at)->next) {
        Span *found = span(at);
        if (found->run < spans) continue;
        if (!ground_->back_again(at, spans)) return nullptr;
        const std::uint32_t run = found->run;
        save_span(found);
        unlink(head_->bins[bin], found);
        if (run > spans) mark_free(at + spans, run - spans);
        use_fresh(at, spans);
        return found;
      }
    }
    if (turn == 0 && !grow(spans)) return nullptr;
  }
  return nullptr;
}

// Pages of a file that nobody has touched are dear one by one.
void Heap::use_fresh(std::uint64_t first, std::uint32_t spans) {
  constexpr std::uint64_t kAtOnce = 16;
  if (first + spans <= fresh_ || first >= fresh_end_) return;
  const std::uint64_t until = std::min(fresh_end_, std::max(first + spans, fresh_ + kAtOnce));
  ground_->provide_pages(fresh_, until - fresh_);
  fresh_ = until;
}

// Enters a run in its bin. Its neighbours are no free runs.
void Heap::mark_free(std::uint64_t first, std::uint32_t spans) {
  for (std::uint32_t i = 0; i < spans; ++i) {
    Span *each = span(first + i);
    if (i != 0 && i + 1 != spans && each->kind == SpanKind::free) continue;
    save_span(each);
    each->kind = SpanKind::free;
    each->run = spans;
    each->next = each->previous = kNoSpan;
  }
  link(head_->bins[bin_of(spans)], span(first));
}

// Gives a run back, joined with the free runs beside it.
void Heap::release_run(std::uint64_t first, std::uint32_t spans) {
  const std::uint64_t segment = first / kSegmentSpans * kSegmentSpans;
  const std::uint64_t end = std::min(segment + kSegmentSpans, head_->spans);
  for (std::uint32_t i = 0; i < spans; ++i) {
    Span *each = span(first + i);
    save_span(each);
    each->kind = SpanKind::large_rest;  // until it is marked
  }
  if (first + spans < end && span(first + spans)->kind == SpanKind::free) {
    Span *after = span(first + spans);
    const std::uint32_t run = after->run;
    save_span(after);
    unlink(head_->bins[bin_of(run)], after);
    spans += run;
  }
  if (first > segment + 1 && span(first - 1)->kind == SpanKind::free) {
    const std::uint32_t run = span(first - 1)->run;
    Span *before = span(first - run);
    save_span(before);
    unlink(head_->bins[bin_of(run)], before);
    first -= run;
    spans += run;
  }
  mark_free(first, spans);
}

bool Heap::grow(std::uint32_t spans) {
  constexpr std::uint64_t kLeast = 16;
  const std::uint64_t old = head_->spans;
  const std::uint64_t step = std::clamp<std::uint64_t>(old / 4, kLeast, kSegmentSpans);
  // A run lies within one segment, and each segment begins with its table.
  const std::uint64_t in_segment = old % kSegmentSpans;
  const std::uint64_t to_end = in_segment == 0 ? 0 : kSegmentSpans - in_segment;
  const std::uint64_t need = spans <= to_end ? spans : to_end + 1 + spans;
  const std::uint64_t most = std::min(most_, old + std::max(need, step));
  if (old + need > most_) return ground_->back(old + need);  // says why not
  if (!ground_->back(most) && !(most > old + need && ground_->back(old + need))) return false;
  const std::uint64_t now = head_->spans;
  for (std::uint64_t at = old; at < now;) {
    if (at % kSegmentSpans == 0) {
      std::memset(static_cast<void *>(span_start(at)), 0, kSpanBytes);
      ground_->mark(span_start(at), kSpanBytes);
      span(at)->kind = SpanKind::table;
      ++at;
      continue;
    }
    const std::uint64_t segment_end = (at / kSegmentSpans + 1) * kSegmentSpans;
    const std::uint64_t until = std::min(now, segment_end);
    for (std::uint64_t i = at; i < until; ++i) {
      Span *each = span(i);
      *each = Span{};
      each->saved = stamp_;
      ground_->mark(each, sizeof *each);
    }
    release_run(at, static_cast<std::uint32_t>(until - at));
    fresh_ = at;
    fresh_end_ = until;
    at = until;
  }
  return true;
}

void Heap::release(const Block &block) {
  Span *span = block.span;
  count(block.asked, block.used, block.state(), false);
  if (block.slot == nullptr) {
    save_block(block.start);
    note_change(block, true);
    const std::uint64_t first = number_of(span);
    const std::uint32_t run = span->run;
    save_span(span);
    span->state = 0;
    release_run(first, run);
    return;
  }
  // What a block made before the transaction holds is needed again if that is undone.
  save_block(block.start);
  if (!is_new(span)) note_change(block, true);
  save_span(span);
  save_slot(span, block.slot);
  const auto number = static_cast<std::uint16_t>(block.slot - slots_of(span));
  const bool was_full = span->first_free == kNoSlot && span->fresh == span->slot_count;
  block.slot->state = 0;
  block.slot->asked = span->first_free;
  span->first_free = number;
  --span->live;
  const std::size_t index = span->class_index;
  if (was_full) link(head_->classes[index], span);
  // The last span of a class stays divided, so that one object made and freed in turn costs
  // nothing.
  const bool only_one = span->next == kNoSpan && span->previous == kNoSpan;
  if (span->live != 0 || only_one) return;
  if (!is_new(span)) ground_->save(slots_of(span), std::size_t{span->fresh} * sizeof(Slot));
  unlink(head_->classes[index], span);
  release_run(number_of(span), 1);
}

// What the running transaction has grown the heap by around a span, or the span that it has
// divided: nothing in it was there before. Empty where something was.
std::span<const std::byte> Heap::new_memory(std::uint64_t number) const {
  if (number >= grown_from_) {
    return {span_start(grown_from_), (head_->spans - grown_from_) * kSpanBytes};
  }
  const Span *there = span(number);
  if (there->kind != SpanKind::slots || !is_new(there)) return {};
  return {span_start(number), kSpanBytes};
}

std::span<const std::byte> Heap::save_block(const void *address) {
  const std::uint64_t number = span_of(address);
  if (number >= head_->spans) return {};
  const std::span<const std::byte> made = new_memory(number);
  if (!made.empty()) return made;
  Block block;
  if (!find(address, &block)) return {};
  std::uint32_t &saved = block.slot != nullptr ? block.slot->saved : block.span->block_saved;
  if (saved != stamp_) {
    ground_->save(block.start, block.asked);
    saved = stamp_;
    note_change(block, false);
  }
  return {static_cast<const std::byte *>(block.start), block.asked};
}

void Heap::save_range(const void *address, std::size_t length) {
  constexpr std::size_t kSmall = 256;
  const std::uint64_t number = span_of(address);
  if (number < head_->spans && !new_memory(number).empty()) return;
  Block block;
  if (!find(address, &block)) {
    ground_->save(address, length);
    return;
  }
  if (block.asked <= kSmall) {
    save_block(address);
    return;
  }
  const std::uint32_t saved = block.slot != nullptr ? block.slot->saved : block.span->block_saved;
  if (saved == stamp_) return;
  ground_->save(address, length);
  note_change(block, false);
}

void Heap::trim() {
  forget_fresh();
  for (std::uint64_t number = 0; number < head_->spans; ++number) {
    Span *each = span(number);
    if (each->kind != SpanKind::slots || each->live != 0) continue;
    save_span(each);
    unlink(head_->classes[each->class_index], each);
    release_run(number, 1);
  }
  while (head_->spans != 0) {
    Span *last = span(head_->spans - 1);
    if (last->kind == SpanKind::free) {
      const std::uint64_t first = head_->spans - last->run;
      save_span(span(first));
      unlink(head_->bins[bin_of(last->run)], span(first));
      head_->spans = first;
    } else if (last->kind == SpanKind::table) {
      --head_->spans;
    } else {
      return;
    }
  }
}

void Heap::forget_stamps() {
  for (std::uint64_t number = 0; number < head_->spans; ++number) {
    Span *each = span(number);
    each->made = each->saved = each->block_saved = 0;
    if (each->kind != SpanKind::slots) continue;
    Slot *slots = slots_of(each);
    const std::size_t given = std::min(std::size_t{each->fresh}, kSpanBytes / sizeof(Slot));
    for (std::size_t i = 0; i < given; ++i) slots[i].saved = 0;
  }
}

}  // namespace kelp::store
