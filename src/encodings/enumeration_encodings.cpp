#include "encodings/enumeration_encodings.hpp"

#include <kelp/primitives.h>
#include <kelp/wire.h>

namespace harbor::enumeration_encodings {

namespace {

constexpr std::size_t no_member = SIZE_MAX;

// Which member the value is.
std::size_t member_at(const model::Enumeration &type, std::uint32_t value) {
  for (std::size_t at = 0; at < type.members.size(); ++at) {
    if (type.members[at].value == value) return at;
  }
  return no_member;
}

// The named values of an internal range start at 1, the wire at 0.
std::uint32_t to_wire(const model::Enumeration &type, std::uint32_t value) {
  return enumeration::internal_value(type, value);
}
// Required: a held 0 goes out as 0 and comes back as 1.
std::uint32_t from_wire(const model::Enumeration &type, std::uint32_t value) {
  return type.has_internal_range && value < type.members.size() ? value + 1 : value;
}

}  // namespace

std::uint32_t write_image(const EnumerationFacts &facts, kelp_handle *handle,
                          std::uint32_t space_id, std::uint8_t *buffer,
                          const EnumerationObject *object, std::int32_t length,
                          std::uint32_t *err) {
  if (!light_image::begin_image(facts.type->name.data(), handle, length, err)) return 0;
  const std::uint32_t head = light_image::marshal_variant(handle, space_id, buffer, object,
                                                          facts.type->variants, length, err);
  const std::uint32_t value = object == nullptr ? 0 : to_wire(*facts.type, object->value);
  return head + u_int32_marshal(handle, space_id, buffer + head, &value,
                                length - static_cast<std::int32_t>(head), err);
}

// Required: the hook hears of the value between two stores of it.
std::uint32_t read_image(const EnumerationFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                         const std::uint8_t *buffer, EnumerationObject *object, std::int32_t length,
                         std::uint32_t reuse, std::uint32_t *err) {
  if (!light_image::begin_image(facts.type->name.data(), handle, length, err)) return 0;
  std::int8_t variant;
  const std::uint32_t head = light_image::unmarshal_variant(handle, space_id, buffer, variant,
                                                            facts.type->variants, length, err);
  light_image::take_header(handle, space_id, header_of(object), variant, facts.record);
  const std::uint32_t read =
      u_int32_unmarshal(handle, space_id, buffer + head, &object->value,
                        length - static_cast<std::int32_t>(head), reuse, err);
  // Where nothing was received there is nothing to map: the held value is stored as it was.
  const std::uint32_t value = *err == 0 ? from_wire(*facts.type, object->value) : object->value;
  store(handle, space_id, &object->value, value);
  return head + read;
}

// Required: the line of a value without a name stays open.
std::uint32_t write_line(const EnumerationFacts &facts, kelp_handle *handle,
                         light_text::Writer writer, std::uint32_t indent, std::string_view label,
                         const EnumerationObject *object, std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  writer.head(indent, label, facts.type->name);
  const std::size_t member = member_at(*facts.type, object->value);
  if (member == no_member) {
    writer.text("Enum value out of range");
  } else {
    writer.line(facts.type->members[member].name);
  }
  return writer.length;
}

std::uint32_t write_element(const EnumerationFacts &facts, kelp_handle *handle,
                            light_text::Writer writer, std::string_view tag,
                            const EnumerationObject *object, std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  writer.open(tag, 0);
  const std::size_t member = member_at(*facts.type, object->value);
  writer.element(member == no_member ? facts.out_of_range : facts.members[member]);
  writer.close(tag);
  return writer.length;
}

// Required: the store is plain, neither announced nor put under the variant rule.
void read_element(const EnumerationFacts &facts, kelp_handle *, std::uint32_t,
                  light_text::Members &members, EnumerationObject *object, std::uint32_t *err) {
  if (*err != 0) return;
  members.clear_last_error();
  for (const model::Member &member : facts.type->members) {
    switch (members.find(member.name)) {
      case light_text::Found::yes:
        object->value = member.value;
        return;
      case light_text::Found::failed:
        return;
      case light_text::Found::no:
        break;
    }
  }
}

}  // namespace harbor::enumeration_encodings
