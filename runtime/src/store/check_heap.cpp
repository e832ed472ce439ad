// Looking at the header, the spans and what links them, and the slots.
#include "store/check_heap.hpp"

#include <algorithm>
#include <bit>
#include <cstdarg>
#include <cstdio>

#include "store/size_class.hpp"

namespace kelp::store {

void HeapCheck::say(const char *format, ...) {
  ++findings_;
  constexpr std::uint64_t kMostSaid = 1000;
  if (findings_ > kMostSaid || !finding_) return;
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  // Names in a damaged store may be any bytes.
  for (char *at = text; *at != '\0'; ++at) {
    if (static_cast<unsigned char>(*at) < ' ' || *at == 0x7f) *at = '?';
  }
  finding_(text);
}

bool HeapCheck::check_header() {
  if (!read(0, &header_)) {
    say("%" PRIu64 " bytes, too few for a header", view_.size);
    return false;
  }
  const Head &head = header_.head;
  const std::uint64_t most = view_.size < kHeapOffset ? 0 : (view_.size - kHeapOffset) / kSpanBytes;
  if (head.spans > most) {
    say("header: %" PRIu64 " spans, the file has room for %" PRIu64, head.spans, most);
    return false;
  }
  if (head.types_used > kTypesBytes) {
    say("header: %" PRIu64 " bytes of types, there is room for %zu", head.types_used, kTypesBytes);
  }
  spans_.resize(head.spans);
  for (std::uint64_t i = 0; i < head.spans; ++i) {
    const std::uint64_t table = kHeapOffset + i / kSegmentSpans * kSegmentBytes;
    if (!read(table + i % kSegmentSpans * sizeof(Span), &spans_[i])) {
      say("span %" PRIu64 ": its header lies outside the file", i);
      return false;
    }
  }
  return true;
}

void HeapCheck::check_heap() {
  check_spans();
  check_bins();
  check_classes();
  check_statistics();
}

void HeapCheck::check_spans() {
  for (std::uint64_t i = 0; i < spans_.size();) {
    const Span &span = spans_[i];
    const std::uint64_t end =
        std::min<std::uint64_t>((i / kSegmentSpans + 1) * kSegmentSpans, spans_.size());
    const bool is_table = i % kSegmentSpans == 0;
    if (is_table != (span.kind == SpanKind::table)) {
      say("span %" PRIu64 ": kind %u", i, static_cast<unsigned>(span.kind));
      ++i;
      continue;
    }
    switch (span.kind) {
      case SpanKind::table:
        ++i;
        break;
      case SpanKind::slots:
        check_slots(i);
        ++i;
        break;
      case SpanKind::large:
        i = check_large(i, end);
        break;
      case SpanKind::free:
        i = check_free(i, end);
        break;
      default:
        say("span %" PRIu64 ": kind %u", i, static_cast<unsigned>(span.kind));
        ++i;
    }
  }
}

std::uint64_t HeapCheck::check_large(std::uint64_t i, std::uint64_t end) {
  const Span &span = spans_[i];
  if (span.run == 0 || span.run > end - i || span.asked > span.run * kSpanBytes ||
      (span.state & kLive) == 0 || span.state > (kLive | kRuntimes)) {
    say("span %" PRIu64 ": a large block of %u spans, %" PRIu64 " bytes, state %u", i, span.run,
        span.asked, span.state);
    return i + 1;
  }
  for (std::uint32_t k = 1; k < span.run; ++k) {
    if (spans_[i + k].kind != SpanKind::large_rest || spans_[i + k].run != k) {
      say("span %" PRIu64 ": expected part %u of a large block", i + k, k);
    }
  }
  note_block(span.state, span.asked, span.run * kSpanBytes);
  return i + span.run;
}

std::uint64_t HeapCheck::check_free(std::uint64_t i, std::uint64_t end) {
  const Span &span = spans_[i];
  if (span.run == 0 || span.run > end - i) {
    say("span %" PRIu64 ": a free run of %u", i, span.run);
    return i + 1;
  }
  for (std::uint32_t k = 1; k < span.run; ++k) {
    if (spans_[i + k].kind != SpanKind::free) {
      say("span %" PRIu64 ": kind %u within a free run", i + k,
          static_cast<unsigned>(spans_[i + k].kind));
    }
  }
  if (spans_[i + span.run - 1].run != span.run) {
    say("span %" PRIu64 ": the end of a free run of %u says %u", i + span.run - 1, span.run,
        spans_[i + span.run - 1].run);
  }
  if (i + span.run < end && spans_[i + span.run].kind == SpanKind::free) {
    say("span %" PRIu64 ": two free runs beside each other", i);
  }
  runs_.insert(i);
  return i + span.run;
}

void HeapCheck::check_slots(std::uint64_t i) {
  const Span &span = spans_[i];
  const std::size_t bytes = span.class_index < kClasses ? class_bytes(span.class_index) : 0;
  const std::size_t count = bytes == 0 ? 0 : slots_of_span(bytes);
  const std::size_t offset = (count * sizeof(Slot) + kAlignment - 1) / kAlignment * kAlignment;
  if (bytes == 0 || span.slot_bytes != bytes || span.slot_count != count ||
      span.slots_offset != offset || span.fresh > count || span.live > span.fresh) {
    say("span %" PRIu64 ": class %u, %u slots of %u bytes at %u, %u given out, %u live", i,
        span.class_index, span.slot_count, span.slot_bytes, span.slots_offset, span.fresh,
        span.live);
    return;
  }
  std::vector<bool> is_free(span.fresh);
  std::uint16_t free = 0;
  for (std::uint16_t at = span.first_free; at != kNoSlot; ++free) {
    Slot slot{};
    if (at >= span.fresh || is_free[at] || !read_slot(i, at, &slot) || slot.state != 0) {
      say("span %" PRIu64 ": its list of free slots is broken at %u", i, at);
      return;
    }
    is_free[at] = true;
    at = slot.asked;
  }
  if (free + span.live != span.fresh) {
    say("span %" PRIu64 ": %u slots are free and %u live, of %u", i, free, span.live, span.fresh);
  }
  for (std::uint16_t at = 0; at < span.fresh; ++at) {
    Slot slot{};
    if (is_free[at] || !read_slot(i, at, &slot)) continue;
    if ((slot.state & kLive) == 0 || slot.state > (kLive | kRuntimes) || slot.asked > bytes) {
      say("span %" PRIu64 ": slot %u of %u bytes has state %u", i, at, slot.asked, slot.state);
    } else {
      note_block(slot.state, slot.asked, bytes);
    }
  }
  if (span.first_free != kNoSlot || span.fresh < span.slot_count) with_room_.insert(i);
}

bool HeapCheck::read_slot(std::uint64_t span, std::uint16_t number, Slot *slot) const {
  return read(kHeapOffset + span * kSpanBytes + number * sizeof(Slot), slot);
}

// Walks a list of spans; expected are those that must be in it, and each is taken out.
template <typename Test>
void HeapCheck::check_list(const char *what, std::size_t number, std::uint32_t first,
                           std::unordered_set<std::uint64_t> &expected, Test &&belongs) {
  std::uint32_t before = kNoSpan;
  for (std::uint32_t at = first; at != kNoSpan;) {
    if (at >= spans_.size() || !belongs(spans_[at]) || expected.erase(at) == 0 ||
        spans_[at].previous != before) {
      say("%s %zu: its list is broken at span %u", what, number, at);
      return;
    }
    before = at;
    at = spans_[at].next;
  }
}

void HeapCheck::check_bins() {
  for (std::size_t bin = 0; bin < kBins; ++bin) {
    check_list("bin", bin, header_.head.bins[bin], runs_, [&](const Span &span) {
      return span.kind == SpanKind::free && span.run != 0 &&
             static_cast<std::size_t>(std::bit_width(span.run)) - 1 == bin;
    });
  }
  for (const std::uint64_t left : runs_) say("span %" PRIu64 ": a free run in no list", left);
}

void HeapCheck::check_classes() {
  for (std::size_t index = 0; index < kClasses; ++index) {
    check_list("class", index, header_.head.classes[index], with_room_, [&](const Span &span) {
      return span.kind == SpanKind::slots && span.class_index == index;
    });
  }
  for (const std::uint64_t left : with_room_) {
    say("span %" PRIu64 ": it has free slots and is in no list", left);
  }
}

void HeapCheck::note_block(std::uint8_t state, std::uint64_t asked, std::uint64_t used) {
  if ((state & kRuntimes) != 0) {
    found_.own_bytes += used;
    return;
  }
  ++found_.live_allocations;
  found_.live_bytes += asked;
  found_.used_bytes += used;
}

void HeapCheck::check_statistics() {
  const Statistics &said = header_.head.statistics;
  if (said.live_allocations != found_.live_allocations || said.live_bytes != found_.live_bytes ||
      said.used_bytes != found_.used_bytes) {
    say("header: %" PRIu64 " allocations of %" PRIu64 " bytes, %" PRIu64 " used; found %" PRIu64
        " of %" PRIu64 ", %" PRIu64,
        said.live_allocations, said.live_bytes, said.used_bytes, found_.live_allocations,
        found_.live_bytes, found_.used_bytes);
  }
  if (said.own_bytes != found_.own_bytes) {
    say("header: %" PRIu64 " bytes used by the runtime itself; found %" PRIu64, said.own_bytes,
        found_.own_bytes);
  }
}

bool HeapCheck::is_block(const void *address, std::uint64_t bytes, bool inside) const {
  const std::uint64_t offset = offset_of(address) - kHeapOffset;
  std::uint64_t number = offset / kSpanBytes;
  if (offset_of(address) < kHeapOffset || number >= spans_.size()) return false;
  if (spans_[number].kind == SpanKind::large_rest && spans_[number].run <= number) {
    number -= spans_[number].run;
  }
  const Span &span = spans_[number];
  std::uint64_t start = number * kSpanBytes;
  std::uint64_t asked = span.asked;
  if (span.kind == SpanKind::slots) {
    if (span.slot_bytes == 0 || offset - start < span.slots_offset) return false;
    const std::uint64_t slot_number = (offset - start - span.slots_offset) / span.slot_bytes;
    Slot slot{};
    if (slot_number >= span.fresh ||
        !read_slot(number, static_cast<std::uint16_t>(slot_number), &slot) ||
        (slot.state & kLive) == 0) {
      return false;
    }
    start += span.slots_offset + slot_number * span.slot_bytes;
    asked = slot.asked;
  } else if (span.kind != SpanKind::large) {
    return false;
  }
  const std::uint64_t within = offset - start;
  return (inside || within == 0) && within <= asked && bytes <= asked - within;
}

}  // namespace kelp::store
