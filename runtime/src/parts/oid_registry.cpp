// Keeping the mappings. A new id is the first half of the database's identity and a number that
// counts up, so ids of different databases and processes do not meet.
#include "parts/oid_registry.hpp"

#include <unistd.h>

#include <chrono>

namespace kelp {

namespace {

// A handle_word below this says that nothing can be resolved.
constexpr std::uint64_t kFirstSerial = 256;

}  // namespace

OidRegistry::OidRegistry() : next_serial_(kFirstSerial) {
  if (getentropy(identity_, sizeof identity_) != 0) {
    // Unique enough where the system has no randomness: this process, this moment, this database.
    const std::uint64_t words[2] = {
        static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()) ^
            static_cast<std::uint64_t>(getpid()) << 40,
        reinterpret_cast<std::uintptr_t>(this)};
    std::memcpy(identity_, words, sizeof identity_);
  }
  identity_[0] |= 1;  // never all zero, which would be an empty OID
}

OidRegistry::Id OidRegistry::id_of(const kelp_oid &oid) {
  Id id;
  std::memcpy(id.data(), oid.id, id.size());
  return id;
}

kelp_oid OidRegistry::next_oid() {
  kelp_oid oid = {};
  oid.handle_word = next_serial_++;
  std::memcpy(oid.id, identity_, 8);
  for (int i = 0; i < 8; ++i) {
    oid.id[8 + i] = static_cast<std::uint8_t>(oid.handle_word >> (56 - 8 * i));
  }
  std::memcpy(oid.source, identity_, sizeof identity_);
  return oid;
}

kelp_oid_mapping *OidRegistry::find(const void *object) {
  const std::lock_guard lock(mutex_);
  const auto found = by_object_.find(object);
  return found == by_object_.end() ? nullptr : &found->second;
}

kelp_oid_mapping *OidRegistry::find(const kelp_oid &oid) const {
  if (oid.handle_word < kFirstSerial) return nullptr;
  const std::lock_guard lock(mutex_);
  const auto found = by_id_.find(id_of(oid));
  return found == by_id_.end() ? nullptr : found->second;
}

kelp_oid_mapping *OidRegistry::add(void *object, const kelp_oid *wanted) {
  const std::lock_guard lock(mutex_);
  kelp_oid_mapping mapping;
  mapping.oid = next_oid();
  if (wanted != nullptr) {
    const std::uint64_t own_word = mapping.oid.handle_word;
    mapping.oid = *wanted;
    if (wanted->handle_word < kFirstSerial) mapping.oid.handle_word = own_word;
  }
  mapping.object = object;
  const auto [by_id, fresh] = by_id_.try_emplace(id_of(mapping.oid), nullptr);
  if (!fresh) return nullptr;
  try {
    by_id->second = &by_object_.try_emplace(object, mapping).first->second;
  } catch (...) {
    by_id_.erase(by_id);
    throw;
  }
  return by_id->second;
}

OidRegistry::ByObject::iterator OidRegistry::erase(ByObject::iterator mapping) {
  by_id_.erase(id_of(mapping->second.oid));
  return by_object_.erase(mapping);
}

void OidRegistry::remove(const void *object) {
  const std::lock_guard lock(mutex_);
  const auto found = by_object_.find(object);
  if (found != by_object_.end()) erase(found);
}

void OidRegistry::remove_range(const void *start, std::size_t length) {
  const void *end = static_cast<const char *>(start) + length;
  const std::lock_guard lock(mutex_);
  auto found = by_object_.lower_bound(start);
  while (found != by_object_.end() && (found->first == start || found->first < end)) {
    found = erase(found);
  }
}

std::vector<void *> OidRegistry::unreferenced() const {
  const std::lock_guard lock(mutex_);
  std::vector<void *> found;
  for (const auto &[object, mapping] : by_object_) {
    if (mapping.destroy_asked && mapping.references == 0) found.push_back(mapping.object);
  }
  return found;
}

}  // namespace kelp
