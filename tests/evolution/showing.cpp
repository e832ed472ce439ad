// How a peer shows its objects: a line for each field, through exported getters.
#include <kelp/core.h>
#include <kelp/primitives.h>

#include <cstdio>

#include "evolution/exchange.hpp"

namespace evolution {

using harbor::model::Field;
using harbor::model::Kind;
using harbor::model::Structure;

namespace {

constexpr std::uint32_t refused = 43;

std::string text_of(const ip_address *address) {
  if (address == nullptr) return "-";
  return address->family == KELP_AF_UNSET ? "unset" : hexadecimal(address->bytes, 4);
}
std::string text_of(const kelp_vstring *text) {
  return text == nullptr ? "-" : "'" + std::string(kelp_vstring_text(text)) + "'";
}
std::string text_of(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.17g", value);
  return text;
}
// The handle word as a number, then the other bytes.
std::string text_of(const kelp_oid &oid) {
  char word[32];
  std::snprintf(word, sizeof word, "%016llx", static_cast<unsigned long long>(oid.handle_word));
  return word + hexadecimal(oid.id, sizeof oid.id) + hexadecimal(oid.source, sizeof oid.source);
}

// One field of an object under its getters.
class Shown {
 public:
  Shown(kelp_handle *handle, const Structure &type, const Field &field, void *object)
      : handle_(handle), type_(type), field_(field), object_(object) {}

  // count and counter_code: of the array's counter, which stands before it.
  void read(std::uint32_t count, std::uint32_t counter_code) {
    switch (field_.kind) {
      case Kind::u8:
        value = std::to_string(get<std::uint8_t>("get_value"));
        break;
      case Kind::u16:
        value = std::to_string(get<std::uint16_t>("get_value"));
        break;
      case Kind::real:
        value = text_of(get<double>("get_value"));
        break;
      case Kind::address:
        value = text_of(get<const ip_address *>("get"));
        break;
      case Kind::text:
        value = text_of(get<const kelp_vstring *>("get"));
        break;
      case Kind::structure:
        read_nested(get<void *>("get"));
        break;
      case Kind::reference:
        get<void *>("get_by_ref");
        // What the identifier leads to is not asked here, only whether the variant has the field.
        if (code != refused) code = 0;
        value = text_of(at<kelp_reference>(type_, field_, object_).oid);
        break;
      case Kind::array:
        for (std::uint32_t index = 0; index < count; ++index) {
          value += (index == 0 ? "" : ",") + element(index);
        }
        value = "[" + value + "]";
        // Without elements there is nothing to ask for: the counter tells for both.
        if (count == 0) code = counter_code;
        break;
      case Kind::arm:
        read_arm(get<void *>("get"));
        break;
      default:
        value = std::to_string(get<std::uint32_t>("get_value"));
    }
    if (code != 0) value = "-";
  }

  // The variant of an object that the field holds in place.
  std::string variant() const {
    const bool is_object = field_.kind == Kind::enumeration || field_.kind == Kind::flags ||
                           field_.kind == Kind::structure;
    if (code != 0 || !is_object) return "-";
    return std::to_string(at<kelp_object_header>(type_, field_, object_).variant);
  }

  // Getters of states look at no variant.
  std::string states(std::uint32_t count) {
    const bool is_tracked = handle_->sttr != nullptr && handle_->sttr->sttr_mode == STTR_MODE_ON;
    if (!is_tracked || !harbor::model::has_state(field_)) return "-";
    const std::uint32_t of_value = code;
    code = 0;
    std::string text;
    if (field_.kind == Kind::array) {
      text = std::to_string(get<std::uint8_t>("state_flag_whole_get"));
      // Elements that came in an image without states have none.
      std::uint64_t elements = 0;
      get<void>("state_flag_get_arr", &elements);
      for (std::uint32_t index = 0; elements != 0 && index < count; ++index) {
        text += "," + std::to_string(get<std::uint8_t>("state_flag_get", index));
      }
    } else {
      text = std::to_string(get<std::uint8_t>("state_flag_get"));
    }
    must_be_zero(code, of(type_, field_, "state_flag_get"));
    code = of_value;
    return text;
  }

