// Objects for the tests of the encodings: one that ends with its scope, and random contents for any
// structure, written straight into memory by the rows of the schema.
#pragma once

#include <kelp/primitives.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "harness/harness.hpp"
#include "model/layout.hpp"
#include "support/clear_references.hpp"
#include "support/hexadecimal.hpp"

namespace encodings {

using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;
using Bytes = std::vector<std::uint8_t>;

// A text that an arm can take over.
inline kelp_vstring *text_arm(harness::Store &store, const char *text) {
  kelp_vstring *arm = kelp_vstring_create(store, 0);
  store(kelp_vstring_assign, arm, text, std::strlen(text));
  return arm;
}

inline kelp_object_header &header(void *object) {
  return *static_cast<kelp_object_header *>(object);
}

// The place of a field by its name, for what no exported function reads or writes.
template <typename Value>
Value &field(void *object, const Structure &type, const char *name) {
  for (const Field *field : type.fields) {
    if (field->name == name) {
      return *reinterpret_cast<Value *>(static_cast<std::uint8_t *>(object) +
                                        harbor::model::offset(type, *field));
    }
  }
  ADD_FAILURE() << type.name << " has no " << name;
  std::abort();
}

// An object of a structure type, destroyed at the end of its scope through the handle that made it.
template <typename Type = void>
class Object {
 public:
  Object(kelp_handle *handle, const Structure &type)
      : handle_(handle),
        type_(type),
        object_(call<void *(kelp_handle *, std::uint32_t)>("create")(handle, 0)) {
    EXPECT_NE(object_, nullptr) << type.name;
  }
  // Takes over an object that the caller made.
  Object(kelp_handle *handle, const Structure &type, void *object)
      : handle_(handle), type_(type), object_(object) {}
  ~Object() {
    clear_references(object_, type_);
    call<void(kelp_handle *, std::uint32_t, void *)>("destroy")(handle_, 0, object_);
  }
  Object(const Object &) = delete;
  Object &operator=(const Object &) = delete;

  operator Type *() const { return static_cast<Type *>(object_); }
  Type *get() const { return static_cast<Type *>(object_); }
  std::uint8_t *area() const {
    return static_cast<std::uint8_t *>(object_) + harbor::model::object_size(type_);
  }
  template <typename Function>
  Function *call(const char *suffix) const {
    return harness::function<Function>(std::string(type_.name) + "_" + suffix);
  }

 private:
  kelp_handle *handle_;
  const Structure &type_;
  void *object_;
};

// Fills objects with random contents: all fields, whatever the object's variant, which is random
// too where the type has two, and all state bytes of an object that has them.
class Filler {
 public:
  Filler(kelp_handle *handle, std::uint32_t seed) : handle_(handle), random_(seed) {}

  void fill(void *object, const Structure &type) {
    const bool is_tracked = (header(object).obj_flags & OBJ_STATE_TRACKED) != 0;
    auto *area = static_cast<std::uint8_t *>(object) + harbor::model::object_size(type);
    fill(object, type, is_tracked ? area : nullptr);
  }

 private:
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(random_() % limit); }

  template <typename Value>
  static Value &at(void *place) {
    return *static_cast<Value *>(place);
  }

