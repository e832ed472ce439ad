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

template <typename Function>
Function *operation(const std::string &type, const std::string &suffix) {
  return harness::function<Function>(type + "_" + suffix);
}

struct Family {
  explicit Family(std::string type_name, bool enumeration)
      : name(std::move(type_name)),
        is_enumeration(enumeration),
        size(enumeration ? 16 : 24),
        record(
            static_cast<kelp_type_record *>(harness::exported("_" + name + "_type_info_internal"))),
        create(operation<void *(kelp_handle *, std::uint32_t)>(name, "create")),
        create_internal(operation<void *(kelp_handle *, std::uint32_t)>(name, "create_internal")),
        create_cr(operation<void *(kelp_handle *)>(name, "create_cr")),
        initialize(
            operation<void(kelp_handle *, std::uint32_t, void *, kelp_type_record *, std::int32_t,
                           std::int32_t, std::uint8_t, void *, std::uint32_t *)>(name,
                                                                                 "initialize")),
        set_instance_embedded(
            operation<void(kelp_handle *, std::uint32_t, void *)>(name, "set_instance_embedded")),
        destroy(operation<void(kelp_handle *, std::uint32_t, void *)>(name, "destroy")),
        destroy_internal(operation<void(kelp_handle *, std::uint32_t, void *, std::int32_t)>(
            name, "destroy_internal")),
        destroy_cr(operation<void(kelp_handle *, void *)>(name, "destroy_cr")),
        size_of(operation<std::size_t()>(name, "sizeof")),
        cap(operation<std::int32_t(std::int32_t)>(name, "variant_data_index_cap")),
        get_luid(operation<const std::uint8_t *(kelp_handle *, std::uint32_t, const void *,
                                                std::uint32_t *)>(name, "get_luid")),
        adjust_variant(operation<void(kelp_handle *, std::uint32_t, void *, std::uint32_t *)>(
            name, "adjust_variant")),
        get_oid_count(
            operation<std::uint32_t(kelp_handle *, std::uint32_t, const void *, std::uint32_t *)>(
                name, "get_oid_count")),
        get_object_references(
            operation<void(kelp_handle *, std::uint32_t, const void *, void **, std::uint32_t,
                           std::uint32_t *)>(name, "get_object_references")) {}

  std::string name;
  bool is_enumeration;
  std::size_t size;
  kelp_type_record *record;
  void *(*create)(kelp_handle *, std::uint32_t);
  void *(*create_internal)(kelp_handle *, std::uint32_t);
  void *(*create_cr)(kelp_handle *);
  void (*initialize)(kelp_handle *, std::uint32_t, void *, kelp_type_record *, std::int32_t,
                     std::int32_t, std::uint8_t, void *, std::uint32_t *);
  void (*set_instance_embedded)(kelp_handle *, std::uint32_t, void *);
  void (*destroy)(kelp_handle *, std::uint32_t, void *);
  void (*destroy_internal)(kelp_handle *, std::uint32_t, void *, std::int32_t);
  void (*destroy_cr)(kelp_handle *, void *);
  std::size_t (*size_of)();
  std::int32_t (*cap)(std::int32_t);
  const std::uint8_t *(*get_luid)(kelp_handle *, std::uint32_t, const void *, std::uint32_t *);
  void (*adjust_variant)(kelp_handle *, std::uint32_t, void *, std::uint32_t *);
  std::uint32_t (*get_oid_count)(kelp_handle *, std::uint32_t, const void *, std::uint32_t *);
  void (*get_object_references)(kelp_handle *, std::uint32_t, const void *, void **, std::uint32_t,
                                std::uint32_t *);

  kelp_variant_entry &entry(int variant) const { return record->varinfo->entries[variant]; }
};

inline std::vector<Family> families() {
  std::vector<Family> all;
  for (const auto *type : harbor::model::all_enumerations) {
    all.emplace_back(std::string(type->name), true);
  }
  for (const auto *type : harbor::model::all_flag_sets) {
    all.emplace_back(std::string(type->name), false);
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
