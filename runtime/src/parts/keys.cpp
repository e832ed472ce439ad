// Finding and setting keys, and what the process remembers of what stood under them.
#include "parts/keys.hpp"

#include <cstring>
#include <new>
#include <string_view>

#include "base/undying.hpp"

namespace kelp {

namespace {

// What each pointer was seen under, in all stores of the process. Never destroyed.
struct Seen {
  struct Place {
    std::uint64_t place;  // the mix of store and key, 0 once there were two
    std::uint64_t hash;   // of the key
  };
  std::mutex mutex;
  std::unordered_map<const void *, Place> places;
};

Seen &seen() { return undying<Seen>(); }

}  // namespace

void Keys::attach(store::Memory &memory, store::Directory &directory,
                  const std::uint8_t (&identity)[16]) {
  memory_ = &memory;
  directory_ = &directory;
  store_ = store::hash_of(identity, sizeof identity);
}

Keys::Entry *Keys::find_entry(std::uint64_t hash, const char *key, std::size_t length) const {
  return keys().find<Entry>(hash, [&](Entry &entry) {
    return std::string_view(entry.key(), entry.key_length) == std::string_view(key, length);
  });
}

// Whether no entry before this one holds its pointer.
bool Keys::is_first(const Entry &entry) const {
  bool first = true;
  bool reached = false;
  keys().each<Entry>([&](const Entry &other) {
    reached = reached || &other == &entry;
    if (!reached && other.pointer == entry.pointer) first = false;
  });
  return first;
}

// Of a key in all stores, never 0.
std::uint64_t Keys::place_of(std::uint64_t hash) const { return store::mix(store_ ^ hash) | 1; }

void Keys::remember(const void *pointer, std::uint64_t hash) const {
  const std::uint64_t place = place_of(hash);
  Seen &all = seen();
  const std::lock_guard lock(all.mutex);
  const auto [known, fresh] = all.places.try_emplace(pointer, Seen::Place{place, hash});
  if (!fresh && known->second.place != place) known->second.place = 0;
}

void *Keys::find(const char *key) const {
  const std::size_t length = std::strlen(key);
  const std::uint64_t hash = store::hash_of(key, length);
  const std::lock_guard lock(mutex_);
  const Entry *entry = find_entry(hash, key, length);
  if (entry == nullptr) return nullptr;
  remember(entry->pointer, hash);
  return entry->pointer;
}

void Keys::set(const char *key, void *pointer) {
  const std::size_t length = std::strlen(key);
  const std::uint64_t hash = store::hash_of(key, length);
  const std::lock_guard lock(mutex_);
  Entry *entry = find_entry(hash, key, length);
  if (pointer == nullptr) {
    if (entry == nullptr) return;
    keys().remove(&entry->node);
    memory_->give_back(entry);
    return;
  }
  remember(pointer, hash);
  if (entry != nullptr) {
    memory_->set(entry->pointer, pointer);
    return;
  }
  entry = static_cast<Entry *>(memory_->take(sizeof(Entry) + length));
  if (entry == nullptr) throw std::bad_alloc();
  *entry = {};
  entry->pointer = pointer;
  entry->key_length = length;
  std::memcpy(entry->key(), key, length);
  try {
    keys().insert(&entry->node, hash);
  } catch (...) {
    memory_->give_back(entry);
    throw;
  }
}

bool Keys::confirms(const void *pointer) const {
  Seen::Place seen_under{};
  {
    Seen &all = seen();
    const std::lock_guard lock(all.mutex);
    const auto known = all.places.find(pointer);
    if (known == all.places.end()) return true;
    seen_under = known->second;
  }
  if (seen_under.place != place_of(seen_under.hash)) return false;
  const std::lock_guard lock(mutex_);
  return keys().find<Entry>(seen_under.hash, [&](const Entry &entry) {
    return entry.pointer == pointer;
  }) != nullptr;
}

}  // namespace kelp
