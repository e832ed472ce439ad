// The indexes of a store's directory: their chains and counts, type records, OIDs.
#pragma once

#include <algorithm>

#include "store/check_heap.hpp"

namespace kelp::store {

class DirectoryCheck : public HeapCheck {
 public:
  using HeapCheck::HeapCheck;

  void check_types();
  void check_directory();

 protected:
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
      const std::uint64_t bytes = Index::segment_buckets(segment) * sizeof(IndexBucket);
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
        std::min<std::uint64_t>(root.count, view().size / sizeof(IndexNode));
    for (std::uint64_t number = 0; number < root.buckets; ++number) {
      const std::size_t segment = Index::segment_of(number);
      IndexBucket bucket{};
      if (!read_at(root.segments[segment] + (number - Index::segment_start(segment)), &bucket))
        return;
      IndexNode copy{};
      const auto is_node = [&](const IndexNode *node) {
        if (!is_block(node, sizeof *node, true) || !read_at(node, &copy) ||
            Index::place_among(copy.hash, root.buckets) != number || ++count > highest) {
          return false;
        }
        if (!entry(node, copy.hash)) say("index of %s: an entry is damaged", name);
        return true;
      };
      bool is_whole = true;
      bool has_room = false;
      for (std::size_t place = 0; is_whole && place < IndexBucket::kPlaces; ++place) {
        const IndexNode *node = bucket.nodes[place];
        is_whole =
            node == nullptr || (!has_room && is_node(node) &&
                                bucket.hashes[place] == static_cast<std::uint32_t>(copy.hash));
        has_room |= node == nullptr;
      }
      is_whole &= bucket.further == nullptr || !has_room;
      for (const IndexNode *node = bucket.further; is_whole && node != nullptr; node = copy.next) {
        is_whole = is_node(node);
      }
      if (!is_whole) {
        say("index of %s: bucket %" PRIu64 " is broken", name, number);
        return;
      }
    }
    if (count != root.count) {
      say("index of %s: %" PRIu64 " entries, %" PRIu64 " found", name, root.count, count);
    }
  }

  static bool is_any(const IndexNode *, std::uint64_t) { return true; }
  void check_index(const char *name, const IndexRoot &root) { check_index(name, root, is_any); }

  // A type record whose text ends, and whose variants lie beside it.
  bool is_type_record(const kelp_type_record *record, kelp_type_record *found) const;

 private:
  bool is_in_types(const void *address, std::uint64_t bytes) const;
  bool is_mapping(const void *address);
  void check_oids();
};

}  // namespace kelp::store
