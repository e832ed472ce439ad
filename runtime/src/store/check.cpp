// What is looked at, in this order: the header, the spans and what links them, the slots, the
// indexes of the directory, the tables with their trees, and the references between all of them.
#include "store/check.hpp"

#include <algorithm>
#include <bit>
#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <unordered_set>
#include <vector>

#include "store/layout.hpp"
#include "store/size_class.hpp"

namespace kelp::store {

namespace {

class Checker {
 public:
  Checker(const View &view, const Finding &finding) : view_(view), finding_(finding) {}

  std::uint64_t run() {
    if (!check_header()) return findings_;
    check_spans();
    check_bins();
    check_classes();
    check_statistics();
    check_directory();
    check_tables();
    check_feeds();
    return findings_;
  }

  std::uint64_t run_types() {
    if (check_header()) check_types();
    return findings_;
  }

 private:
  __attribute__((format(printf, 2, 3))) void say(const char *format, ...) {
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

  template <typename T>
  bool read(std::uint64_t offset, T *value) const {
    if (offset > view_.size || sizeof *value > view_.size - offset) return false;
    std::memcpy(static_cast<void *>(value), view_.bytes + offset, sizeof *value);
    return true;
  }
  std::uint64_t offset_of(const void *address) const {
    return reinterpret_cast<std::uintptr_t>(address) - header_.identity.address;
  }
  template <typename T>
  bool read_at(const void *address, T *value) const {
    return read(offset_of(address), value);
  }

  bool check_header() {
    if (!read(0, &header_)) {
      say("%" PRIu64 " bytes, too few for a header", view_.size);
      return false;
    }
    const Head &head = header_.head;
    const std::uint64_t most =
        view_.size < kHeapOffset ? 0 : (view_.size - kHeapOffset) / kSpanBytes;
    if (head.spans > most) {
      say("header: %" PRIu64 " spans, the file has room for %" PRIu64, head.spans, most);
      return false;
    }
    if (head.types_used > kTypesBytes) {
      say("header: %" PRIu64 " bytes of types, there is room for %zu", head.types_used,
          kTypesBytes);
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

  // --- the heap ---

  void check_spans() {
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

  std::uint64_t check_large(std::uint64_t i, std::uint64_t end) {
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
    if ((span.state & kRuntimes) == 0) {
      ++found_.live_allocations;
      found_.live_bytes += span.asked;
      found_.used_bytes += span.run * kSpanBytes;
    }
    return i + span.run;
  }

  std::uint64_t check_free(std::uint64_t i, std::uint64_t end) {
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

  void check_slots(std::uint64_t i) {
    const Span &span = spans_[i];
    const std::size_t bytes = span.class_index < kClasses ? class_bytes(span.class_index) : 0;
    const std::size_t count = bytes == 0 ? 0 : (kSpanBytes - kAlignment) / (bytes + sizeof(Slot));
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
      } else if ((slot.state & kRuntimes) == 0) {
        ++found_.live_allocations;
        found_.live_bytes += slot.asked;
        found_.used_bytes += bytes;
      }
    }
    if (span.first_free != kNoSlot || span.fresh < span.slot_count) with_room_.insert(i);
  }

  bool read_slot(std::uint64_t span, std::uint16_t number, Slot *slot) const {
    return read(kHeapOffset + span * kSpanBytes + number * sizeof(Slot), slot);
  }

  // Walks a list of spans; expected are those that must be in it, and each is taken out.
  template <typename Test>
  void check_list(const char *what, std::size_t number, std::uint32_t first,
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

  void check_bins() {
    for (std::size_t bin = 0; bin < kBins; ++bin) {
      check_list("bin", bin, header_.head.bins[bin], runs_, [&](const Span &span) {
        return span.kind == SpanKind::free && span.run != 0 &&
               static_cast<std::size_t>(std::bit_width(span.run)) - 1 == bin;
      });
    }
    for (const std::uint64_t left : runs_) say("span %" PRIu64 ": a free run in no list", left);
  }

  void check_classes() {
    for (std::size_t index = 0; index < kClasses; ++index) {
      check_list("class", index, header_.head.classes[index], with_room_, [&](const Span &span) {
        return span.kind == SpanKind::slots && span.class_index == index;
      });
    }
    for (const std::uint64_t left : with_room_) {
      say("span %" PRIu64 ": it has free slots and is in no list", left);
    }
  }

  void check_statistics() {
    const Statistics &said = header_.head.statistics;
    if (said.live_allocations != found_.live_allocations || said.live_bytes != found_.live_bytes ||
        said.used_bytes != found_.used_bytes) {
      say("header: %" PRIu64 " allocations of %" PRIu64 " bytes, %" PRIu64 " used; found %" PRIu64
          " of %" PRIu64 ", %" PRIu64,
          said.live_allocations, said.live_bytes, said.used_bytes, found_.live_allocations,
          found_.live_bytes, found_.used_bytes);
    }
  }

  // Whether the address is the start (or, with inside, any part) of a live block with so many bytes
  // from there on.
  bool is_block(const void *address, std::uint64_t bytes, bool inside = false) const {
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

  // --- the directory ---

  // entry is called with each node and its hash, and says whether what it belongs to is sound.
  template <typename Entry>
  void check_index(const char *name, const IndexRoot &root, Entry &&entry) {
    if (root.buckets == 0) {
      if (root.count != 0)
        say("index of %s: %" PRIu64 " entries without buckets", name, root.count);
      return;
    }
    std::uint64_t most = 0;
    for (std::size_t segment = 0; segment < kIndexSegments; ++segment) {
      const std::uint64_t bytes = Index::segment_buckets(segment) * sizeof(IndexNode *);
      if (root.segments[segment] == nullptr) break;
      if (!is_block(root.segments[segment], bytes)) {
        say("index of %s: part %zu of its buckets lies in no block", name, segment);
        return;
      }
      most += Index::segment_buckets(segment);
    }
    if (root.buckets > most || root.buckets < kFirstBuckets) {
      say("index of %s: %" PRIu64 " buckets, room for %" PRIu64, name, root.buckets, most);
      return;
    }
    std::uint64_t count = 0;
    const std::uint64_t highest =
        std::min<std::uint64_t>(root.count, view_.size / sizeof(IndexNode));
    for (std::uint64_t number = 0; number < root.buckets; ++number) {
      const std::size_t segment = Index::segment_of(number);
      const IndexNode *node = nullptr;
      if (!read_at(root.segments[segment] + (number - Index::segment_start(segment)), &node))
        return;
      while (node != nullptr) {
        IndexNode copy{};
        if (!is_block(node, sizeof *node, true) || !read_at(node, &copy) ||
            Index::place_among(copy.hash, root.buckets) != number || ++count > highest) {
          say("index of %s: bucket %" PRIu64 " is broken", name, number);
          return;
        }
        if (!entry(node, copy.hash)) say("index of %s: an entry is damaged", name);
        node = copy.next;
      }
    }
    if (count != root.count) {
      say("index of %s: %" PRIu64 " entries, %" PRIu64 " found", name, root.count, count);
    }
  }

  static bool is_any(const IndexNode *, std::uint64_t) { return true; }
  void check_index(const char *name, const IndexRoot &root) { check_index(name, root, is_any); }

  // Whether so many bytes from there on lie in what was given out of the types area.
  bool is_in_types(const void *address, std::uint64_t bytes) const {
    const std::uint64_t offset = offset_of(address) - kTypesOffset;
    const std::uint64_t used = std::min<std::uint64_t>(header_.head.types_used, kTypesBytes);
    return offset % alignof(std::uint64_t) == 0 && offset <= used && bytes <= used - offset;
  }

  // A type record whose text ends, and whose variants lie beside it.
  bool is_type_record(const kelp_type_record *record, kelp_type_record *found) const {
    if (!is_in_types(record, sizeof *record) || !read_at(record, found) ||
        found->magic != KELP_TYPE_MAGIC) {
      return false;
    }
    const auto ends = [](const auto &text) {
      return std::memchr(text, '\0', sizeof text) != nullptr;
    };
    if (!ends(found->md5_text) || !ends(found->type_name) || !ends(found->module_name) ||
        !ends(found->kind)) {
      return false;
    }
    if (found->varinfo == nullptr) return true;
    kelp_variant_info info{};
    return is_in_types(found->varinfo, sizeof info) && read_at(found->varinfo, &info) &&
           info.n_variants >= 0 &&
           (info.n_variants == 0 ||
            is_in_types(info.entries,
                        static_cast<std::uint64_t>(info.n_variants) * sizeof(kelp_variant_entry)));
  }

  void check_types() {
    check_index("types", header_.head.directory.types,
                [&](const IndexNode *node, std::uint64_t hash) {
                  TypeEntry entry{};
                  kelp_type_record record{};
                  if (!read_at(node, &entry) || entry.key_length >= sizeof record.md5_text ||
                      !is_block(node, sizeof entry + entry.key_length) ||
                      !is_in_types(entry.copy, sizeof *entry.copy) ||
                      !is_type_record(&entry.copy->record, &record)) {
                    return false;
                  }
                  const char *key =
                      reinterpret_cast<const char *>(view_.bytes + offset_of(node) + sizeof entry);
                  return hash_of(key, entry.key_length) == hash &&
                         std::strlen(record.md5_text) == entry.key_length &&
                         std::memcmp(record.md5_text, key, entry.key_length) == 0;
                });
  }

  // A mapping that its indexes agree on, of an object that is there and says that it is mapped.
  bool is_mapping(const void *address) {
    kelp_oid_mapping mapping{};
    kelp_object_header object{};
    return is_block(address, sizeof mapping) && read_at(address, &mapping) &&
           mapping.by_id.owner == address && mapping.by_page.owner == address &&
           mapping.by_object.hash == mix(reinterpret_cast<std::uintptr_t>(mapping.object)) &&
           is_block(mapping.object, sizeof object, true) && read_at(mapping.object, &object) &&
           (object.obj_flags & OBJ_OID_MAPPED) != 0;
  }
  bool is_link_of_mapping(const IndexNode *node, std::size_t offset) {
    IndexLink<kelp_oid_mapping> link{};
    return read_at(node, &link) && offset_of(link.owner) + offset == offset_of(node) &&
           is_block(link.owner, sizeof *link.owner);
  }

  void check_oids() {
    const Directory &directory = header_.head.directory;
    check_index("objects with an OID", directory.oids_by_object,
                [&](const IndexNode *node, std::uint64_t) { return is_mapping(node); });
    check_index("OIDs", directory.oids_by_id, [&](const IndexNode *node, std::uint64_t) {
      return is_link_of_mapping(node, offsetof(kelp_oid_mapping, by_id));
    });
    check_index("OIDs by page", directory.oids_by_page, [&](const IndexNode *node, std::uint64_t) {
      return is_link_of_mapping(node, offsetof(kelp_oid_mapping, by_page));
    });
  }

  void check_directory() {
    const Directory &directory = header_.head.directory;
    check_types();
    check_index("keys", directory.keys);
    check_index("tables", directory.tables);
    check_index("tables by address", directory.tables_by_address);
    check_oids();
    check_index("distances", directory.distances);
    check_index("distances by page", directory.distances_by_page);
    check_index("tenants", directory.tenants);
    check_index("tenants by table", directory.tenants_by_table);
    const auto same = [&](const char *what, std::uint64_t one, std::uint64_t other) {
      if (one != other) say("%s: entered %" PRIu64 " and %" PRIu64 " times", what, one, other);
    };
    same("OIDs", directory.oids_by_object.count, directory.oids_by_id.count);
    same("OIDs", directory.oids_by_object.count, directory.oids_by_page.count);
    same("distances", directory.distances.count, directory.distances_by_page.count);
    same("distances", directory.distances.count, directory.distance_count);
    same("tenants", directory.tenants.count, directory.tenants_by_table.count);
    if (directory.toc_root != nullptr && !is_block(directory.toc_root, sizeof(kelp_toc_root))) {
      say("the root of the table of contents lies in no block");
    }
  }

  // --- tables ---

  void check_tables() {
    const Directory &directory = header_.head.directory;
    if (directory.table_list == nullptr) return;
    kelp_table_list list{};
    if (!is_block(directory.table_list, sizeof list) || !read_at(directory.table_list, &list)) {
      say("the list of tables lies in no block");
      return;
    }
    const void *link = &directory.table_list->first;
    std::unordered_set<const void *> met;
    for (const kelp_table *at = list.first; at != nullptr;) {
      kelp_table table{};
      if (!is_block(at, sizeof table) || !read_at(at, &table) || !met.insert(at).second ||
          table.toc_prev != link) {
        say("the list of tables is broken at its entry %zu", met.size() + 1);
        return;
      }
      table.tbl_name[sizeof table.tbl_name - 1] = '\0';
      check_type(table.header.tinfo, "table", table.tbl_name);
      check_table(at, table);
      link = &at->toc_next;
      at = table.toc_next;
    }
    if (list.last_link != link) say("the list of tables does not end where it says");
    if (directory.tables_by_address.count > met.size()) {
      say("%" PRIu64 " tables in the table of contents, %zu in the list",
          directory.tables_by_address.count, met.size());
    }
  }

  // Whether the address is that of a type record of the kind in the types area.
  bool check_type(const kelp_type_record *record, const char *kind, const char *where) {
    kelp_type_record found{};
    if (!is_type_record(record, &found) || std::strncmp(found.kind, kind, sizeof found.kind) != 0) {
      say("table '%.100s': what stands for a type record is none of kind %s", where, kind);
      return false;
    }
    return true;
  }

  struct Visit {
    const e_avl_node *node;
    const e_avl_node *parent;
  };

  // Each node once, within a record of this table, linked both ways, balanced as it says.
  void check_table(const kelp_table *address, const kelp_table &table) {
    std::uint64_t records = 0;
    std::uint64_t shadows = 0;
    std::unordered_set<const void *> met;
    const int height =
        check_subtree(address, table, table.avl_root.top, nullptr, 0, met, &records, &shadows);
    if (height < 0) return;
    if (records != table.record_count || records != table.avl_aux) {
      say("table '%.100s': %u records and %" PRIu64 " nodes, %" PRIu64 " found", table.tbl_name,
          table.record_count, table.avl_aux, records);
    }
    if (shadows != table.shadow_count) {
      say("table '%.100s': %u shadow records, %" PRIu64 " found", table.tbl_name,
          table.shadow_count, shadows);
    }
  }

  // The height of the subtree, -1 when it is broken; a sound tree is less than 64 high.
  int check_subtree(const kelp_table *address, const kelp_table &table, const e_avl_node *node,
                    const e_avl_node *parent, int depth, std::unordered_set<const void *> &met,
                    std::uint64_t *records, std::uint64_t *shadows) {
    if (node == nullptr) return 0;
    constexpr int kHighest = 64;
    constexpr std::size_t kNodeOffset = offsetof(kelp_record, avl_node);
    kelp_record record{};
    const auto *at =
        reinterpret_cast<const std::byte *>(reinterpret_cast<std::uintptr_t>(node) - kNodeOffset);
    if (depth > kHighest || !is_block(at, sizeof record) || !read_at(at, &record) ||
        !met.insert(node).second || record.avl_node.parent != parent) {
      say("table '%.100s': its tree is broken below record %" PRIu64, table.tbl_name, *records);
      return -1;
    }
    const int left =
        check_subtree(address, table, record.avl_node.left, node, depth + 1, met, records, shadows);
    const int right = left < 0 ? -1
                               : check_subtree(address, table, record.avl_node.right, node,
                                               depth + 1, met, records, shadows);
    if (right < 0) return -1;
    ++*records;
    if (record.src == KELP_SRC_SHADOW) ++*shadows;
    if (right - left != record.avl_node.balance || right - left > 1 || left - right > 1) {
      say("table '%.100s': a node with subtrees of heights %d and %d says %d", table.tbl_name, left,
          right, record.avl_node.balance);
    }
    check_type(record.header.tinfo, "table_record", table.tbl_name);
    if (record.record_table != address) {
      say("table '%.100s': a record in its tree names another table", table.tbl_name);
    }
    if (record.objects[0] != nullptr && !is_block(record.objects[0], sizeof(kelp_object_header))) {
      say("table '%.100s': the object of a record lies in no block of the store", table.tbl_name);
    }
    return 1 + std::max(left, right);
  }

  // --- feeds ---

  void check_feeds() {
    const Directory &directory = header_.head.directory;
    std::vector<const FeedTable *> feeds;
    check_index("feeds", directory.feeds, [&](const IndexNode *node, std::uint64_t hash) {
      const auto *at = reinterpret_cast<const FeedTable *>(node);
      FeedTable feed{};
      kelp_table table{};
      if (!is_block(at, sizeof feed) || !read_at(at, &feed) ||
          hash != mix(reinterpret_cast<std::uintptr_t>(feed.table)) ||
          !is_block(feed.table, sizeof table) || !read_at(feed.table, &table) ||
          table.runtime_state != at) {
        return false;
      }
      feeds.push_back(at);
      return true;
    });
    check_index("entries of feeds", directory.feed_entries,
                [&](const IndexNode *node, std::uint64_t hash) {
                  FeedEntry entry{};
                  return is_block(node, sizeof entry) && read_at(node, &entry) &&
                         hash == mix(reinterpret_cast<std::uintptr_t>(entry.record)) &&
                         is_block(entry.record, sizeof(kelp_record)) &&
                         std::find(feeds.begin(), feeds.end(), entry.feed) != feeds.end();
                });
    std::uint64_t entries = 0;
    for (const FeedTable *feed : feeds) entries += check_feed(feed);
    if (entries != directory.feed_entries.count) {
      say("feeds: %" PRIu64 " entries in their indexes, %" PRIu64 " in their orders",
          directory.feed_entries.count, entries);
    }
  }

  // How many entries the feed has in its order.
  std::uint64_t check_feed(const FeedTable *address) {
    FeedTable feed{};
    if (!read_at(address, &feed)) return 0;
    std::uint64_t in_state[4] = {};
    std::uint64_t last = 0;
    const std::uint64_t found = check_feed_list(
        address, "order", feed.order, &FeedEntry::order, [&](const FeedEntry &each) {
          const auto state = static_cast<std::uint32_t>(each.state);
          if (state > 3 || each.sequence <= last || each.sequence > feed.sequence) return false;
          last = each.sequence;
          ++in_state[state];
          return true;
        });
    const std::uint64_t waiting =
        check_feed_list(address, "list of marked records", feed.waiting, &FeedEntry::waiting,
                        [](const FeedEntry &each) { return each.state == FeedState::marked; });
    const std::uint64_t marked = in_state[static_cast<std::uint32_t>(FeedState::marked)];
    const std::uint64_t gone = in_state[static_cast<std::uint32_t>(FeedState::gone)];
    if (marked != feed.marked || marked != waiting || gone != feed.gone) {
      say("a feed: %" PRIu64 " records marked and %" PRIu64 " gone, found %" PRIu64 ", %" PRIu64
          " in their list, and %" PRIu64,
          feed.marked, feed.gone, marked, waiting, gone);
    }
    return found;
  }

  template <typename Test>
  std::uint64_t check_feed_list(const FeedTable *feed, const char *what, const FeedList &list,
                                FeedLinks FeedEntry::*links, Test &&belongs) {
    std::uint64_t found = 0;
    const FeedEntry *before = nullptr;
    for (const FeedEntry *at = list.first; at != nullptr;) {
      FeedEntry entry{};
      if (!is_block(at, sizeof entry) || !read_at(at, &entry) || entry.feed != feed ||
          (entry.*links).previous != before || !belongs(entry) ||
          ++found > header_.head.directory.feed_entries.count) {
        say("a feed: its %s is broken at its entry %" PRIu64, what, found);
        return found;
      }
      before = at;
      at = (entry.*links).next;
    }
    if (list.last != before) say("a feed: its %s does not end where it says", what);
    return found;
  }

  View view_;
  const Finding &finding_;
  std::uint64_t findings_ = 0;
  Header header_{};
  std::vector<Span> spans_;
  std::unordered_set<std::uint64_t> runs_;
  std::unordered_set<std::uint64_t> with_room_;
  Statistics found_{};
};

}  // namespace

std::uint64_t check(const View &view, const Finding &finding) {
  return Checker(view, finding).run();
}

std::uint64_t check_types(const View &view, const Finding &finding) {
  return Checker(view, finding).run_types();
}

}  // namespace kelp::store
