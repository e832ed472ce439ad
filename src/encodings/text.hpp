// The text form of a structure: indented, one line for a value, a block for a structure. For logs
// and consoles; nothing parses it back. Called by the forwarders of <type>_print and _print_cr and
// by the record encodings of the tables. Promises: every field of the object's variant but
// references is shown under its own name, set or not; nothing is allocated; a buffer that is too
// short ends in a text that is cut, without a failure.
//
//   state@ospf_nbr_stat: {
//     nbr_event_count@u_int32:1
//     nbr_retrans_qlen@u_int32:0
//   }
#pragma once

#include <kelp/text.h>

#include "encodings/bounded_text.hpp"
#include "encodings/field_walk.hpp"
#include "encodings/light_encodings.hpp"
#include "module/failure.hpp"
#include "module/operation.hpp"
#include "types/primitive.hpp"

namespace harbor::text {

inline constexpr std::array operations{
    Operation{
        .suffix = "print",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, char *buffer, uint32_t indent, "
                     "const char *label, const $T *object, uint32_t size, uint32_t *err",
        .rule = "text::print",
        .brief = "Writes object as text at the start of buffer, at most size bytes and none for a "
                 "negative size, each line behind indent blanks, the first one with label; gives "
                 "the bytes written. The closing line of an object with an indent stands behind a "
                 "gap of as many bytes, which keeps what buffer held; an object of variant 0 has "
                 "no closing line when $type has two variants.",
        .errors = "none of its own; what a field's print sets stands, and nothing is written "
                  "behind it. A text that does not fit is cut without a failure: a result equal to "
                  "size says that some may be missing, and the call is repeated with more room",
    },
    Operation{
        .suffix = "print_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, char *buffer, int32_t size",
        .rule = "text::print_cr",
        .brief = "Writes object as text with the type's name as label and no indent, under the "
                 "handle's cr_space_id; gives the bytes written, or 0xFFFFFFFF when cr_err is set "
                 "afterwards. Nothing is written for a negative size.",
        .errors = "as $type_print, in cr_err; a text is cut as there",
    },
};

inline constexpr Family family{"text", operations};

// --- what does not depend on the fields ---------------------------------------------------------

// A text while it is written. The space that is left is an unsigned difference: the writers called
// stop at it and give back what they wrote.
struct Text {
  kelp_handle *handle;
  std::uint32_t space_id;
  char *buffer;
  std::uint32_t indent;
  std::uint32_t size;
  std::uint32_t *err;
  std::uint32_t length = 0;

  char *here() const { return buffer + length; }
  std::uint32_t space() const { return size - length; }
};

inline constexpr std::uint32_t indent_step = 2;

void open_block(Text &text, const char *label, const char *type_name);
void close_block(Text &text);

// The label of an array's element: "<array>[<index>]".
using ElementLabel = BoundedText<80>;
ElementLabel element_label(const char *name, std::uint32_t index);

// --- the rules ----------------------------------------------------------------------------------

template <const Structure &T>
std::uint32_t print(kelp_handle *handle, std::uint32_t space_id, char *buffer, std::uint32_t indent,
                    const char *label, const void *object, std::uint32_t size, std::uint32_t *err);

template <Kind kind>
void print_primitive(Text &text, const char *label, const void *value) {
  using Type = Primitive<kind>;
  text.length +=
      Type::print(text.handle, text.space_id, text.here(), text.indent + indent_step, label,
                  static_cast<const typename Type::value_type *>(value), text.space(), text.err);
}

template <const Structure &T>
void print_structure(Text &text, const char *label, const void *object) {
  text.length += print<T>(text.handle, text.space_id, text.here(), text.indent + indent_step, label,
                          object, text.space(), text.err);
}

template <const Structure &T, const Field &F>
void print_array(Text &text, const void *object) {
  using Element = typename Primitive<F.held>::value_type;
  const std::uint32_t count = field_walk::count_of<T, F>(object);
  const auto *elements = field_walk::elements_of<T, F, Element>(object);
  for (std::uint32_t index = 0; index < count; ++index) {
    const ElementLabel label = element_label(F.name.data(), index);
    print_primitive<F.held>(text, label.data(), elements + index);
  }
}

// An arm is shown only when it is selected and there.
template <const Structure &T, const Field &F>
void print_arm(Text &text, const void *object) {
  const void *held = *place_of<T, F>(object);
  if (!field_walk::is_selected<T, F>(object) || held == nullptr) return;
  const char *label = field_walk::arm_name<T, F, '.'>.data();
  if constexpr (F.held == Kind::structure) {
    print_structure<*F.structure>(text, label, held);
  } else {
    print_primitive<F.held>(text, label, held);
  }
}

template <const Structure &T, const Field &F>
void print_field(Text &text, const void *object) {
  const char *label = F.name.data();
  if constexpr (F.kind == Kind::array) {
    print_array<T, F>(text, object);
  } else if constexpr (F.kind == Kind::arm) {
    print_arm<T, F>(text, object);
  } else if constexpr (F.kind == Kind::structure) {
    print_structure<*F.structure>(text, label, place_of<T, F>(object));
  } else if constexpr (light_encodings::is_light(F.kind)) {
    text.length += light_encodings::print<light_encodings::type_of<F>()>(
        text.handle, text.space_id, text.here(), text.indent + indent_step, label,
        place_of<T, F>(object), text.space(), text.err);
  } else if constexpr (F.kind != Kind::reference) {
    print_primitive<F.kind>(text, label, place_of<T, F>(object));
  }
}

template <const Structure &T, std::uint8_t floor>
void print_fields(Text &text, const void *object) {
  field_walk::for_each_field<T, floor>([&]<const Field & F>() { print_field<T, F>(text, object); });
}

// Required: an object below its type's highest variant ends behind its last field, without a
// closing line; what stands around it simply goes on.
template <const Structure &T>
std::uint32_t print(kelp_handle *handle, std::uint32_t space_id, char *buffer, std::uint32_t indent,
                    const char *label, const void *object, std::uint32_t size, std::uint32_t *err) {
  if (!begin(handle, err)) return 0;
  const std::int8_t variant = kelp::quick::get_instance_variant(handle, object, 1, 0);
  Text text{handle, space_id, buffer, indent, light_text::space_of(size), err};
  open_block(text, label, T.name.data());
  for_each_floor<T>(variant, [&]<std::uint8_t floor>() { print_fields<T, floor>(text, object); });
  if (variant >= T.variants - 1) close_block(text);
  return text.length;
}

template <const Structure &T>
std::uint32_t print_cr(kelp_handle *handle, const void *object, char *buffer, std::int32_t size) {
  const std::uint32_t length = print<T>(handle, handle->cr_space_id, buffer, 0, T.name.data(),
                                        object, static_cast<std::uint32_t>(size), &handle->cr_err);
  return light_text::carried_result(handle, length);
}

}  // namespace harbor::text
