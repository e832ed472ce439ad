// Entering, removing and growing. A table that cannot grow has more nodes without a place.
#include "store/index.hpp"

#include <cstring>
#include <new>

namespace kelp::store {

bool Index::provide_segment(std::size_t segment) {
  if (segment >= kIndexSegments) return false;
  if (root_.segments[segment] != nullptr) return true;
  const std::size_t bytes = segment_buckets(segment) * sizeof(IndexBucket);
  auto *made = static_cast<IndexBucket *>(memory_.take(bytes));
  if (made == nullptr) return false;
  std::memset(made, 0, bytes);
  memory_.set(root_.segments[segment], made);
  return true;
}

void Index::put(IndexBucket &bucket, IndexNode *node, std::uint32_t hash) {
  for (std::size_t place = 0; place < IndexBucket::kPlaces; ++place) {
    if (bucket.nodes[place] != nullptr) continue;
    bucket.hashes[place] = hash;
    bucket.nodes[place] = node;
    return;
  }
  memory_.set(node->next, bucket.further);
  bucket.further = node;
}

void Index::insert(IndexNode *node, std::uint64_t hash) {
  if (root_.buckets == 0) {
    if (!provide_segment(0)) throw std::bad_alloc();
    memory_.set(root_.buckets, kFirstBuckets);
  }
  IndexBucket &bucket = *bucket_at(place_of(hash));
  memory_.touch(node, sizeof *node);
  node->hash = hash;
  node->next = nullptr;
  memory_.touch(&bucket, sizeof bucket);
  put(bucket, node, static_cast<std::uint32_t>(hash));
  memory_.set(root_.count, root_.count + 1);
  if (root_.count > kNodesOfBucket * root_.buckets && provide_segment(segment_of(root_.buckets))) {
    split_next();
  }
}

namespace {

// Asks for a bucket behind this one, which a later growth changes.
void ask_for(const IndexBucket &bucket, std::size_t further) {
  const char *at = reinterpret_cast<const char *>(&bucket + further);
  __builtin_prefetch(at, 1);
  __builtin_prefetch(at + sizeof bucket / 2, 1);
}

}  // namespace

// The bucket behind the last one takes over its part of the nodes of another: those with one more
// bit in their hashes.
void Index::split_next() {
  const std::uint64_t fresh = root_.buckets;
  const std::uint64_t bit = std::bit_floor(fresh);
  IndexBucket &from = *bucket_at(fresh - bit);
  IndexBucket &to = *bucket_at(fresh);
  ask_for(from, 1);
  ask_for(to, 1);
  memory_.set(root_.buckets, fresh + 1);
  memory_.touch(&from, sizeof from);
  memory_.touch(&to, sizeof to);
  const IndexBucket whole = from;
  from = to = {};
  for (std::size_t place = 0; place < IndexBucket::kPlaces; ++place) {
    if (whole.nodes[place] == nullptr) break;
    const std::uint32_t hash = whole.hashes[place];
    put((hash & bit) != 0 ? to : from, whole.nodes[place], hash);
  }
  for (IndexNode *node = whole.further; node != nullptr;) {
    IndexNode *following = node->next;
    put((node->hash & bit) != 0 ? to : from, node, static_cast<std::uint32_t>(node->hash));
    node = following;
  }
}

// The place goes to one of the further nodes, else to the one in the last place.
void Index::remove(IndexNode *node) {
  if (root_.buckets == 0) return;
  IndexBucket &bucket = *bucket_at(place_of(node->hash));
  std::size_t taken = 0;
  std::size_t found = IndexBucket::kPlaces;
  while (taken < IndexBucket::kPlaces && bucket.nodes[taken] != nullptr) {
    if (bucket.nodes[taken] == node) found = taken;
    ++taken;
  }
  if (found != IndexBucket::kPlaces) {
    memory_.touch(&bucket, sizeof bucket);
    if (IndexNode *moved = bucket.further) {
      bucket.further = moved->next;
      bucket.nodes[found] = moved;
      bucket.hashes[found] = static_cast<std::uint32_t>(moved->hash);
    } else {
      bucket.nodes[found] = bucket.nodes[taken - 1];
      bucket.hashes[found] = bucket.hashes[taken - 1];
      bucket.nodes[taken - 1] = nullptr;
    }
  } else {
    IndexNode **link = &bucket.further;
    while (*link != nullptr && *link != node) link = &(*link)->next;
    if (*link == nullptr) return;
    memory_.set(*link, node->next);
  }
  memory_.set(root_.count, root_.count - 1);
}

}  // namespace kelp::store
