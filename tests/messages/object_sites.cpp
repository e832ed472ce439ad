// Direct access to state bytes, and the operations on whole objects that read the tracking mode.
#include <array>

#include "messages/setting.hpp"
#include "messages/state_sites.hpp"

namespace messages {

namespace {

std::array<std::uint8_t, 65536> buffer;
constexpr std::int32_t buffer_space = 65000;

template <typename... Arguments>
Operation access(const std::string &name, Arguments... arguments) {
  return [=](kelp_handle *handle, void *object) {
    std::uint32_t err = 0;
    call<void>(name, handle, space, object, arguments..., &err);
    return err;
  };
}

// add: for a field, the sites of one direction, given how a site is added.
using Add = std::function<void(const char *suffix, const Operation &operation)>;
std::vector<StateSite> state_sites(
    const std::function<void(const std::string &name, bool is_array, const Add &add)> &add_field) {
  std::vector<StateSite> sites;
  for_each_field(
      [](const Field &field) { return field.kind != Kind::counter; },
      [&](const Structure &type, const Field &field) {
        const std::string name = whole_schema::of(type, field, "state_flag_");
        add_field(name, field.kind == Kind::array,
                  [&](const char *suffix, const Operation &operation) {
                    sites.push_back({name + suffix, std::string(type.name), nothing, operation});
                  });
      });
  return sites;
}

void add_image_sites(const std::string &type, std::vector<StateSite> &sites) {
  static std::uint32_t length = 0;
  const auto marshal = [type](const char *suffix) {
    return [type, suffix](kelp_handle *handle, void *object) {
      std::uint32_t err = 0;
      length = call<std::uint32_t>(type + suffix, handle, space, static_cast<void *>(buffer.data()),
                                   object, buffer_space, &err);
      return err;
    };
  };
  sites.push_back({type + " marshal", type, nothing, marshal("_marshal")});
  sites.push_back({type + " marshal", type, nothing, marshal("_marshal_for_clone")});
  sites.push_back(
      {type + " unmarshal", type, marshal("_marshal"), [type](kelp_handle *handle, void *object) {
         std::uint32_t err = 0;
         call<std::uint32_t>(type + "_unmarshal", handle, space,
                             static_cast<const void *>(buffer.data()), object,
                             static_cast<std::int32_t>(length), 0u, &err);
         return err;
       }});
  // Embedded structures ask for the mode before their holder does, so none of them is to be there.
  const auto leave_no_field = [](kelp_handle *, void *object) { header(object).variant = -1; };
  sites.push_back(
      {type + " length", type, leave_no_field, [type](kelp_handle *handle, void *object) {
         return call<std::uint32_t>(type + "_len", handle, space, object);
       }});
  sites.push_back(
      {type + " length", type, leave_no_field, [type](kelp_handle *handle, void *object) {
         return call<std::uint32_t>(type + "_len_cr", handle, object);
       }});
  sites.push_back({type + " to_xml", type, nothing, [type](kelp_handle *handle, void *object) {
                     std::uint32_t err = 0;
                     call<std::uint32_t>(type + "_to_xml", handle, space, "tag",
                                         reinterpret_cast<char *>(buffer.data()), object,
                                         std::uint32_t{buffer_space}, 0u, &err);
                     return err;
                   }});
}

}  // namespace

std::vector<StateSite> state_readers() {
  static std::uint64_t out;
  return state_sites([](const std::string &name, bool is_array, const Add &add) {
    if (!is_array) return add("get", access(name + "get"));
    add("whole_get", access(name + "whole_get"));
    add("get", access(name + "get", 0u));
    add("get_arr", access(name + "get_arr", &out));
  });
}

std::vector<StateSite> state_writers() {
  static const std::uint8_t states[1] = {3};
  return state_sites([](const std::string &name, bool is_array, const Add &add) {
    if (!is_array) return add("set", access(name + "set", 3u));
    add("whole_set", access(name + "whole_set", 3u));
    add("set", access(name + "set", 0u, 3u));
    add("set_arr", access(name + "set_arr", &states[0], 0u));
  });
}

// The object is the source; the destination is made before the fault.
std::vector<StateSite> transfers() {
  static void *destination = nullptr;
  std::vector<StateSite> sites;
  for (const Structure *structure : harbor::model::structures) {
    const std::string type(structure->name);
    sites.push_back({type + " transfer", type,
                     [type](kelp_handle *handle, void *) { destination = create(handle, type); },
                     [type](kelp_handle *handle, void *object) {
                       std::uint32_t err = 0;
                       call<void>(type + "_set", handle, space, destination, object, &err);
                       return err;
                     }});
  }
  return sites;
}

void initialize(const std::string &type, kelp_handle *handle, void *object) {
  std::uint32_t err = 0;
  call<void>(type + "_initialize", handle, space, object, &record_of(type), 1, 0, std::uint8_t{0},
             static_cast<void *>(nullptr), &err);
}

std::vector<StateSite> whole_object_sites() {
  std::vector<StateSite> sites;
  for (const Structure *structure : harbor::model::structures) {
    const std::string type(structure->name);
    const auto add = [&](const char *row, const std::function<void(kelp_handle *, void *)> &code) {
      sites.push_back({type + row, type, nothing, [code](kelp_handle *handle, void *object) {
                         code(handle, object);
                         return 0u;
                       }});
    };
    add(" size", [type](kelp_handle *handle, void *) {
      call<std::size_t>(type + "_sizeof", static_cast<const kelp_handle *>(handle));
    });
    add(" size", [type](kelp_handle *handle, void *) { create(handle, type); });
    add(" size",
        [type](kelp_handle *handle, void *) { call<void *>(type + "_create_cr", handle); });
    add(" initialize",
        [type](kelp_handle *handle, void *object) { initialize(type, handle, object); });
    add_image_sites(type, sites);
  }
  return sites;
}

}  // namespace messages
