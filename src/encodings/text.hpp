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

#include "encodings/field_walk.hpp"
#include "encodings/light_encodings.hpp"
#include "module/bounded_text.hpp"
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

// A text while it is written.
struct Text : light_text::Output {
  std::uint32_t indent;

  std::uint32_t inner_indent() const { return indent + 2; }
};

void open_block(Text &text, std::string_view label, std::string_view type_name);
void close_block(Text &text);

// The label of an array's element: "<array>[<index>]".
using ElementLabel = BoundedText<80>;
ElementLabel element_label(std::string_view name, std::uint32_t index);

// --- the rules ----------------------------------------------------------------------------------

template <const Structure &T>
std::uint32_t print_block(const light_text::Output &output, std::uint32_t indent,
                          std::string_view label, const void *object);

// What a value is named by when a call is made for it, with a NUL behind.
inline const char *called(std::string_view label) { return label.data(); }
inline ElementLabel called(const kelp::quick::Indexed &element) {
  return element_label(element.name, element.index);
}
inline const char *text_of(const char *label) { return label; }
inline const char *text_of(const ElementLabel &label) { return label.data(); }

// A label is a name or that of an array's element.
template <Kind kind, typename Label>
void print_primitive(Text &text, const Label &label, const void *held) {
  using Type = Primitive<kind>;
  const auto *value = static_cast<const typename Type::value_type *>(held);
  if constexpr (requires { typename Type::form; }) {
    const std::uint32_t quick =
        text.is_quick(0)
            ? kelp::quick::put_line<typename Type::form>(
                  text.here(), text.space(), text.inner_indent(), label, Type::name, *value)
            : 0;
    text.length += quick;
    if (quick != 0) return;
  }
  text.length += Type::print(text.handle, text.space_id, text.here(), text.inner_indent(),
                             text_of(called(label)), value, text.space(), text.err);
}

template <const Structure &T>
void print_structure(Text &text, std::string_view label, const void *object) {
  text.length += print_block<T>(text.rest(), text.inner_indent(), label, object);
}

template <const Structure &T, const Field &F>
void print_array(Text &text, const void *object) {
  using Element = typename Primitive<F.held>::value_type;
  const std::uint32_t count = field_walk::count_of<T, F>(object);
  const auto *elements = field_walk::elements_of<T, F, Element>(object);
  for (std::uint32_t index = 0; index < count; ++index) {
    print_primitive<F.held>(text, kelp::quick::Indexed{F.name, index}, elements + index);
  }
}

// An arm is shown only when it is selected and there.
template <const Structure &T, const Field &F>
void print_arm(Text &text, const void *object) {
  const void *held = *place_of<T, F>(object);
  if (!field_walk::is_selected<T, F>(object) || held == nullptr) return;
  constexpr std::string_view label = field_walk::arm_name<T, F, '.'>.data();
  if constexpr (F.held == Kind::structure) {
    print_structure<*F.structure>(text, label, held);
  } else {
    print_primitive<F.held>(text, label, held);
  }
}

template <const Structure &T, const Field &F>
void print_field(Text &text, const void *object) {
  if constexpr (F.kind == Kind::array) {
    print_array<T, F>(text, object);
  } else if constexpr (F.kind == Kind::arm) {
    print_arm<T, F>(text, object);
  } else if constexpr (F.kind == Kind::structure) {
    print_structure<*F.structure>(text, F.name, place_of<T, F>(object));
  } else if constexpr (light_encodings::is_light(F.kind)) {
    text.length += light_encodings::print<light_encodings::type_of<F>()>(
        text.rest(), text.inner_indent(), F.name, place_of<T, F>(object));
  } else if constexpr (F.kind != Kind::reference) {
    print_primitive<F.kind>(text, F.name, place_of<T, F>(object));
  }
}

template <const Structure &T, std::uint8_t floor>
void print_fields(Text &text, const void *object) {
  field_walk::for_each_field<T, floor>([&]<const Field & F>() { print_field<T, F>(text, object); });
}

// Required: an object below its type's highest variant ends behind its last field, without a
// closing line; what stands around it simply goes on.
template <const Structure &T>
std::uint32_t print_block(const light_text::Output &output, std::uint32_t indent,
                          std::string_view label, const void *object) {
  if (!begin(output.handle, output.err)) return 0;
  const std::int8_t variant = kelp::quick::get_instance_variant(output.handle, object, 1, 0);
  Text text{output, indent};
  open_block(text, label, T.name);
  for_each_floor<T>(variant, [&]<std::uint8_t floor>() { print_fields<T, floor>(text, object); });
  if (variant >= T.variants - 1) close_block(text);
  return text.length;
}

template <const Structure &T>
std::uint32_t print(kelp_handle *handle, std::uint32_t space_id, char *buffer, std::uint32_t indent,
                    const char *label, const void *object, std::uint32_t size, std::uint32_t *err) {
  return print_block<T>({handle, space_id, buffer, light_text::space_of(size), err}, indent,
                        light_text::view_of(label), object);
}

template <const Structure &T>
std::uint32_t print_cr(kelp_handle *handle, const void *object, char *buffer, std::int32_t size) {
  const std::uint32_t length = print<T>(handle, handle->cr_space_id, buffer, 0, T.name.data(),
                                        object, static_cast<std::uint32_t>(size), &handle->cr_err);
  return light_text::carried_result(handle, length);
}

}  // namespace harbor::text
