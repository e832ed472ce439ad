#include "encodings/flag_set_encodings.hpp"

#include <kelp/wire.h>

namespace harbor::flag_set_encodings {

namespace {

constexpr light_text::Element error_element = light_text::element("<error>", "ERR", "</error>");

// Calls show(bit) for each bit of the set that is on, and show_error() for each bit of a null
// object, which counts as a mismatch of its own every time.
template <typename Show, typename ShowError>
void for_each_shown(kelp_handle *handle, const model::FlagSet &type, const FlagObject *object,
                    Show show, ShowError show_error) {
  const auto bits = static_cast<std::uint32_t>(type.members.size());
  for (std::uint32_t bit = 0; bit < bits; ++bit) {
    if (object != nullptr) {
      if (flag_set::masked(object->flags, bit) != 0) show(bit);
      continue;
    }
    std::uint32_t err = 0;
    fail_variant(handle, &err, About(type.name), "found a null object, expected one");
    if (err != 0) show_error();
  }
}

}  // namespace

// Required: the jump word is written in its place a second time whatever went before, with 4 as the
// room that it has.
std::uint32_t write_image(const FlagSetFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                          std::uint8_t *buffer, const FlagObject *object, std::int32_t length,
                          std::uint32_t *err) {
  if (!light_image::begin_image(facts.type->name.data(), handle, length, err)) return 0;
  const auto head = static_cast<std::int32_t>(light_image::marshal_variant(
      handle, space_id, buffer, object, facts.type->variants, length, err));
  std::int32_t jump = 0;
  std::int32_t total = head + static_cast<std::int32_t>(kelp::quick::variant_jump_marshal(
                                  handle, space_id, buffer + head, &jump, length - head, err));
  if (*err == 0) {
    if (total >= length) {
      fail(handle, KELP_ERR_NO_ROOM, err, About(facts.type->name),
           "found %d bytes of buffer, expected %d", length, total + 1);
    } else {
      buffer[total++] = object == nullptr ? 0 : object->flags;
    }
  }
  jump = total - head;
  kelp::quick::variant_jump_marshal(handle, space_id, buffer + head, &jump, 4, err);
  return static_cast<std::uint32_t>(total);
}

// Required: the byte of flags is taken without a test of the length, and no store is announced.
std::uint32_t read_image(const FlagSetFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                         const std::uint8_t *buffer, FlagObject *object, std::int32_t length,
                         std::uint32_t, std::uint32_t *err) {
  if (!light_image::begin_image(facts.type->name.data(), handle, length, err)) return 0;
  std::int8_t variant;
  const auto head = static_cast<std::int32_t>(light_image::unmarshal_variant(
      handle, space_id, buffer, variant, facts.type->variants, length, err));
  std::int32_t jump = 0;
  std::int32_t total = head + static_cast<std::int32_t>(kelp::quick::variant_jump_unmarshal(
                                  handle, space_id, buffer + head, &jump, length - head, err));
  light_image::take_header(handle, space_id, header_of(object), variant, facts.record);
  object->flags = buffer[total++];
  if (total < head + jump) {
    trace(type_source, Level::information, facts.offset_jump, static_cast<std::uint32_t>(total),
          static_cast<std::uint32_t>(head), static_cast<std::uint32_t>(jump));
    total = head + jump;
  }
  return static_cast<std::uint32_t>(total);
}

std::uint32_t write_line(const FlagSetFacts &facts, kelp_handle *handle, light_text::Writer writer,
                         std::uint32_t indent, std::string_view label, const FlagObject *object,
                         std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  writer.head(indent, label, facts.type->name);
  for_each_shown(
      handle, *facts.type, object,
      [&](std::uint32_t bit) { writer.word(word_of(*facts.type, bit)); },
      [&] { writer.word("ERR"); });
  writer.text("\n");
  return writer.length;
}

std::uint32_t write_element(const FlagSetFacts &facts, kelp_handle *handle,
                            light_text::Writer writer, std::string_view tag,
                            const FlagObject *object, std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  writer.open(tag, 0);
  for_each_shown(
      handle, *facts.type, object,
      [&](std::uint32_t bit) { writer.element(element_of(facts.members, bit)); },
      [&] { writer.element(error_element); });
  writer.close(tag);
  return writer.length;
}

// What the runtime leaves in the word when it adjusts the object is overwritten by the next
// look-up; behind the last one a 2 means no failure either.
void read_element(const FlagSetFacts &facts, kelp_handle *handle, std::uint32_t space_id,
                  light_text::Members &members, FlagObject *object, std::uint32_t *err) {
  if (*err != 0) return;
  members.clear_last_error();
  for (std::uint32_t bit = 0; bit < facts.type->members.size(); ++bit) {
    const light_text::Found found = members.find(facts.type->members[bit].name);
    if (found == light_text::Found::failed) return;
    if (found == light_text::Found::no) continue;
    members.clear_last_error();
    kelp::quick::adjust_variant(handle, space_id, object,
                                object == nullptr ? nullptr : object->tinfo,
                                facts.type->variants - 1, err);
    kelp::quick::get_instance_variant(handle, object, 0, 1);
    if (object != nullptr) flag_set::store_bit(handle, space_id, object, bit, true);
  }
  if (*err == KELP_ERR_NOT_FOUND) *err = 0;
}

}  // namespace harbor::flag_set_encodings
