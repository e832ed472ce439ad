// A hash table in the memory of a database. A bucket names its first nodes with half of their
// hashes, so that looking, entering and growing read no node that they do not mean; further nodes
// link themselves. Buckets grow one at a time, so that no change touches more than two. What equal
// means is the caller's.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "base/mix.hpp"
#include "store/memory.hpp"

namespace kelp::store {

// A member of whatever is entered.
struct IndexNode {
  IndexNode *next;  // of those for which their bucket has no place
  std::uint64_t hash;
};

struct IndexBucket {
  static constexpr std::size_t kPlaces = 10;
  std::uint32_t hashes[kPlaces];  // the low halves
  IndexNode *further;             // none unless all places are taken
  IndexNode *nodes[kPlaces];      // from the front on
};
static_assert(sizeof(IndexBucket) == 128);

inline constexpr std::size_t kIndexSegments = 24;
inline constexpr std::uint64_t kFirstBuckets = 4;
inline constexpr std::uint64_t kMostBuckets = std::uint64_t{1} << 18;  // of one segment
inline constexpr std::uint64_t kNodesOfBucket = 5;                     // on the average

struct IndexRoot {
  std::uint64_t count;
  std::uint64_t buckets;
  // kFirstBuckets, as many again, twice as many ..., kMostBuckets from then on.
  IndexBucket *segments[kIndexSegments];
};

using kelp::hash_of;
using kelp::mix;

class Index {
 public:
  Index(Memory &memory, IndexRoot &root) : memory_(memory), root_(root) {}

  // Throws bad_alloc when not even the first buckets can be had; the table is unchanged then.
  void insert(IndexNode *node, std::uint64_t hash);
  void remove(IndexNode *node);

  // What match takes for it, of those that may have the hash; their nodes lie at this offset.
  template <typename Thing, std::size_t offset = 0, typename Match>
  Thing *find(std::uint64_t hash, Match &&match) const {
    if (root_.buckets == 0) return nullptr;
    const IndexBucket &bucket = *bucket_at(place_of(hash));
    for (std::size_t place = 0; place < IndexBucket::kPlaces; ++place) {
      IndexNode *node = bucket.nodes[place];
      if (node == nullptr) return nullptr;
      if (bucket.hashes[place] != static_cast<std::uint32_t>(hash)) continue;
      if (Thing *thing = thing_of<Thing, offset>(node); match(*thing)) return thing;
    }
    for (IndexNode *node = bucket.further; node != nullptr; node = node->next) {
      if (node->hash != hash) continue;
      if (Thing *thing = thing_of<Thing, offset>(node); match(*thing)) return thing;
    }
    return nullptr;
  }

  // Calls visit with each thing; it may not change the table.
  template <typename Thing, std::size_t offset = 0, typename Visit>
  void each(Visit &&visit) const {
    for (std::uint64_t number = 0; number < root_.buckets; ++number) {
      const IndexBucket &bucket = *bucket_at(number);
      for (IndexNode *node : bucket.nodes) {
        if (node != nullptr) visit(*thing_of<Thing, offset>(node));
      }
      for (IndexNode *node = bucket.further; node != nullptr; node = node->next) {
        visit(*thing_of<Thing, offset>(node));
      }
    }
  }

  std::uint64_t count() const { return root_.count; }

  // Where a bucket lies: which segment, and the place in it.
  static std::size_t segment_of(std::uint64_t number) {
    if (number >= 2 * kMostBuckets) {
      return static_cast<std::size_t>(number / kMostBuckets) + kFirstLongest - 1;
    }
    return static_cast<std::size_t>(std::bit_width(number / kFirstBuckets));
  }
  static std::uint64_t segment_start(std::size_t segment) {
    if (segment >= kFirstLongest) return (segment - kFirstLongest + 1) * kMostBuckets;
    return segment == 0 ? 0 : kFirstBuckets << (segment - 1);
  }
  static std::uint64_t segment_buckets(std::size_t segment) {
    if (segment >= kFirstLongest) return kMostBuckets;
    return segment == 0 ? kFirstBuckets : kFirstBuckets << (segment - 1);
  }
  static std::uint64_t place_among(std::uint64_t hash, std::uint64_t buckets) {
    const std::uint64_t half = std::bit_floor(buckets);
    const std::uint64_t place = hash & (2 * half - 1);
    return place < buckets ? place : place & (half - 1);
  }

 private:
  // The first segment of kMostBuckets.
  static constexpr std::size_t kFirstLongest = std::bit_width(kMostBuckets / kFirstBuckets);

  template <typename Thing, std::size_t offset>
  static Thing *thing_of(IndexNode *node) {
    return reinterpret_cast<Thing *>(reinterpret_cast<std::byte *>(node) - offset);
  }
  std::uint64_t place_of(std::uint64_t hash) const { return place_among(hash, root_.buckets); }
  IndexBucket *bucket_at(std::uint64_t number) const {
    const std::size_t segment = segment_of(number);
    return root_.segments[segment] + (number - segment_start(segment));
  }
  // The bucket was announced.
  void put(IndexBucket &bucket, IndexNode *node, std::uint32_t hash);
  bool provide_segment(std::size_t segment);
  void split_next();

  Memory &memory_;
  IndexRoot &root_;
};

}  // namespace kelp::store
