// Keeping the mappings. A new id is the first half of the database's identity and a number that
// counts up, so ids of different databases and processes do not meet.
#include "parts/oid_registry.hpp"

#include <unistd.h>

#include <chrono>
#include <cstring>
#include <mutex>
#include <new>

#include "kelp/quick.hpp"

namespace kelp {

namespace {

using store::mix;

// Ids of one database count up in their second half.
std::uint64_t hash_of_id(const std::uint8_t *id) {
  std::uint64_t database = 0;
  std::memcpy(&database, id, sizeof database);
  return hash_of_number(mix(database), quick::load_big_endian<std::uint64_t>(id + sizeof database));
}

}  // namespace

void make_identity(std::uint8_t (&identity)[16]) {
  if (getentropy(identity, sizeof identity) != 0) {
    // Unique enough where the system has no randomness: this process, this moment, this database.
    const std::uint64_t words[2] = {
        static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count()) ^
            static_cast<std::uint64_t>(getpid()) << 40,
        reinterpret_cast<std::uintptr_t>(&identity)};
    std::memcpy(identity, words, sizeof identity);
  }
  identity[0] |= 1;  // never all zero, which would be an empty OID
}

void OidRegistry::attach(store::Memory &memory, store::Directory &directory,
                         const std::uint8_t (&identity)[16]) {
  memory_ = &memory;
  directory_ = &directory;
  std::memcpy(identity_, identity, sizeof identity_);
}

void OidRegistry::part_from_parent() {
  if (getentropy(identity_ + 1, 7) != 0) identity_[1] ^= static_cast<std::uint8_t>(getpid());
}

kelp_oid OidRegistry::next_oid() {
  kelp_oid oid = {};
  oid.handle_word = directory_->next_oid;
  memory_->set(directory_->next_oid, oid.handle_word + 1);
  std::memcpy(oid.id, identity_, 8);
  for (int i = 0; i < 8; ++i) {
    oid.id[8 + i] = static_cast<std::uint8_t>(oid.handle_word >> (56 - 8 * i));
  }
  std::memcpy(oid.source, identity_, sizeof identity_);
  return oid;
}

kelp_oid_mapping *OidRegistry::find_object(const void *object) const {
  return by_object().find<kelp_oid_mapping>(
      hash_of_address(object),
      [&](const kelp_oid_mapping &mapping) { return mapping.object == object; });
}

kelp_oid_mapping *OidRegistry::find_id(const std::uint8_t *id) const {
  return by_id().find<kelp_oid_mapping, offsetof(kelp_oid_mapping, by_id)>(
      hash_of_id(id), [&](const kelp_oid_mapping &mapping) {
        return std::memcmp(mapping.oid.id, id, sizeof mapping.oid.id) == 0;
      });
}

kelp_oid_mapping *OidRegistry::find(const void *object) const {
  const std::lock_guard lock(mutex_);
  return find_object(object);
}

kelp_oid_mapping *OidRegistry::find(const kelp_oid &oid) const {
  if (oid.handle_word < store::kFirstOid) return nullptr;
  const std::lock_guard lock(mutex_);
  return find_id(oid.id);
}

kelp_oid_mapping *OidRegistry::add(void *object, const kelp_oid *wanted) {
  const std::lock_guard lock(mutex_);
  kelp_oid oid = next_oid();
  if (wanted != nullptr) {
    const std::uint64_t own_word = oid.handle_word;
    oid = *wanted;
    if (wanted->handle_word < store::kFirstOid) oid.handle_word = own_word;
  }
  if (find_id(oid.id) != nullptr) return nullptr;
  auto *mapping = static_cast<kelp_oid_mapping *>(memory_->take(sizeof(kelp_oid_mapping)));
  if (mapping == nullptr) throw std::bad_alloc();
  *mapping = {};
  mapping->oid = oid;
  mapping->object = object;
  try {
    by_object().insert(&mapping->by_object, hash_of_address(object));
    by_id().insert(&mapping->by_id, hash_of_id(oid.id));
  } catch (...) {
    end(mapping);
    throw;
  }
  return mapping;
}

void OidRegistry::set_references(kelp_oid_mapping *mapping, std::uint64_t references) {
  memory_->set(mapping->references, references);
}

void OidRegistry::ask_destroy(kelp_oid_mapping *mapping) {
  memory_->set(mapping->destroy_asked, std::uint64_t{1});
}

// What was not entered yet is not found, and stays out.
void OidRegistry::end(kelp_oid_mapping *mapping) {
  by_id().remove(&mapping->by_id);
  by_object().remove(&mapping->by_object);
  memory_->give_back(mapping);
}

void OidRegistry::remove(const void *object) {
  const std::lock_guard lock(mutex_);
  if (kelp_oid_mapping *mapping = find_object(object)) end(mapping);
}

void OidRegistry::remove_range(const void *start, std::size_t length) {
  const std::lock_guard lock(mutex_);
  if (directory_->oids_by_object.count == 0) return;
  const auto first = reinterpret_cast<std::uintptr_t>(start);
  const std::uintptr_t end_of_range = first + (length == 0 ? 1 : length);
  const auto within = [&](const kelp_oid_mapping &mapping) {
    const auto object = reinterpret_cast<std::uintptr_t>(mapping.object);
    return object >= first && object < end_of_range;
  };
  for (std::uintptr_t at = first & ~(kSameHashBytes - 1); at < end_of_range; at += kSameHashBytes) {
    while (kelp_oid_mapping *mapping =
               by_object().find<kelp_oid_mapping>(hash_of_address(at), within)) {
      end(mapping);
    }
  }
}

std::vector<void *> OidRegistry::unreferenced() const {
  const std::lock_guard lock(mutex_);
  std::vector<void *> found;
  by_object().each<kelp_oid_mapping>([&](kelp_oid_mapping &mapping) {
    if (mapping.destroy_asked != 0 && mapping.references == 0) found.push_back(mapping.object);
  });
  return found;
}

}  // namespace kelp
