#include "evolution/exchange.hpp"

#include <dlfcn.h>
#include <kelp/core.h>
#include <kelp/primitives.h>

#include <cstring>
#include <stdexcept>

#include "support/hexadecimal.hpp"

namespace evolution {

using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;

namespace {

// State bytes by the weaker rule need room behind themselves, so that an image is written into, and
// read from, a buffer with some bytes to spare.
constexpr std::size_t slack = 8;

ip_address address_of(const std::string &text) {
  ip_address address{};
  address.family = KELP_AF_IPV4;
  std::memcpy(address.bytes, from_hex(text).data(), 4);
  return address;
}

std::uint32_t number(const std::string &text) {
  return static_cast<std::uint32_t>(std::stoul(text));
}

kelp_oid identifier_of(const std::string &text) {
  kelp_oid oid{};
  oid.handle_word = std::stoull(text.substr(0, 16), nullptr, 16);
  const std::vector<std::uint8_t> bytes = from_hex(text.substr(16));
  std::memcpy(oid.id, bytes.data(), sizeof oid.id);
  std::memcpy(oid.source, bytes.data() + sizeof oid.id, sizeof oid.source);
  return oid;
}

}  // namespace

void give_up(const std::string &what) { throw std::runtime_error(what); }

void must_be_zero(std::uint32_t err, const std::string &what) {
  if (err != 0) give_up(what + " failed with " + std::to_string(err));
}

Path split(const std::string &text, char separator) {
  Path parts(1);
  for (const char c : text) {
    if (c == separator) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

std::string hexadecimal(const std::uint8_t *bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += "0123456789abcdef"[bytes[i] >> 4];
    text += "0123456789abcdef"[bytes[i] & 15];
  }
  return text;
}

void *exported(const std::string &name) {
  void *function = dlsym(RTLD_DEFAULT, name.c_str());
  if (function == nullptr) give_up("no function " + name);
  return function;
}

std::vector<const Structure *> Exchanged::types_of_table() {
  table_ = found(harbor::model::all_tables, name_.substr(4));
  if (table_ == nullptr) give_up("no table " + name_);
  if (table_->key_structure == nullptr) return {table_->record};
  return {table_->key_structure, table_->record};
}

Exchanged::Exchanged(kelp_handle *handle, const std::string &table, void *record)
    : handle_(handle), name_(table), record_(record) {
  for (const Structure *type : types_of_table()) {
    objects_.emplace_back(
        type, call<void *>(name_ + "_" + of(*type, "get_field"), handle_, space, record));
  }
}

Exchanged::Exchanged(kelp_handle *handle, const std::string &name) : handle_(handle), name_(name) {
  std::vector<const Structure *> types;
  if (name.starts_with("tbl_")) {
    types = types_of_table();
  } else {
    types.push_back(found(harbor::model::structures, name));
  }
  for (const Structure *type : types) {
    const std::string type_name = type == nullptr ? name : std::string(type->name);
    objects_.emplace_back(type, call<void *>(type_name + "_create", handle_, space));
  }
}

// --- setting ------------------------------------------------------------------------------------

// In a record the path begins with the object's type.
void Exchanged::with_field(
    const std::string &text,
    const std::function<void(const Structure &, const Field &, void *)> &act) {
  Path path = split(text, '.');
  const Structure *type = objects_[0].first;
  void *object = objects_[0].second;
  if (table_ != nullptr) {
    for (const auto &[candidate, held] : objects_) {
      if (candidate->name == path.front()) {
        type = candidate;
        object = held;
      }
    }
    path.erase(path.begin());
  }
  for (std::size_t step = 0;; ++step) {
    const Field *field = found(type->fields, path[step]);
    if (field == nullptr) give_up("no field " + path[step] + " in " + std::string(type->name));
    if (step + 1 == path.size()) return act(*type, *field, object);
    std::uint32_t err = 0;
    object = call<void *>(of(*type, *field, "get"), handle_, space, object, &err);
    must_be_zero(err, of(*type, *field, "get"));
    type = field->structure;
  }
}

void Exchanged::set_value(const std::string &path, const std::string &value) {
  if (path == ".") return set_light_value(value);
  with_field(path, [&](const Structure &type, const Field &field, void *object) {
    set_field(type, field, object, value);
  });
}

template <typename Set>
void Exchanged::set_elements(const Field &field, const std::string &values, Set set) {
  std::uint32_t index = 0;
  for (const std::string &element : split(values, ',')) {
    if (field.held == Kind::address) {
      const ip_address address = address_of(element);
      set("set", index, &address);
    } else if (field.held == Kind::u8) {
      set("set_value", index, static_cast<std::uint8_t>(number(element)));
    } else {
      set("set_value", index, number(element));
    }
    ++index;
  }
}

void Exchanged::set_field(const Structure &type, const Field &field, void *object,
                          const std::string &value) {
  std::uint32_t err = 0;
  const auto set = [&]<typename... Arguments>(const char *suffix, Arguments... arguments) {
    call<void>(of(type, field, suffix), handle_, space, object, arguments..., &err);
  };
  switch (field.kind) {
    case Kind::u8:
      set("set_value", static_cast<std::uint8_t>(number(value)));
      break;
    case Kind::u16:
      set("set_value", static_cast<std::uint16_t>(number(value)));
      break;
    case Kind::real:
      set("set_value", std::stod(value));
      break;
    case Kind::address: {
      const ip_address address = address_of(value);
      set("set", &address);
      break;
    }
    case Kind::text: {
      kelp_vstring text{};
      kelp_vstring_assign(handle_, space, &text, value.data(), value.size(), &err);
      set("set", &text);
      break;
    }
    case Kind::reference:
      at<kelp_reference>(type, field, object).oid = identifier_of(value);
      break;
    case Kind::array:
      set_elements(field, value, set);
      break;
    case Kind::arm:
      set("set", arm_of(field, value, &err));
      break;
    default:
      set("set_value", number(value));
  }
  must_be_zero(err, of(type, field, "set"));
}

void *Exchanged::arm_of(const Field &field, const std::string &value, std::uint32_t *err) {
  if (field.held == Kind::structure) {
    return call<void *>(of(*field.structure, "create"), handle_, space);
  }
  if (field.held == Kind::text) {
    kelp_vstring *text = kelp_vstring_create(handle_, space);
    kelp_vstring_assign(handle_, space, text, value.data(), value.size(), err);
    return text;
  }
  std::uint32_t *word = u_int32_create(handle_, space);
  *word = number(value);
  return word;
}

void Exchanged::set_light_value(const std::string &text) {
  const std::uint32_t value = number(text);
  std::uint32_t err = 0;
  void *object = objects_[0].second;
  if (found(harbor::model::all_enumerations, name_) != nullptr) {
    call<void>(name_ + "_set_value", handle_, space, object, value, &err);
  } else {
    for (std::uint32_t bit = 0; value >> bit != 0; ++bit) {
      call<void>(name_ + "_set_value", handle_, space, object, bit, value >> bit & 1, &err);
    }
  }
  must_be_zero(err, name_ + "_set_value");
}

void Exchanged::set_state(const std::string &path, const std::string &value) {
  with_field(path, [&](const Structure &type, const Field &field, void *object) {
    std::uint32_t err = 0;
    const std::string name =
        of(type, field, field.kind == Kind::array ? "state_flag_whole_set" : "state_flag_set");
    call<void>(name, handle_, space, object, static_cast<std::uint32_t>(std::stoul(value)), &err);
    must_be_zero(err, name);
  });
}

void Exchanged::set_element_states(const std::string &path, const std::string &values) {
  with_field(path, [&](const Structure &type, const Field &field, void *object) {
    std::uint32_t err = 0;
    std::uint32_t index = 0;
    for (const std::string &value : split(values, ',')) {
      call<void>(of(type, field, "state_flag_set"), handle_, space, object, index++,
                 static_cast<std::uint32_t>(std::stoul(value)), &err);
    }
    must_be_zero(err, of(type, field, "state_flag_set"));
  });
}

void Exchanged::mark_ra_data() {
  for (const auto &[type, object] : objects_) {
    static_cast<kelp_object_header *>(object)->obj_flags |= OBJ_RA_DATA;
  }
}

// --- images -------------------------------------------------------------------------------------

void *Exchanged::record() {
  if (record_ != nullptr) return record_;
  std::uint32_t err = 0;
  record_ = call<void *>(name_ + "_create_record", handle_, space, &err);
  must_be_zero(err, name_ + "_create_record");
  for (const auto &[type, object] : objects_) {
    call<void>(name_ + "_" + of(*type, "set_field"), handle_, space, record_, object);
  }
  return record_;
}

std::vector<std::uint8_t> Exchanged::image() {
  constexpr std::int32_t room = 65536;
  std::vector<std::uint8_t> buffer(room + slack);
  std::uint32_t err = 0;
  std::uint32_t used;
  if (table_ == nullptr) {
    used = call<std::uint32_t>(name_ + "_marshal", handle_, space, buffer.data(),
                               objects_[0].second, room, &err);
  } else {
    used = call<std::uint32_t>(name_ + "_table_record_marshal", handle_, space, buffer.data(),
                               record(), room, &err);
  }
  must_be_zero(err, name_ + "_marshal");
  buffer.resize(used);
  return buffer;
}

std::uint32_t Exchanged::read(const std::vector<std::uint8_t> &image, bool reuse) {
  std::vector<std::uint8_t> buffer = image;
  buffer.resize(image.size() + slack, 0xEE);
  const auto length = static_cast<std::int32_t>(buffer.size());
  std::uint32_t err = 0;
  std::uint32_t used;
  if (table_ == nullptr) {
    used = call<std::uint32_t>(name_ + "_unmarshal", handle_, space, buffer.data(),
                               objects_[0].second, length, std::uint32_t{reuse}, &err);
  } else {
    used = call<std::uint32_t>(name_ + "_table_record_unmarshal", handle_, space, &record_,
                               buffer.data(), length, std::uint32_t{0}, &err);
    for (auto &[type, object] : objects_) {
      object = call<void *>(name_ + "_" + of(*type, "get_field"), handle_, space, record_);
    }
  }
  must_be_zero(err, name_ + "_unmarshal");
  return used;
}

}  // namespace evolution
