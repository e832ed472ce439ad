// Entering, removing and growing. A table that cannot grow only gets longer chains.
#include "store/index.hpp"

#include <cstring>
#include <new>

namespace kelp::store {

bool Index::provide_segment(std::size_t segment) {
  if (segment >= kIndexSegments) return false;
  if (root_.segments[segment] != nullptr) return true;
  const std::size_t bytes = segment_buckets(segment) * sizeof(IndexNode *);
  auto **made = static_cast<IndexNode **>(memory_.take(bytes));
  if (made == nullptr) return false;
  std::memset(made, 0, bytes);
  memory_.set(root_.segments[segment], made);
  return true;
}

void Index::insert(IndexNode *node, std::uint64_t hash) {
  if (root_.buckets == 0) {
    if (!provide_segment(0)) throw std::bad_alloc();
    memory_.set(root_.buckets, kFirstBuckets);
  }
  IndexNode **place = bucket(place_of(hash));
  memory_.touch(node, sizeof *node);
  node->hash = hash;
  node->next = *place;
  memory_.set(*place, node);
  memory_.set(root_.count, root_.count + 1);
  if (root_.count > root_.buckets && provide_segment(segment_of(root_.buckets))) split_next();
}

// The bucket behind the last one takes over its part of the nodes of another. Nodes lie anywhere:
// those of the buckets that come soon are asked for now.
void Index::split_next() {
  constexpr std::uint64_t kAhead = 8;
  const std::uint64_t fresh = root_.buckets;
  const std::uint64_t number = fresh & (std::bit_floor(fresh) - 1);
  if (number + kAhead < fresh) __builtin_prefetch(*bucket(number + kAhead));
  IndexNode **from = bucket(number);
  memory_.set(root_.buckets, fresh + 1);
  IndexNode **to = bucket(fresh);
  memory_.touch(from, sizeof *from);
  memory_.touch(to, sizeof *to);
  IndexNode *node = *from;
  *from = *to = nullptr;
  while (node != nullptr) {
    IndexNode *following = node->next;
    IndexNode **place = place_of(node->hash) == fresh ? to : from;
    memory_.touch(&node->next, sizeof node->next);
    node->next = *place;
    *place = node;
    node = following;
  }
}

void Index::remove(IndexNode *node) {
  if (root_.buckets == 0) return;
  for (IndexNode **link = bucket(place_of(node->hash)); *link != nullptr; link = &(*link)->next) {
    if (*link != node) continue;
    memory_.set(*link, node->next);
    memory_.set(root_.count, root_.count - 1);
    return;
  }
}

}  // namespace kelp::store
