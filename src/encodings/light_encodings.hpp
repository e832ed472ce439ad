// The encodings of enumerations and of flag sets, bound to a type: the same operations for both.
// The rows of the operations and the bodies, which differ, stand in enumeration_encodings and
// flag_set_encodings; a type's facts choose between them. Called by the forwarders of both kinds of
// type and by the encodings of structures for their fields.
#pragma once

#include "encodings/enumeration_encodings.hpp"
#include "encodings/flag_set_encodings.hpp"

namespace harbor::light_encodings {

template <const auto &T>
constexpr const auto &facts_of() {
  if constexpr (std::is_same_v<decltype(T), const model::Enumeration &>) {
    return enumeration_encodings::facts<T>;
  } else {
    return flag_set_encodings::facts<T>;
  }
}
template <const auto &T>
using ObjectOf = typename std::remove_cvref_t<decltype(facts_of<T>())>::Object;

constexpr bool is_light(Kind kind) { return kind == Kind::enumeration || kind == Kind::flags; }

// The enumeration or flag set of such a field.
template <const Field &F>
constexpr const auto &type_of() {
  if constexpr (F.kind == Kind::enumeration) {
    return *F.enumeration;
  } else {
    return *F.flag_set;
  }
}

// The image of an object of which there is nothing to say; it has image_length<T>() bytes.
template <const auto &T>
constexpr std::uint32_t image_length() {
  if constexpr (std::is_same_v<ObjectOf<T>, EnumerationObject>) {
    return enumeration_encodings::image_length;
  } else {
    return flag_set_encodings::image_length;
  }
}
template <const auto &T>
void encode(const ObjectOf<T> *object, std::uint8_t *image) {
  std::uint8_t *const behind = image + KELP_WIRE_VARIANT_SIZE;
  *image =
      static_cast<std::uint8_t>(type_record_access::capped_variant(object->variant, T.variants));
  if constexpr (std::is_same_v<ObjectOf<T>, EnumerationObject>) {
    kelp::quick::store_big_endian(behind, enumeration::map_to_internal_value<T>(object->value));
  } else {
    constexpr std::uint32_t jump = image_length<T>() - KELP_WIRE_VARIANT_SIZE;
    kelp::quick::store_big_endian(behind, jump);
    behind[KELP_WIRE_JUMP_SIZE] = object->flags;
  }
}

template <const auto &T>
std::uint32_t marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *object,
                      std::int32_t length, std::uint32_t *err) {
  return write_image(facts_of<T>(), handle, space_id, bytes(buffer),
                     static_cast<const ObjectOf<T> *>(object), length, err);
}

template <const auto &T>
std::uint32_t unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                        void *object, std::int32_t length, std::uint32_t reuse,
                        std::uint32_t *err) {
  return read_image(facts_of<T>(), handle, space_id, bytes(buffer),
                    static_cast<ObjectOf<T> *>(object), length, reuse, err);
}

// The body behind the exported name, for fields of structures.
template <const auto &T>
std::uint32_t print(const light_text::Writer &writer, std::uint32_t indent, std::string_view label,
                    const void *object) {
  return write_line(facts_of<T>(), writer.handle, writer, indent, label,
                    static_cast<const ObjectOf<T> *>(object), writer.err);
}

template <const auto &T>
std::uint32_t print(kelp_handle *handle, std::uint32_t space_id, char *buffer, std::uint32_t indent,
                    const char *label, const void *object, std::int32_t size, std::uint32_t *err) {
  return print<T>({handle, space_id, buffer, size, err}, indent, light_text::view_of(label),
                  object);
}

template <const auto &T>
std::uint32_t print_cr(kelp_handle *handle, const void *object, char *buffer, std::int32_t size) {
  const std::uint32_t length =
      print<T>({handle, handle->cr_space_id, buffer, size, &handle->cr_err}, 0, T.name, object);
  return light_text::carried_result(handle, length);
}

// The body behind the exported name, for fields of structures.
template <const auto &T>
std::uint32_t to_xml(const light_text::Writer &writer, std::string_view tag, const void *object) {
  return write_element(facts_of<T>(), writer.handle, writer, tag,
                       static_cast<const ObjectOf<T> *>(object), writer.err);
}

// Required: the state byte is dropped.
template <const auto &T>
std::uint32_t to_xml(kelp_handle *handle, std::uint32_t space_id, const char *tag, char *buffer,
                     const void *object, std::int32_t size, std::uint32_t, std::uint32_t *err) {
  return to_xml<T>({handle, space_id, buffer, size, err}, light_text::view_of(tag), object);
}

template <const auto &T>
std::uint32_t toxml_cr(kelp_handle *handle, const void *object, char *buffer, std::uint32_t size) {
  const std::uint32_t length = to_xml<T>(
      {handle, handle->cr_space_id, buffer, static_cast<std::int32_t>(size), &handle->cr_err},
      T.name, object);
  return light_text::carried_result(handle, length);
}

// Reads the members of an element, for fields of structures.
template <const auto &T>
void from_xml(kelp_handle *handle, std::uint32_t space_id, light_text::Members &members,
              void *object, std::uint32_t *err) {
  read_element(facts_of<T>(), handle, space_id, members, static_cast<ObjectOf<T> *>(object), err);
}

template <const auto &T>
void from_xml(kelp_handle *handle, std::uint32_t space_id, const char *path,
              kelp_xml_document *document, void *object, std::uint32_t *err, char *message,
              std::int32_t message_size) {
  light_text::MembersAtPath members(handle, document, path, err, message, message_size);
  from_xml<T>(handle, space_id, members, object, err);
}

}  // namespace harbor::light_encodings
