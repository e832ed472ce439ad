// Calls of exported functions by their composed names, with types erased: how the whole-schema
// loops reach what follows from the rows. On this ABI every pointer and integer argument takes one
// register or word alike, so a function can be called through one shape.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "harness/harness.hpp"
#include "model/layout.hpp"

namespace whole_schema {

using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;

template <typename Result, typename... Arguments>
Result call(const std::string &name, Arguments... arguments) {
  return reinterpret_cast<Result (*)(Arguments...)>(harness::exported(name))(arguments...);
}

inline std::string of(const Structure &type, const char *suffix) {
  return std::string(type.name) + "_" + suffix;
}
inline std::string of(const Structure &type, const Field &field, const char *suffix) {
  return std::string(type.name) + "_" + std::string(field.name) + "_" + suffix;
}

inline std::string tracking_text(std::uint32_t tracking) {
  return tracking == KELP_TRACKING_ABSENT ? "Absent" : tracking == KELP_TRACKING_ON ? "On" : "Off";
}
inline std::string name_of_tracking(const testing::TestParamInfo<std::uint32_t> &info) {
  return tracking_text(info.param);
}

inline void *create(kelp_handle *handle, const std::string &type) {
  return call<void *>(type + "_create", handle, std::uint32_t{0});
}
inline void destroy(kelp_handle *handle, const std::string &type, void *object) {
  call<void>(type + "_destroy", handle, std::uint32_t{0}, object);
}

// An object that is destroyed at the end of its scope.
class Object {
 public:
  Object(kelp_handle *handle, std::string type)
      : handle_(handle), type_(std::move(type)), object_(create(handle_, type_)) {
    EXPECT_NE(object_, nullptr) << type_;
  }
  Object(kelp_handle *handle, const Structure &type) : Object(handle, std::string(type.name)) {}
  ~Object() { destroy(handle_, type_, object_); }
  Object(const Object &) = delete;
  Object &operator=(const Object &) = delete;
  void *get() const { return object_; }
  std::uint8_t *bytes() const { return static_cast<std::uint8_t *>(object_); }

 private:
  kelp_handle *handle_;
  std::string type_;
  void *object_;
};

inline bool has_value(const Field &field) {
  switch (field.kind) {
    case Kind::u8:
    case Kind::u16:
    case Kind::u32:
    case Kind::real:
    case Kind::boolean:
    case Kind::enumeration:
    case Kind::flags:
      return true;
    default:
      return false;
  }
}

// A value that the field takes at any variant and that is not what a new object holds, unless the
// field has only one value.
inline std::uint32_t some_value(const Field &field) {
  switch (field.kind) {
    case Kind::boolean:
      return 1;
    case Kind::enumeration:
      return field.enumeration->limits[0] > 1 ? 1 : 0;
    default:
      return 5;
  }
}

// Sets a value field by value.
inline void set_value(kelp_handle *handle, const Structure &type, const Field &field, void *object,
                      std::uint32_t value, std::uint32_t *err) {
  const std::string name = of(type, field, "set_value");
  const std::uint32_t space = 0;
  switch (field.kind) {
    case Kind::u8:
      return call<void>(name, handle, space, object, static_cast<std::uint8_t>(value), err);
    case Kind::u16:
      return call<void>(name, handle, space, object, static_cast<std::uint16_t>(value), err);
    case Kind::real:
      return call<void>(name, handle, space, object, static_cast<double>(value), err);
    default:
      return call<void>(name, handle, space, object, value, err);
  }
}

// Reads a value field.
inline double get_value(kelp_handle *handle, const Structure &type, const Field &field,
                        const void *object, std::uint32_t *err) {
  const std::string name = of(type, field, "get_value");
  const std::uint32_t space = 0;
  switch (field.kind) {
    case Kind::u8:
      return call<std::uint8_t>(name, handle, space, object, err);
    case Kind::u16:
      return call<std::uint16_t>(name, handle, space, object, err);
    case Kind::real:
      return call<double>(name, handle, space, object, err);
    default:
      return call<std::uint32_t>(name, handle, space, object, err);
  }
}

}  // namespace whole_schema
