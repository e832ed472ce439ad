// Object fields: addresses, texts and embedded structures that lie in place. They have no value to
// hand out, only the object itself; set takes over what the source owned. Same promises as value
// fields.
#pragma once

#include "module/operation.hpp"
#include "types/field_access.hpp"
#include "types/primitive.hpp"
#include "types/state_mark.hpp"
#include "types/transfer.hpp"

namespace harbor::object_field {

inline constexpr std::array operations{
    Operation{
        .suffix = "get",
        .result = "$F *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "field_access::get",
        .brief = "Gives $field inside the object. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field; null then",
        .ownership = "the result belongs to the object",
    },
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, $F *source, uint32_t *err",
        .rule = "object_field::set",
        .brief = "Moves the content of source into $field. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field; "
                  "KELP_ERR_INVALID when the handle tracks state and the object does not, with the "
                  "content moved, or a structure as the source does not, with its bytes copied and "
                  "both holding the same texts, arrays and arms",
        .ownership = "source stays the caller's, but gives up the texts, arrays and arms that it "
                     "owned; what the field owned before is forgotten and not freed",
    },
};

constexpr bool holds(const Field &field) {
  return field.kind == Kind::address || field.kind == Kind::text || field.kind == Kind::structure;
}

inline constexpr FieldFamily family{"object_field", holds, operations};

// --- the rules --------------------------------------------------------------------------------

template <const Structure &T, const Field &F>
void move_in(kelp_handle *handle, std::uint32_t space_id, void *object, void *source,
             std::uint32_t *err) {
  auto *place = place_of<T, F>(object);
  if constexpr (is_primitive(F.kind)) {
    using Value = typename Primitive<F.kind>::value_type;
    Primitive<F.kind>::set(handle, space_id, place, static_cast<Value *>(source), err);
  } else {
    transfer::set<*F.structure>(handle, space_id, place, source, err);
  }
}

// Required: the state byte is marked whatever the write ended in.
template <const Structure &T, const Field &F>
[[gnu::noinline]] void set_by_steps(kelp_handle *handle, std::uint32_t space_id, void *object,
                                    void *source, std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  move_in<T, F>(handle, space_id, object, source, err);
  state_tracking::mark(handle, space_id, object,
                       state_tracking::write_place<T, F, messages::WriteSite::set>, err);
}

template <const Structure &T, const Field &F>
void set(kelp_handle *handle, std::uint32_t space_id, void *object, void *source,
         std::uint32_t *err) {
  if (!field_access::opens_quickly<T>(handle, object, err)) [[unlikely]]
    return set_by_steps<T, F>(handle, space_id, object, source, err);
  kelp::quick::forget_error(handle);
  move_in<T, F>(handle, space_id, object, source, err);
}

}  // namespace harbor::object_field
