// The XML form of a structure: an element for the object, one for each field under its name. Called
// by the forwarders of <type>_to_xml, _toxml_cr and _from_xml and by the record encodings of the
// tables. Promises: writing shows every field of the object's variant but references, set or not,
// and always asks for the closing tag; reading asks for every field but references and counters
// whatever the object's variant, leaves alone what the document does not have, and keeps what was
// read before a failure.
//
//   <stats><nbr_event_count>1</nbr_event_count><nbr_retrans_qlen>0</nbr_retrans_qlen></stats>
#pragma once

#include <kelp/xml_elements.h>

#include <algorithm>
#include <array>

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

// Paths are cut at this length without a message.
using Path = BoundedText<256>;

struct Progress;

// A document while one element of it is read. Where a handle works inline, what is in the element
// is found without paths, and what is out of the ordinary is read by its path all the same, which
// knows what to say.
struct Source {
  kelp_handle *handle;
  std::uint32_t space_id;
  const char *path;
  kelp_xml_document *document;
  std::uint32_t *err;
  char *message;
  std::int32_t message_size;
  const kelp_xml_element *element = nullptr;  // null: by paths
  Progress *progress = nullptr;               // beside it

  Source at(const Path &its_path) const {
    return {handle, space_id, its_path.data(), document, err, message, message_size};
  }
};

enum class Missed { nothing, element, member, structure };

// What is kept from field to field while an element is read without paths: where to look next, and
// what was missed last. The words about that are made once somebody could ask for them: at the end,
// and before anything that may fail, allocate or be heard.
struct Progress {
  std::uint32_t next = 0;
  Missed missed = Missed::nothing;
  const char *path = nullptr;  // of the element in which it was missed
  std::string_view tag;
  std::string_view member;  // below the tag
  Path kept;                // that path, once its element is done
};

Path child_path(const Source &source, std::string_view tag);
// Indexes in paths begin at 1.
Path element_path(const Source &source, std::string_view tag, std::uint32_t index);

// Asks for the element itself: 2 when it is not there.
bool open(const Source &source);

// Looks for the element itself, to be read without paths; longest is what its paths have behind its
// own. Without an element it is to be read by paths.
void find(Source &source, Progress &progress, std::size_t longest);

// What of the element has that tag.
kelp_xml_row children(const Source &source, std::string_view tag);

void miss(const Source &source, Missed missed, std::string_view tag, std::string_view member = {});
// Says what was missed last, if anything.
void tell(const Source &source);
// Forgets it with the last error.
void clear_last_error(const Source &source);
// An element inside another one is done.
void leave(const Source &source);

// True to go on behind a field: it was read, or its element is missing and the field stays as it
// was.
bool goes_on(const Source &source);

// No memory for a temporary element: 12.
void fail_creation(const Source &source);

// The members that stand in the element of an enumeration or flag set.
class MembersOfElement final : public light_text::Members {
 public:
  MembersOfElement(const Source &source, std::string_view tag);

  // False when they are to be asked for by paths.
  bool are_known() const { return count_ <= tags_.size(); }
  light_text::Found find(std::string_view name) override;
  void clear_last_error() override { xml::clear_last_error(source_); }

 private:
  const Source &source_;
  std::string_view tag_;
  std::array<std::string_view, 8> tags_;
  std::size_t count_ = 0;
};

// The most that a path of something in the element has behind the element's own.
template <const Structure &T>
inline constexpr std::size_t longest_below = [] {
  constexpr std::size_t longest_index = 12;
  std::size_t longest = 0;
  const auto consider = [&](const Field &field, std::size_t tag, std::size_t more) {
    if (field.kind == Kind::array) more = longest_index;
    longest = std::max(longest, 1 + tag + more);
  };
  harbor::for_each_field<T>([&]<const Field & F>() {
    if constexpr (F.kind == Kind::arm) {
      consider(F, field_walk::arm_name<T, F, '-'>.size(), 0);
    } else if constexpr (light_encodings::is_light(F.kind)) {
      for (const model::Member &member : light_encodings::type_of<F>().members) {
        consider(F, F.name.size(), 1 + member.name.size());
      }
    } else {
      consider(F, F.name.size(), 0);
    }
  });
  return longest;
}();

template <const Structure &T>
void from_xml(kelp_handle *handle, std::uint32_t space_id, const char *path,
              kelp_xml_document *document, void *object, std::uint32_t *err, char *message,
              std::int32_t message_size);
template <const Structure &T>
void read_fields(const Source &source, void *object);

template <Kind kind>
void read_at_path(const Source &source, const Path &path, void *value) {
  using Type = Primitive<kind>;
  Type::from_xml(source.handle, source.space_id, path.data(), source.document,
                 static_cast<typename Type::value_type *>(value), source.err, source.message,
                 source.message_size);
}

// False where it is to be read by its path.
template <Kind kind>
bool read_element(const Source &source, const kelp_xml_element *element, void *value) {
  using Type = Primitive<kind>;
  auto *place = static_cast<typename Type::value_type *>(value);
  if constexpr (kind == Kind::text) {
    tell(source);
    return Type::read_element(source.handle, source.space_id, element, place, source.err) != 0;
  } else {
    return Type::read_element(source.handle, source.space_id, element, place) != 0;
  }
}

