// The OID mappings of a database: one for each mapped object, found by the object or by the id of
// its OID, with the references counted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kelp/oid.h"
#include "parts/short_lock.hpp"
#include "store/layout.hpp"
#include "store/memory.hpp"

namespace kelp {

class OidRegistry {
 public:
  // identity is the source of new OIDs.
  void attach(store::Memory &memory, store::Directory &directory,
              const std::uint8_t (&identity)[16]);

  // The object's mapping; null for none.
  kelp_oid_mapping *find(const void *object) const;
  kelp_oid_mapping *find(const kelp_oid &oid) const;

  // A mapping for an object that has none; null when another object has the wanted OID (which may
  // be null: then the OID is a new one). Throws bad_alloc.
  kelp_oid_mapping *add(void *object, const kelp_oid *wanted);

  void set_references(kelp_oid_mapping *mapping, std::uint64_t references);
  void ask_destroy(kelp_oid_mapping *mapping);

  // The object's mapping has gone.
  void remove(const void *object);
  // The memory has gone, and all objects that lie in it.
  void remove_range(const void *start, std::size_t length);

  // The objects whose destruction was asked for and that nothing refers to any more. Throws
  // bad_alloc.
  std::vector<void *> unreferenced() const;

  // New OIDs differ from here on from those that another process gives out from here on.
  void part_from_parent();

  // For the time of a fork, when nobody else may be inside.
  ShortLock &mutex() { return mutex_; }

 private:
  store::Index by_object() const { return {*memory_, directory_->oids_by_object}; }
  store::Index by_id() const { return {*memory_, directory_->oids_by_id}; }
  void end(kelp_oid_mapping *mapping);
  kelp_oid_mapping *find_object(const void *object) const;
  kelp_oid_mapping *find_id(const std::uint8_t *id) const;
  kelp_oid next_oid();

  mutable ShortLock mutex_;
  store::Memory *memory_ = nullptr;
  store::Directory *directory_ = nullptr;
  std::uint8_t identity_[16] = {};
};

// An identity that no other database has, never all zero.
void make_identity(std::uint8_t (&identity)[16]);

}  // namespace kelp