  void fill(void *object, const Structure &type, std::uint8_t *area) {
    header(object).variant = static_cast<std::int8_t>(below(type.variants));
    if (below(4) == 0) header(object).obj_flags |= OBJ_RA_DATA;
    const std::uint32_t selector = below(4);
    std::uint32_t *count = nullptr;
    for (const Field *field : type.fields) {
      void *place = static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field);
      std::uint8_t *state =
          area == nullptr ? nullptr : area + harbor::model::state_place(type, *field);
      if (state != nullptr && harbor::model::has_state(*field)) {
        *state = static_cast<std::uint8_t>(below(256));
      }
      switch (field->kind) {
        case Kind::counter:
          count = &at<std::uint32_t>(place);
          break;
        case Kind::array:
          *count = below(5);
          fill_array(place, *field, *count, area, type);
          break;
        case Kind::structure:
          fill(place, *field->structure,
               area == nullptr ? nullptr : area + harbor::model::state_block_place(type, *field));
          break;
        case Kind::enumeration:
          at<std::uint32_t>(static_cast<std::uint8_t *>(place) +
                            harbor::model::enumeration_value_offset) =
              type.is_choice()
                  ? selector
                  : field->enumeration->members[below(field->enumeration->members.size())].value;
          break;
        case Kind::flags:
          at<std::uint8_t>(static_cast<std::uint8_t *>(place) + harbor::model::flags_offset) =
              static_cast<std::uint8_t>(below(1u << field->flag_set->members.size()));
          break;
        case Kind::reference: {
          auto *oid = reinterpret_cast<std::uint8_t *>(&at<kelp_reference>(place).oid);
          for (std::uint32_t i = 0; i < sizeof(kelp_oid); ++i) {
            oid[i] = static_cast<std::uint8_t>(below(256));
          }
          break;
        }
        case Kind::arm:
          if (field->selector == selector || below(3) == 0) at<void *>(place) = arm(*field);
          break;
        default:
          fill_value(place, field->kind);
      }
    }
  }

  void fill_array(void *place, const Field &field, std::uint32_t count, std::uint8_t *area,
                  const Structure &type) {
    if (count == 0) return;
    const std::uint32_t width = harbor::model::width(field.held);
    auto *store = static_cast<std::uint8_t *>(
        handle_->obj_alloc(handle_->obj_pool, 0, std::size_t{width} * count));
    std::memset(store, 0, std::size_t{width} * count);
    for (std::uint32_t i = 0; i < count; ++i) fill_value(store + width * i, field.held);
    at<void *>(place) = store;
    if (area == nullptr) return;
    auto *states = static_cast<std::uint8_t *>(handle_->obj_alloc(handle_->obj_pool, 0, count));
    for (std::uint32_t i = 0; i < count; ++i) states[i] = static_cast<std::uint8_t>(below(256));
    at<void *>(area + harbor::model::state_block_place(type, field)) = states;
  }

  void *arm(const Field &field) {
    if (field.held == Kind::structure) {
      using Create = void *(kelp_handle *, std::uint32_t);
      const std::string name = std::string(field.structure->name) + "_create_internal";
      void *object = harness::function<Create>(name)(handle_, 0);
      fill(object, *field.structure);
      return object;
    }
    void *value = nullptr;
    if (field.held == Kind::text) value = kelp_vstring_create(handle_, 0);
    if (field.held == Kind::u32) value = u_int32_create(handle_, 0);
    fill_value(value, field.held);
    return value;
  }

  void fill_value(void *place, Kind kind) {
    switch (kind) {
      case Kind::u8:
        at<std::uint8_t>(place) = static_cast<std::uint8_t>(below(256));
        break;
      case Kind::u16:
        at<std::uint16_t>(place) = static_cast<std::uint16_t>(below(65536));
        break;
      case Kind::u32:
        at<std::uint32_t>(place) = static_cast<std::uint32_t>(random_());
        break;
      case Kind::boolean:
        at<kelp_boolean>(place) = below(2);
        break;
      case Kind::real:
        at<double>(place) = below(1000000) / 64.0 - 1000;
        break;
      case Kind::address: {
        auto &address = at<ip_address>(place);
        const std::uint8_t families[] = {KELP_AF_UNSET, KELP_AF_IPV4, KELP_AF_IPV6};
        address.family = families[below(3)];
        const std::uint32_t used = address.family == KELP_AF_UNSET  ? 0
                                   : address.family == KELP_AF_IPV4 ? 4
                                                                    : 16;
        for (std::uint32_t i = 0; i < used; ++i) {
          address.bytes[i] = static_cast<std::uint8_t>(below(256));
        }
        address.has_prefix = used != 0 && below(2) == 0 ? 1 : 0;
        if (address.has_prefix != 0) {
          address.prefix_length = static_cast<std::uint8_t>(below(8 * used + 1));
        }
        if (address.family == KELP_AF_IPV6) address.scope = below(3);
        break;
      }
      case Kind::text: {
        std::string text;
        for (std::uint32_t i = below(12); i > 0; --i) text += static_cast<char>(below(256));
        std::uint32_t err = 0;
        kelp_vstring_assign(handle_, 0, &at<kelp_vstring>(place), text.data(), text.size(), &err);
        EXPECT_EQ(err, 0u);
        break;
      }
      default:
        ADD_FAILURE() << "no value of kind " << static_cast<int>(kind);
    }
  }

  kelp_handle *handle_;
  std::mt19937 random_;
};

}  // namespace encodings
