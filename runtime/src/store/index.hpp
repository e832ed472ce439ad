// A hash table in the memory of a database: nodes link themselves, buckets grow one at a time, so
// that no change touches more than a few words. What equal means is the caller's.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "base/mix.hpp"
#include "store/memory.hpp"

namespace kelp::store {

// The first member of whatever is entered.
struct IndexNode {
  IndexNode *next;
  std::uint64_t hash;
};

// A second entering of the same thing.
template <typename Owner>
struct IndexLink {
  IndexNode node;
  Owner *owner;
};

inline constexpr std::size_t kIndexSegments = 20;
inline constexpr std::uint64_t kFirstBuckets = 16;

struct IndexRoot {
  std::uint64_t count;
  std::uint64_t buckets;
  IndexNode **segments[kIndexSegments];  // kFirstBuckets, as many again, twice as many ...
};

using kelp::hash_of;
using kelp::mix;

class Index {
 public:
  Index(Memory &memory, IndexRoot &root) : memory_(memory), root_(root) {}

  // Throws bad_alloc when not even the first buckets can be had; the table is unchanged then.
  void insert(IndexNode *node, std::uint64_t hash);
  void remove(IndexNode *node);

  template <typename Node, typename Match>
  Node *find(std::uint64_t hash, Match &&match) const {
    if (root_.buckets == 0) return nullptr;
    for (IndexNode *node = *bucket(place_of(hash)); node != nullptr; node = node->next) {
      if (node->hash == hash && match(*reinterpret_cast<Node *>(node))) {
        return reinterpret_cast<Node *>(node);
      }
    }
    return nullptr;
  }

  // Calls visit with each node; it may not change the table.
  template <typename Node, typename Visit>
  void each(Visit &&visit) const {
    for (std::uint64_t number = 0; number < root_.buckets; ++number) {
      for (IndexNode *node = *bucket(number); node != nullptr; node = node->next) {
        visit(*reinterpret_cast<Node *>(node));
      }
    }
  }

  std::uint64_t count() const { return root_.count; }

  // Where a bucket lies: which segment, and the place in it.
  static std::size_t segment_of(std::uint64_t number) {
    return number < kFirstBuckets
               ? 0
               : static_cast<std::size_t>(std::bit_width(number / kFirstBuckets));
  }
  static std::uint64_t segment_start(std::size_t segment) {
    return segment == 0 ? 0 : kFirstBuckets << (segment - 1);
  }
  static std::uint64_t segment_buckets(std::size_t segment) {
    return segment == 0 ? kFirstBuckets : kFirstBuckets << (segment - 1);
  }
  static std::uint64_t place_among(std::uint64_t hash, std::uint64_t buckets) {
    const std::uint64_t half = std::bit_floor(buckets);
    const std::uint64_t place = hash & (2 * half - 1);
    return place < buckets ? place : place & (half - 1);
  }

 private:
  std::uint64_t place_of(std::uint64_t hash) const { return place_among(hash, root_.buckets); }
  IndexNode **bucket(std::uint64_t number) const {
    const std::size_t segment = segment_of(number);
    return root_.segments[segment] + (number - segment_start(segment));
  }
  bool provide_segment(std::size_t segment);
  void split_next();

  Memory &memory_;
  IndexRoot &root_;
};

}  // namespace kelp::store
