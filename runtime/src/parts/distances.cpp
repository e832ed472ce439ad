// Keeping the distances.
#include "parts/distances.hpp"

#include <new>

namespace kelp {

namespace {

std::uintptr_t address_of(const void *object) { return reinterpret_cast<std::uintptr_t>(object); }

}  // namespace

void Distances::attach(store::Memory &memory, store::Directory &directory) {
  memory_ = &memory;
  directory_ = &directory;
}

Distances::Entry *Distances::find(std::uintptr_t object) const {
  return by_object().find<Entry>(store::mix(object),
                                 [&](const Entry &entry) { return entry.object == object; });
}

void Distances::change_count(std::uint64_t by) {
  memory_->touch(&directory_->distance_count, sizeof directory_->distance_count);
  __atomic_fetch_add(&directory_->distance_count, by, __ATOMIC_RELAXED);
}

void Distances::set(const void *object, std::uint32_t distance) {
  const std::uintptr_t key = address_of(object);
  const std::lock_guard lock(mutex_);
  if (Entry *known = find(key)) {
    memory_->set(known->distance, std::uint64_t{distance});
    return;
  }
  auto *entry = static_cast<Entry *>(memory_->take(sizeof(Entry)));
  if (entry == nullptr) throw std::bad_alloc();
  *entry = {};
  entry->object = key;
  entry->distance = distance;
  try {
    by_object().insert(&entry->by_object, store::mix(key));
    by_page().insert(&entry->by_page, store::mix(key / kPageBytes));
  } catch (...) {
    by_object().remove(&entry->by_object);
    memory_->give_back(entry);
    throw;
  }
  change_count(1);
}

std::uint32_t Distances::get(const void *object) const {
  const std::lock_guard lock(mutex_);
  const Entry *entry = find(address_of(object));
  return entry == nullptr ? 0 : static_cast<std::uint32_t>(entry->distance);
}

void Distances::drop(const void *object) { drop_range(object, 1); }

void Distances::remove(Entry *entry) {
  by_object().remove(&entry->by_object);
  by_page().remove(&entry->by_page);
  memory_->give_back(entry);
  change_count(UINT64_MAX);
}

void Distances::drop_range(const void *start, std::size_t length) {
  if (empty() || length == 0) return;
  const std::uintptr_t first = address_of(start);
  const std::uintptr_t end = first + length;
  const std::lock_guard lock(mutex_);
  for (std::uintptr_t page = first / kPageBytes; page <= (end - 1) / kPageBytes; ++page) {
    const auto within = [&](const Entry &entry) {
      return entry.object / kPageBytes == page && entry.object >= first && entry.object < end;
    };
    while (Entry *entry =
               by_page().find<Entry, offsetof(Entry, by_page)>(store::mix(page), within)) {
      remove(entry);
    }
  }
}

}  // namespace kelp