  std::uint32_t code = 0;
  std::string value;
  void *nested = nullptr;  // a structure in the field, or at the end of an arm

 private:
  template <typename Result, typename... Arguments>
  Result get(const char *suffix, Arguments... arguments) {
    return call<Result>(of(type_, field_, suffix), handle_, space, object_, arguments..., &code);
  }

  std::string element(std::uint32_t index) {
    if (field_.held == Kind::address) return text_of(get<const ip_address *>("get", index));
    if (field_.held == Kind::u8) return std::to_string(get<std::uint8_t>("get_value", index));
    return std::to_string(get<std::uint32_t>("get_value", index));
  }

  void read_nested(void *object) {
    nested = object;
    value = "{}";
  }

  void read_arm(void *arm) {
    if (arm == nullptr) {
      value = "none";
    } else if (field_.held == Kind::structure) {
      read_nested(arm);
    } else if (field_.held == Kind::text) {
      value = text_of(static_cast<const kelp_vstring *>(arm));
    } else {
      value = std::to_string(*static_cast<const std::uint32_t *>(arm));
    }
  }

  kelp_handle *handle_;
  const Structure &type_;
  const Field &field_;
  void *object_;
};

void show_structure(kelp_handle *handle, const Structure &type, void *object,
                    const std::string &prefix, bool raised, std::vector<std::string> &lines) {
  std::uint32_t err = 0;
  if (raised) call<void>(of(type, "adjust_variant"), handle, space, object, &err);
  must_be_zero(err, of(type, "adjust_variant"));
  std::uint32_t count = 0;
  std::uint32_t counter_code = 0;
  for (const Field *field : type.fields) {
    Shown shown(handle, type, *field, object);
    shown.read(count, counter_code);
    if (field->kind == Kind::counter) {
      counter_code = shown.code;
      count = shown.code == 0 ? static_cast<std::uint32_t>(std::stoul(shown.value)) : 0;
    }
    const std::string path = prefix + std::string(field->name);
    lines.push_back(path + " " + std::to_string(shown.code) + " " + shown.value + " " +
                    shown.variant() + " " + shown.states(count));
    if (shown.code == 0 && shown.nested != nullptr) {
      show_structure(handle, *field->structure, shown.nested, path + ".", raised, lines);
    }
  }
}

// The value (of a flag set the byte, then what is given for each bit) and the variant; then the
// printed line without its end.
void show_light(kelp_handle *handle, const std::string &name, void *object,
                std::vector<std::string> &lines) {
  std::uint32_t err = 0;
  std::string value;
  if (found(harbor::model::all_enumerations, name) != nullptr) {
    value = std::to_string(call<std::uint32_t>(name + "_get_value", handle, space, object, &err));
  } else {
    value = std::to_string(static_cast<std::uint8_t *>(object)[harbor::model::flags_offset]);
    for (std::uint32_t bit = 0; bit < 8; ++bit) {
      std::uint32_t code = 0;
      const auto on = call<std::uint32_t>(name + "_get_value", handle, space, object, bit, &code);
      value += code == refused ? "?" : on != 0 ? "1" : "0";
    }
  }
  must_be_zero(err, name + "_get_value");
  const auto &header = *static_cast<kelp_object_header *>(object);
  lines.push_back("value " + value + " variant " + std::to_string(header.variant));
  std::string text(4096, ' ');
  text.resize(call<std::uint32_t>(name + "_print_cr", handle, object, text.data(),
                                  static_cast<std::int32_t>(text.size())));
  text.erase(text.find_last_not_of("\n ") + 1);
  lines.push_back(text);
}

}  // namespace

std::vector<std::string> Exchanged::show(bool raised) const {
  std::vector<std::string> lines;
  for (const auto &[type, object] : objects_) {
    if (type == nullptr) {
      show_light(handle_, name_, object, lines);
      continue;
    }
    const std::string prefix = table_ == nullptr ? "" : std::string(type->name) + ".";
    const auto &header = *static_cast<kelp_object_header *>(object);
    if (!raised) lines.push_back(prefix + " variant " + std::to_string(header.variant));
    show_structure(handle_, *type, object, prefix, raised, lines);
  }
  return lines;
}

}  // namespace evolution
