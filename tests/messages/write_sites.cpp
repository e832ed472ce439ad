// The writers of fields, with the forms that carry their error word in the handle.
#include <kelp/primitives.h>
#include <kelp/table.h>

#include <cstring>

#include "messages/setting.hpp"
#include "messages/state_sites.hpp"

namespace messages {

namespace {

// Something that a field of this kind can be set from.
void *source_for(kelp_handle *handle, Kind kind, const Field &field) {
  static std::uint64_t zeroes[4];
  switch (kind) {
    case Kind::address:
      return ip_address_create(handle, space);
    case Kind::text:
      return kelp_vstring_create(handle, space);
    case Kind::structure:
      return create(handle, std::string(field.structure->name));
    case Kind::enumeration:
      return create(handle, std::string(field.enumeration->name));
    case Kind::flags:
      return create(handle, std::string(field.flag_set->name));
    default:
      return zeroes;
  }
}

// The source of a write that is made before the fault comes: making it may be a write, and may ask
// for the mode.
void *source = nullptr;

template <typename... Arguments>
std::uint32_t with_word(const std::string &name, Arguments... arguments) {
  std::uint32_t err = 0;
  call<void>(name, arguments..., &err);
  return err;
}

template <typename Value>
Operation at_first(const std::string &name, Value *value) {
  return [=](kelp_handle *handle, void *object) {
    return with_word(name, handle, space, object, 0u, *value);
  };
}

void add_array_writers(const Structure &type, const Field &field, std::vector<StateSite> &sites) {
  const std::string name(type.name);
  const std::string row = whole_schema::of(type, field, "");
  const auto make_source = [&field](kelp_handle *handle, void *) {
    source = source_for(handle, field.held, field);
  };
  const Operation set_first = at_first(row + "set", &source);
  const auto fill = [make_source, set_first](kelp_handle *handle, void *object) {
    make_source(handle, object);
    EXPECT_EQ(set_first(handle, object), 0u);
    make_source(handle, object);
  };
  static const std::uint32_t value = 7;
  const Operation set_first_cr = [set = row + "set_cr", &field](kelp_handle *handle, void *object) {
    return field.held == Kind::address ? call<std::uint32_t>(set, handle, object, 0u, source, 1u)
                                       : call<std::uint32_t>(set, handle, object, 0u, value);
  };
  for (const Operation &set : {set_first, set_first_cr}) {
    sites.push_back({row + " gate", name, make_source, set});
    sites.push_back({row + " growth", name, make_source, set, Fault::first_write});
    sites.push_back({row + " mark", name, fill, set, Fault::first_write});
  }
  if (field.held == Kind::address) return;
  sites.push_back({row + " set_value", name, fill, at_first(row + "set_value", &value)});
  sites.push_back({row + " set_mem", name, make_source,
                   [set = row + "set_mem"](kelp_handle *handle, void *object) {
                     return with_word(set, handle, space, object, source, 2u);
                   }});
  sites.push_back({row + " set_mem", name, make_source,
                   [set = row + "set_mem_cr"](kelp_handle *handle, void *object) {
                     return call<std::uint32_t>(set, handle, object, source, 2u);
                   }});
}

void add_arm_writers(const Structure &type, const Field &field, std::vector<StateSite> &sites) {
  const std::string name(type.name);
  const std::string row = whole_schema::of(type, field, "");
  const auto make_arm = [&field](kelp_handle *handle, void *) {
    source = field.held == Kind::u32 ? static_cast<void *>(u_int32_create(handle, space))
                                     : source_for(handle, field.held, field);
  };
  const auto set = [set = row + "set"](kelp_handle *handle, void *object) {
    return with_word(set, handle, space, object, source);
  };
  const auto fill = [make_arm, set](kelp_handle *handle, void *object) {
    make_arm(handle, object);
    EXPECT_EQ(set(handle, object), 0u);
  };
  sites.push_back({row + " set", name, make_arm, set});
  sites.push_back(
      {row + " set", name, make_arm, [set = row + "set_cr"](kelp_handle *handle, void *object) {
         return call<std::uint32_t>(set, handle, object, source);
       }});
  sites.push_back({row + " detach", name, fill,
                   [detach = row + "get_detach"](kelp_handle *handle, void *object) {
                     return with_word(detach, handle, space, object);
                   }});
}

void add_reference_writers(const Structure &type, const Field &field,
                           std::vector<StateSite> &sites) {
  const std::string name(type.name);
  const std::string row = whole_schema::of(type, field, "");
  const auto make_table = [&type, &field](kelp_handle *handle, void *object) {
    auto *table =
        static_cast<kelp_table *>(handle->obj_alloc(handle->obj_pool, 0, sizeof(kelp_table)));
    std::memset(static_cast<void *>(table), 0, sizeof *table);
    table->header.tinfo = field_at<kelp_reference>(object, type, field).target_type;
    source = table;
  };
  sites.push_back({row + " set", name, make_table,
                   [set = row + "set_by_ref"](kelp_handle *handle, void *object) {
                     return with_word(set, handle, space, object, source);
                   }});
  sites.push_back({row + " set", name, make_table,
                   [set = row + "set_by_ref_cr"](kelp_handle *handle, void *object) {
                     return call<std::uint32_t>(set, handle, object, source);
                   }});
}

// A field in the object: from a source, and for values by value. A flag field has one place for
// both. What an embedded structure gets is transferred first, which asks for the mode too.
void add_field_writers(const Structure &type, const Field &field, std::vector<StateSite> &sites) {
  const std::string name(type.name);
  const std::string row = whole_schema::of(type, field, "");
  sites.push_back({row + " set", name, nothing,
                   [set = row + "set", &field](kelp_handle *handle, void *object) {
                     void *value = source_for(handle, field.kind, field);
                     return with_word(set, handle, space, object, value);
                   },
                   field.kind == Kind::structure ? Fault::last_write_but_one : Fault::before});
  if (!whole_schema::has_value(field)) return;
  sites.push_back({row + (field.kind == Kind::flags ? " set" : " set_value"), name, nothing,
                   [&type, &field](kelp_handle *handle, void *object) {
                     std::uint32_t err = 0;
                     whole_schema::set_value(handle, type, field, object, 0, &err);
                     return err;
                   }});
}

}  // namespace

std::vector<StateSite> writers() {
  std::vector<StateSite> sites;
  for_each_field([](const Field &field) { return field.kind != Kind::counter; },
                 [&](const Structure &type, const Field &field) {
                   switch (field.kind) {
                     case Kind::array:
                       return add_array_writers(type, field, sites);
                     case Kind::arm:
                       return add_arm_writers(type, field, sites);
                     case Kind::reference:
                       return add_reference_writers(type, field, sites);
                     default:
                       return add_field_writers(type, field, sites);
                   }
                 });
  return sites;
}

}  // namespace messages
