// The OID mappings of a database: one for each mapped object, found by the object or by the id of
// its OID, with the references counted.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "kelp/oid.h"

struct kelp_oid_mapping {
  kelp_oid oid = {};
  void *object = nullptr;
  bool destroy_asked = false;
  std::uint64_t references = 0;
};

namespace kelp {

class OidRegistry {
 public:
  OidRegistry();

  // The object's mapping; null for none.
  kelp_oid_mapping *find(const void *object);
  kelp_oid_mapping *find(const kelp_oid &oid) const;

  // A mapping for an object that has none; null when another object has the wanted OID (which may
  // be null: then the OID is a new one). Throws bad_alloc.
  kelp_oid_mapping *add(void *object, const kelp_oid *wanted);

  // The object's mapping has gone.
  void remove(const void *object);
  // The memory has gone, and all objects that lie in it.
  void remove_range(const void *start, std::size_t length);

  // The objects whose destruction was asked for and that nothing refers to any more. Throws
  // bad_alloc.
  std::vector<void *> unreferenced() const;

 private:
  using Id = std::array<std::uint8_t, 16>;
  struct IdHash {
    std::size_t operator()(const Id &id) const {
      std::uint64_t halves[2];
      std::memcpy(halves, id.data(), sizeof halves);
      return static_cast<std::size_t>(halves[0] * UINT64_C(0x9E3779B97F4A7C15) ^ halves[1]);
    }
  };

  static Id id_of(const kelp_oid &oid);
  kelp_oid next_oid();

  using ByObject = std::map<const void *, kelp_oid_mapping>;  // they stay where they are
  ByObject::iterator erase(ByObject::iterator mapping);

  mutable std::mutex mutex_;
  ByObject by_object_;
  std::unordered_map<Id, kelp_oid_mapping *, IdHash> by_id_;
  std::uint8_t identity_[16];  // of this database: the source of its OIDs
  std::uint64_t next_serial_;
};

}  // namespace kelp
