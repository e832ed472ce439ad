// Keeping the distances, by page.
#include "parts/distances.hpp"

#include <algorithm>

namespace kelp {

namespace {

std::uintptr_t address_of(const void *object) { return reinterpret_cast<std::uintptr_t>(object); }

}  // namespace

void Distances::set(const void *object, std::uint32_t distance) {
  const std::uintptr_t key = address_of(object);
  const std::lock_guard lock(mutex_);
  Page &page = pages_[key / kPageBytes];
  const auto place = std::lower_bound(
      page.begin(), page.end(), key,
      [](const Entry &entry, std::uintptr_t wanted) { return entry.object < wanted; });
  if (place != page.end() && place->object == key) {
    place->distance = distance;
    return;
  }
  page.insert(place, Entry{key, distance});
  ++count_;
}

std::uint32_t Distances::get(const void *object) const {
  const std::uintptr_t key = address_of(object);
  const std::lock_guard lock(mutex_);
  const auto page = pages_.find(key / kPageBytes);
  if (page == pages_.end()) return 0;
  const auto place = std::lower_bound(
      page->second.begin(), page->second.end(), key,
      [](const Entry &entry, std::uintptr_t wanted) { return entry.object < wanted; });
  return place != page->second.end() && place->object == key ? place->distance : 0;
}

void Distances::drop(const void *object) { drop_range(object, 1); }

void Distances::drop_range(const void *start, std::size_t length) {
  if (empty() || length == 0) return;
  const std::uintptr_t first = address_of(start);
  const std::uintptr_t end = first + length;
  const std::lock_guard lock(mutex_);
  const std::size_t pages = (end - 1) / kPageBytes - first / kPageBytes + 1;
  if (pages > pages_.size()) {
    for (auto page = pages_.begin(); page != pages_.end();) drop_in_page(page++, first, end);
    return;
  }
  for (std::uintptr_t number = first / kPageBytes; number <= (end - 1) / kPageBytes; ++number) {
    const auto page = pages_.find(number);
    if (page != pages_.end()) drop_in_page(page, first, end);
  }
}

void Distances::drop_in_page(std::unordered_map<std::uintptr_t, Page>::iterator page,
                             std::uintptr_t first, std::uintptr_t end) {
  count_ -= std::erase_if(page->second, [&](const Entry &entry) {
    return entry.object >= first && entry.object < end;
  });
  if (page->second.empty()) pages_.erase(page);
}

}  // namespace kelp
