// The XML form of a structure: an element for the object, one for each field under its name. Called
// by the forwarders of <type>_to_xml, _toxml_cr and _from_xml and by the record encodings of the
// tables. Promises: writing shows every field of the object's variant but references, set or not,
// and always asks for the closing tag; reading asks for every field but references and counters
// whatever the object's variant, leaves alone what the document does not have, and keeps what was
// read before a failure.
//
//   <stats><nbr_event_count>1</nbr_event_count><nbr_retrans_qlen>0</nbr_retrans_qlen></stats>
#pragma once

#include <kelp/xml.h>

#include "encodings/arm_creation.hpp"
#include "encodings/field_walk.hpp"
#include "encodings/light_encodings.hpp"
#include "module/bounded_text.hpp"
#include "module/operation.hpp"
#include "types/array_field.hpp"
#include "types/primitive.hpp"
#include "types/state_mark.hpp"
#include "types/state_tracking.hpp"

namespace harbor::xml {

inline constexpr std::array operations{
    Operation{
        .suffix = "to_xml",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *tag, char *buffer, "
                     "const $T *object, uint32_t size, uint32_t state_byte, uint32_t *err",
        .rule = "xml::to_xml",
        .brief = "Writes object as the element tag into buffer, at most size bytes and none for a "
                 "negative size, and gives the bytes written. state_byte is that of the element; "
                 "under a tracking handle each "
                 "field's element carries its own.",
        .errors = "what the field writers set, such as KELP_ERR_NO_ROOM when the buffer is too "
                  "short; KELP_ERR_INVALID when the handle tracks state and the object does not. "
                  "What was written stays",
    },
    Operation{
        .suffix = "toxml_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, char *buffer, uint32_t size",
        .rule = "xml::toxml_cr",
        .brief = "Writes object as an element with the type's name, under the handle's "
                 "cr_space_id; gives the bytes written, or 0xFFFFFFFF when cr_err is set "
                 "afterwards.",
        .errors = "as $type_to_xml, in cr_err",
    },
    Operation{
        .suffix = "from_xml",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, const char *path, "
                     "kelp_xml_document *document, $T *object, uint32_t *err, char *message, "
                     "int32_t message_size",
        .rule = "xml::from_xml",
        .brief = "Reads the element at path into object. Fields that it does not have keep what "
                 "they held; elements that are no fields are passed over. A failed lookup is told "
                 "in message, message_size bytes or null.",
        .errors =
            "KELP_ERR_NOT_FOUND when there is no element at path; KELP_ERR_NO_MEMORY when there is "
            "no memory; what a field's reader sets otherwise. What was read before stays",
        .ownership = "what is allocated for arrays, texts and arms belongs to the object; an arm "
                     "that it had before is left to the caller",
    },
};

inline constexpr Family family{"xml", operations};

// --- writing ------------------------------------------------------------------------------------

// An element while it is written.
struct Element : light_text::Output {
  bool tracks_state;
};

template <const Structure &T>
std::uint32_t write(const light_text::Output &output, std::string_view tag, const void *object,
                    std::uint32_t state_byte);

template <const Structure &T, const Field &F>
std::uint8_t state_of(Element &element, const void *object) {
  if (!element.tracks_state) return 0;
  return state_tracking::state_flag_get<T, F>(element.handle, element.space_id,
                                              const_cast<void *>(object), element.err);
}

template <Kind kind>
void write_primitive(Element &element, std::string_view tag, const void *held,
                     std::uint32_t state) {
  using Type = Primitive<kind>;
  const auto *value = static_cast<const typename Type::value_type *>(held);
  if constexpr (requires { typename Type::form; }) {
    const std::uint32_t quick = state == 0 && element.is_quick(0)
                                    ? kelp::quick::put_element<typename Type::form>(
                                          element.here(), element.space(), tag, *value)
                                    : 0;
    element.length += quick;
    if (quick != 0) return;
  }
  element.length += Type::to_xml(element.handle, element.space_id, tag.data(), element.here(),
                                 value, element.space(), state, element.err);
}

template <const Structure &T>
void write_structure(Element &element, std::string_view tag, const void *object,
                     std::uint32_t state) {
  element.length += write<T>(element.rest(), tag, object, state);
}

template <const Structure &T, const Field &F>
void write_array(Element &element, const void *object) {
  using Value = typename Primitive<F.held>::value_type;
  const std::uint32_t count = field_walk::count_of<T, F>(object);
  const auto *values = field_walk::elements_of<T, F, Value>(object);
  for (std::uint32_t index = 0; index < count && *element.err == 0; ++index) {
    std::uint8_t state = 0;
    if (element.tracks_state) {
      state = static_cast<std::uint8_t>(state_tracking::element_state_flag_get<T, F>(
          element.handle, element.space_id, const_cast<void *>(object), index, element.err));
    }
    write_primitive<F.held>(element, F.name, values + index, state);
  }
}

template <const Structure &T, const Field &F>
void write_arm(Element &element, const void *object) {
  const void *held = *place_of<T, F>(object);
  if (!field_walk::is_selected<T, F>(object) || held == nullptr) return;
  constexpr std::string_view tag = field_walk::arm_name<T, F, '-'>.data();
  const std::uint8_t state = state_of<T, F>(element, object);
  if constexpr (F.held == Kind::structure) {
    write_structure<*F.structure>(element, tag, held, state);
  } else {
    write_primitive<F.held>(element, tag, held, state);
  }
}

// Required: the state byte of an enumeration or flag field is read and then dropped. A counter has
// none.
template <const Structure &T, const Field &F>
void write_field(Element &element, const void *object) {
  if (*element.err != 0) return;
  constexpr std::string_view tag = F.name;
  if constexpr (F.kind == Kind::counter) {
    write_primitive<F.kind>(element, tag, place_of<T, F>(object), 0);
  } else if constexpr (F.kind == Kind::array) {
    write_array<T, F>(element, object);
  } else if constexpr (F.kind == Kind::arm) {
    write_arm<T, F>(element, object);
  } else if constexpr (F.kind != Kind::reference) {
    const std::uint8_t state = state_of<T, F>(element, object);
    if constexpr (F.kind == Kind::structure) {
      write_structure<*F.structure>(element, tag, place_of<T, F>(object), state);
    } else if constexpr (light_encodings::is_light(F.kind)) {
      element.length += light_encodings::to_xml<light_encodings::type_of<F>()>(
          element.rest(), tag, place_of<T, F>(object));
    } else {
      write_primitive<F.kind>(element, tag, place_of<T, F>(object), state);
    }
  }
}

template <const Structure &T, std::uint8_t floor>
void write_fields(Element &element, const void *object) {
  field_walk::for_each_field<T, floor>(
      [&]<const Field & F>() { write_field<T, F>(element, object); });
}

template <const Structure &T>
std::uint32_t write(const light_text::Output &output, std::string_view tag, const void *object,
                    std::uint32_t state_byte) {
  using enum state_tracking::Tracking;
  kelp_handle *handle = output.handle;
  if (!begin(handle, output.err)) return 0;
  const std::int8_t variant = kelp::quick::get_instance_variant(handle, object, 1, 0);
  constexpr std::uint32_t corrupted = messages::corrupted_at(T, messages::StructureSite::to_xml);
  Element element{output, state_tracking::tracking_of(handle, corrupted) == on};
  element.open(tag, state_byte);
  for_each_floor<T>(variant,
                    [&]<std::uint8_t floor>() { write_fields<T, floor>(element, object); });
  element.close(tag);
  return element.length;
}

template <const Structure &T>
std::uint32_t to_xml(kelp_handle *handle, std::uint32_t space_id, const char *tag, char *buffer,
                     const void *object, std::uint32_t size, std::uint32_t state_byte,
                     std::uint32_t *err) {
  return write<T>({handle, space_id, buffer, light_text::space_of(size), err},
                  light_text::view_of(tag), object, state_byte);
}

template <const Structure &T>
std::uint32_t toxml_cr(kelp_handle *handle, const void *object, char *buffer, std::uint32_t size) {
  const std::uint32_t length = to_xml<T>(handle, handle->cr_space_id, T.name.data(), buffer, object,
                                         size, 0, &handle->cr_err);
  return light_text::carried_result(handle, length);
}

// --- reading ------------------------------------------------------------------------------------

// A document while one element of it is read.
struct Source {
  kelp_handle *handle;
  std::uint32_t space_id;
  const char *path;
  kelp_xml_document *document;
  std::uint32_t *err;
  char *message;
  std::int32_t message_size;
};

// Paths are cut at this length without a message.
using Path = BoundedText<256>;
Path child_path(const Source &source, const char *tag);
// Indexes in paths begin at 1.
Path element_path(const Source &source, const char *tag, std::uint32_t index);

// Asks for the element itself: 2 when it is not there.
bool open(const Source &source);

// True to go on behind a field: it was read, or its element is missing and the field stays as it
// was.
bool goes_on(const Source &source);

// No memory for a temporary element: 12.
void fail_creation(const Source &source);

template <const Structure &T>
void from_xml(kelp_handle *handle, std::uint32_t space_id, const char *path,
              kelp_xml_document *document, void *object, std::uint32_t *err, char *message,
              std::int32_t message_size);

template <Kind kind>
void read_primitive(const Source &source, const char *path, void *value) {
  using Type = Primitive<kind>;
  Type::from_xml(source.handle, source.space_id, path, source.document,
                 static_cast<typename Type::value_type *>(value), source.err, source.message,
                 source.message_size);
}

template <const Structure &T>
void read_structure(const Source &source, const char *path, void *object) {
  from_xml<T>(source.handle, source.space_id, path, source.document, object, source.err,
              source.message, source.message_size);
}

// Reads the elements of an array in one go where nobody can tell; gives how many, and 0 where they
// are to be read one by one.
template <const Structure &T, const Field &F>
std::uint32_t read_at_once(const Source &source, void *object) {
  using Type = Primitive<F.held>;
  constexpr std::size_t longest_index = 12;
  constexpr const auto &array = array_field::facts<T, F>;
  if (!array_field::takes_at_once(array, source.handle, object)) return 0;
  const Path path = child_path(source, F.name.data());
  std::uint32_t count = 0;
  if (!path.has_room(longest_index) ||
      xml_get_element_nodecount(source.document, path.data(), &count) != 0 || count == 0) {
    return 0;
  }
  array_field::NewStore store(array, source.handle, source.space_id, count);
  auto *elements = static_cast<typename Type::value_type *>(store.elements());
  if (elements == nullptr ||
      Type::elements_from_xml(source.document, path.data(), elements, count) != count ||
      !field_access::begin_write<T, F>(source.handle, source.space_id, object, source.err)) {
    return 0;
  }
  store.give_to(object);
  return count;
}

// The elements are read into a temporary one each, up to the first that the document does not have,
// and enter the array by its own setter.
template <const Structure &T, const Field &F>
bool read_array(const Source &source, void *object) {
  using Type = Primitive<F.held>;
  for (std::uint32_t index = 0;; ++index) {
    auto *value = Type::create(source.handle, source.space_id);
    if (value == nullptr) {
      fail_creation(source);
      return false;
    }
    if constexpr (requires { Type::elements_from_xml; }) {
      if (index == 0) index = read_at_once<T, F>(source, object);
    }
    const Path path = element_path(source, F.name.data(), index + 1);
    if (*source.err == 0) read_primitive<F.held>(source, path.data(), value);
    const bool is_read = *source.err == 0;
    if (is_read) {
      array_field::set<T, F>(source.handle, source.space_id, object, index, value, source.err);
    }
    Type::destroy(source.handle, source.space_id, value);
    if (!is_read) return goes_on(source);
  }
}

// Required: the selected arm is made anew, whatever the slot holds, and stays when the document
// does not have it.
template <const Structure &T, const Field &F>
bool read_arm(const Source &source, void *object) {
  if (!field_walk::is_selected<T, F>(object)) return true;
  void **slot = place_of<T, F>(object);
  void *created = create_arm<F>(source.handle, source.space_id, slot, source.err);
  if (created == nullptr) return false;
  const Path path = child_path(source, field_walk::arm_name<T, F, '-'>.data());
  if constexpr (F.held == Kind::structure) {
    read_structure<*F.structure>(source, path.data(), created);
  } else {
    read_primitive<F.held>(source, path.data(), created);
  }
  return goes_on(source);
}

template <const Structure &T, const Field &F>
bool read_field(const Source &source, void *object) {
  if constexpr (F.kind == Kind::reference || F.kind == Kind::counter) {
    return true;
  } else if constexpr (F.kind == Kind::array) {
    return read_array<T, F>(source, object);
  } else if constexpr (F.kind == Kind::arm) {
    return read_arm<T, F>(source, object);
  } else {
    const Path path = child_path(source, F.name.data());
    auto *place = place_of<T, F>(object);
    if constexpr (F.kind == Kind::structure) {
      read_structure<*F.structure>(source, path.data(), place);
    } else if constexpr (light_encodings::is_light(F.kind)) {
      light_encodings::from_xml<light_encodings::type_of<F>()>(
          source.handle, source.space_id, path.data(), source.document, place, source.err,
          source.message, source.message_size);
    } else {
      read_primitive<F.kind>(source, path.data(), place);
    }
    return goes_on(source);
  }
}

template <const Structure &T, std::uint8_t floor>
bool read_fields(const Source &source, void *object) {
  return field_walk::every_field<T, floor>(
      [&]<const Field & F>() { return read_field<T, F>(source, object); });
}

// The object's variant is not looked at: fields of all floors are asked for, and those of later
// floors stand behind the others in every structure. A choice, which creates objects of its own as
// it reads, registers the trace first.
template <const Structure &T>
void from_xml(kelp_handle *handle, std::uint32_t space_id, const char *path,
              kelp_xml_document *document, void *object, std::uint32_t *err, char *message,
              std::int32_t message_size) {
  if (!begin(handle, err)) return;
  if constexpr (T.is_choice()) register_trace();
  const Source source{handle, space_id, path, document, err, message, message_size};
  if (!open(source)) return;
  every_floor<T>(T.variants - 1,
                 [&]<std::uint8_t floor>() { return read_fields<T, floor>(source, object); });
}

}  // namespace harbor::xml
