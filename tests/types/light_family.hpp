// The nine light types for tests that hold for all of them: the operations by their composed names,
// and what differs between an enumeration and a flag set.
#pragma once

#include <kelp/object.h>

#include <cstdint>
#include <string>
#include <vector>

#include "harness/harness.hpp"
#include "model/lists.hpp"
#include "module/object.hpp"
#include "ospf_harbor_oper.h"

namespace light {

// An operation of a type by the rest of its name, as a pointer of whatever signature it is kept in.
struct Operation {
  void *address;
  template <typename Function>
  operator Function *() const {
    return reinterpret_cast<Function *>(address);
  }
};
inline Operation operation(const std::string &type, const char *suffix) {
  return {harness::exported(type + "_" + suffix)};
}

// The operations that all nine have.
struct Family {
  std::string name;
  bool is_enumeration;
  std::size_t size = is_enumeration ? 16 : 24;
  kelp_type_record *record =
      static_cast<kelp_type_record *>(harness::exported("_" + name + "_type_info_internal"));
  void *(*create)(kelp_handle *, std::uint32_t) = operation(name, "create");
  void *(*create_internal)(kelp_handle *, std::uint32_t) = operation(name, "create_internal");
  void *(*create_cr)(kelp_handle *) = operation(name, "create_cr");
  void (*initialize)(kelp_handle *, std::uint32_t, void *, kelp_type_record *, std::int32_t,
                     std::int32_t, std::uint8_t, void *,
                     std::uint32_t *) = operation(name, "initialize");
  void (*set_instance_embedded)(kelp_handle *, std::uint32_t,
                                void *) = operation(name, "set_instance_embedded");
  void (*destroy)(kelp_handle *, std::uint32_t, void *) = operation(name, "destroy");
  void (*destroy_internal)(kelp_handle *, std::uint32_t, void *,
                           std::int32_t) = operation(name, "destroy_internal");
  void (*destroy_cr)(kelp_handle *, void *) = operation(name, "destroy_cr");
  std::size_t (*size_of)() = operation(name, "sizeof");
  std::int32_t (*cap)(std::int32_t) = operation(name, "variant_data_index_cap");
  const std::uint8_t *(*get_luid)(kelp_handle *, std::uint32_t, const void *,
                                  std::uint32_t *) = operation(name, "get_luid");
  void (*adjust_variant)(kelp_handle *, std::uint32_t, void *,
                         std::uint32_t *) = operation(name, "adjust_variant");
  std::uint32_t (*get_oid_count)(kelp_handle *, std::uint32_t, const void *,
                                 std::uint32_t *) = operation(name, "get_oid_count");
  void (*get_object_references)(kelp_handle *, std::uint32_t, const void *, void **, std::uint32_t,
                                std::uint32_t *) = operation(name, "get_object_references");
  void *(*get)(kelp_handle *, std::uint32_t, void *) = operation(name, "get");
  std::int32_t (*compare)(const void *, const void *) = operation(name, "compare");
  std::uint32_t (*hash)(const void *, std::uint32_t) = operation(name, "hash");
  void (*set)(kelp_handle *, std::uint32_t, void *, const void *,
              std::uint32_t *) = operation(name, "set");

  kelp_variant_entry &entry(int variant) const { return record->varinfo->entries[variant]; }
};

inline std::vector<Family> families() {
  std::vector<Family> all;
  for (const auto *type : harbor::model::all_enumerations) {
    all.push_back({std::string(type->name), true});
  }
  for (const auto *type : harbor::model::all_flag_sets) {
    all.push_back({std::string(type->name), false});
  }
  return all;
}

// Offset and length of an announced range, for whole comparisons.
struct Place {
  std::ptrdiff_t offset;
  std::size_t length;
  bool operator==(const Place &) const = default;
};
inline std::ostream &operator<<(std::ostream &out, const Place &place) {
  return out << place.offset << "+" << place.length;
}
inline std::vector<Place> places(const std::vector<harness::Range> &ranges, const void *object) {
  std::vector<Place> result;
  for (const harness::Range &range : ranges) {
    result.push_back({range.offset_in(object), range.length});
  }
  return result;
}

// The typed view of an object.
inline kelp_object_header *header(void *object) { return harbor::header_of(object); }
template <typename Object>
harbor::EnumerationObject *enumeration(Object *object) {
  return reinterpret_cast<harbor::EnumerationObject *>(object);
}
template <typename Object>
harbor::FlagObject *flags(Object *object) {
  return reinterpret_cast<harbor::FlagObject *>(object);
}

// What a refusal by a variant looks like among the calls: kelp_store_epoch_err once, with what the
// runtime does in it, and no call of kelp_store_err beside it.
inline std::vector<std::string> stored(const harness::CallLog &calls) {
  return calls.only({"kelp_store_epoch_err", "kelp_store_err"});
}
inline std::vector<std::string> refusal(kelp_handle *handle) {
  harness::CallLog calls;
  std::uint32_t err = 0;
  kelp_store_epoch_err(handle, KELP_ERR_EPOCH, &err);
  return stored(calls);
}

// Takes a record's variant info away while this lives.
class WithoutVarinfo {
 public:
  explicit WithoutVarinfo(kelp_type_record &record) : record_(record), varinfo_(record.varinfo) {
    record.varinfo = nullptr;
  }
  ~WithoutVarinfo() { record_.varinfo = varinfo_; }

 private:
  kelp_type_record &record_;
  kelp_variant_info *varinfo_;
};

}  // namespace light