template <Kind kind>
void read_primitive(const Source &source, std::string_view tag, void *value) {
  if (source.element != nullptr) {
    const kelp_xml_row row = children(source, tag);
    if (row.count == 0) return miss(source, Missed::element, tag);
    if (read_element<kind>(source, row.elements[0], value)) return;
    tell(source);
  }
  read_at_path<kind>(source, child_path(source, tag), value);
}

template <const auto &T>
void read_light(const Source &source, std::string_view tag, void *object) {
  if (source.element != nullptr) {
    MembersOfElement members(source, tag);
    if (members.are_known()) {
      return light_encodings::from_xml<T>(source.handle, source.space_id, members, object,
                                          source.err);
    }
    tell(source);
  }
  light_encodings::from_xml<T>(source.handle, source.space_id, child_path(source, tag).data(),
                               source.document, object, source.err, source.message,
                               source.message_size);
}

template <const Structure &T>
void read_structure(const Source &source, std::string_view tag, void *object) {
  const Path path = child_path(source, tag);
  if (source.element == nullptr || !path.has_room(longest_below<T>)) {
    if (source.element != nullptr) tell(source);
    return from_xml<T>(source.handle, source.space_id, path.data(), source.document, object,
                       source.err, source.message, source.message_size);
  }
  clear_last_error(source);
  if constexpr (T.is_choice()) register_trace(source.handle);
  const kelp_xml_row row = children(source, tag);
  if (row.count == 0) return miss(source, Missed::structure, tag);
  Source inside = source.at(path);
  inside.element = row.elements[0];
  inside.progress = source.progress;
  read_fields<T>(inside, object);
  leave(inside);
}

// Reads the elements of an array in one go where nobody can tell; gives how many, and 0 where they
// are to be read one by one.
template <const Structure &T, const Field &F>
std::uint32_t read_at_once(const Source &source, const kelp_xml_row &row, void *object) {
  using Type = Primitive<F.held>;
  constexpr const auto &array = array_field::facts<T, F>;
  if (row.count == 0 || !array_field::takes_at_once(array, source.handle, object)) return 0;
  array_field::NewStore store(array, source.handle, source.space_id, row.count);
  auto *elements = static_cast<typename Type::value_type *>(store.elements());
  if (elements == nullptr || Type::read_row(&row, elements) != row.count ||
      !field_access::begin_write<T, F>(source.handle, source.space_id, object, source.err)) {
    return 0;
  }
  store.give_to(object);
  return row.count;
}

// The elements are read into a temporary one each, up to the first that the document does not have,
// and enter the array by its own setter.
template <const Structure &T, const Field &F>
bool read_array(const Source &source, void *object) {
  using Type = Primitive<F.held>;
  kelp_xml_row row{};
  if (source.element != nullptr) {
    tell(source);
    row = children(source, F.name);
  }
  for (std::uint32_t index = 0;; ++index) {
    auto *value = Type::create(source.handle, source.space_id);
    if (value == nullptr) {
      fail_creation(source);
      return false;
    }
    if constexpr (requires { Type::read_row; }) {
      if (index == 0) index = read_at_once<T, F>(source, row, object);
    }
    if (*source.err == 0 &&
        (index >= row.count || !read_element<F.held>(source, row.elements[index], value))) {
      read_at_path<F.held>(source, element_path(source, F.name, index + 1), value);
    }
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
  constexpr std::string_view tag = field_walk::arm_name<T, F, '-'>.data();
  if (!field_walk::is_selected<T, F>(object)) return true;
  if (source.element != nullptr) tell(source);
  void **slot = place_of<T, F>(object);
  void *created = create_arm<F>(source.handle, source.space_id, slot, source.err);
  if (created == nullptr) return false;
  if constexpr (F.held == Kind::structure) {
    read_structure<*F.structure>(source, tag, created);
  } else {
    read_primitive<F.held>(source, tag, created);
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
    auto *place = place_of<T, F>(object);
    if constexpr (F.kind == Kind::structure) {
      read_structure<*F.structure>(source, F.name, place);
    } else if constexpr (light_encodings::is_light(F.kind)) {
      read_light<light_encodings::type_of<F>()>(source, F.name, place);
    } else {
      read_primitive<F.kind>(source, F.name, place);
    }
    return goes_on(source);
  }
}

// The object's variant is not looked at: fields of all floors are asked for, and those of later
// floors stand behind the others in every structure.
template <const Structure &T>
void read_fields(const Source &source, void *object) {
  every_floor<T>(T.variants - 1, [&]<std::uint8_t floor>() {
    return field_walk::every_field<T, floor>(
        [&]<const Field & F>() { return read_field<T, F>(source, object); });
  });
}

// A choice, which creates objects of its own as it reads, registers the trace first.
template <const Structure &T>
void from_xml(kelp_handle *handle, std::uint32_t space_id, const char *path,
              kelp_xml_document *document, void *object, std::uint32_t *err, char *message,
              std::int32_t message_size) {
  if (!begin(handle, err)) return;
  if constexpr (T.is_choice()) register_trace(handle);
  Source source{handle, space_id, path, document, err, message, message_size};
  Progress progress;
  find(source, progress, longest_below<T>);
  if (source.element == nullptr && !open(source)) return;
  read_fields<T>(source, object);
  if (source.element != nullptr) tell(source);
}

}  // namespace harbor::xml
