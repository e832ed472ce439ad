// The arms of a choice: pointers to objects of their own, which the choice owns once they are set.
// Called by the forwarders of <type>_<arm>_get, _get_detach, _set and _set_cr. Promises: setting an
// arm selects it; detaching gives a selected arm back to the caller; each pointer and the
// selector's value are announced before they change; nothing that an arm pointed at is ever
// released here.
//
// The selector itself is an ordinary value field; changing it by hand touches no arm.
#pragma once

#include "module/operation.hpp"
#include "types/field_access.hpp"
#include "types/primitive.hpp"
#include "types/state_mark.hpp"

namespace harbor::choice {

inline constexpr std::string_view setter_brief =
    "Gives the choice the object arm as $field and selects it. What $field pointed at before is "
    "forgotten: detach it first. $meaning";
inline constexpr std::string_view setter_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the arm; KELP_ERR_INVALID when the "
    "handle tracks state and the object or the arm does not, with the arm set and selected";
inline constexpr std::string_view setter_ownership =
    "arm is a block of its own from this handle's store, as kelp_vstring_create, u_int32_create or "
    "the structure's create make one, never a variable of the caller's: it belongs to the choice "
    "from here, and to no other, and destroying the choice gives it back to the store";

inline constexpr std::array arm_operations{
    Operation{
        .suffix = "get",
        .result = "$F *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "choice::get",
        .brief = "Gives the object that $field points at, selected or not; null for none. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the arm; null then",
        .ownership = "the result belongs to the choice",
    },
    Operation{
        .suffix = "get_detach",
        .result = "$F *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t *err",
        .rule = "choice::get_detach",
        .brief = "Takes $field off the choice, which then reads as selector 0. An arm that is not "
                 "selected stays, and the result is null. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the arm; "
                  "KELP_ERR_INVALID when the handle tracks state and the object does not: the "
                  "result is null then, with the arm taken off",
        .ownership = "the result is the caller's",
    },
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, $F *arm, uint32_t *err",
        .rule = "choice::set",
        .brief = setter_brief,
        .errors = setter_errors,
        .ownership = setter_ownership,
    },
    Operation{
        .suffix = "set_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $T *object, $F *arm",
        .rule = "choice::set_cr",
        .brief = setter_brief,
        .errors = setter_errors,
        .ownership = setter_ownership,
    },
};

constexpr bool is_arm(const Field &field) { return field.kind == Kind::arm; }
inline constexpr FieldFamily arm_family{"choice", is_arm, arm_operations};

// --- what the rules know of an arm --------------------------------------------------------------

struct ArmFacts {
  std::uint32_t arm_offset;
  std::uint32_t selector_offset;  // of the selector's value word
  std::uint32_t selector;         // the value that selects the arm
  bool holds_tracked_object;      // a structure, which has state bytes of its own
  std::uint32_t arm_not_tracked;
  state_tracking::WritePlace set_place;
  state_tracking::WritePlace detach_place;
};

template <const Structure &T, const Field &F>
inline constexpr ArmFacts facts{
    .arm_offset = model::offset(T, F),
    .selector_offset = model::offset(T, model::selector_of(T)) + model::enumeration_value_offset,
    .selector = F.selector,
    .holds_tracked_object = F.held == Kind::structure,
    .arm_not_tracked = messages::first_row(messages::TypeForm::arm_not_tracked),
    .set_place = state_tracking::write_place<T, F, messages::WriteSite::set>,
    .detach_place = state_tracking::write_place<T, F, messages::WriteSite::detach>,
};

void attach(const ArmFacts &place, kelp_handle *handle, std::uint32_t space_id, void *object,
            void *arm, std::uint32_t *err);
void *detach(const ArmFacts &place, kelp_handle *handle, std::uint32_t space_id, void *object,
             std::uint32_t *err);

// What a primitive arm points at; a structure's arm is handed on untyped.
template <Kind held>
struct Arm {
  using type = typename Primitive<held>::value_type;
};
template <>
struct Arm<Kind::structure> {
  using type = void;
};
template <const Field &F>
using arm_type = typename Arm<F.held>::type;

// --- the rules ----------------------------------------------------------------------------------

template <const Structure &T, const Field &F>
[[gnu::noinline]] void *get_by_steps(kelp_handle *handle, std::uint32_t space_id, void *object,
                                     std::uint32_t *err) {
  if (!field_access::begin_read<F>(handle, object, err)) return nullptr;
  auto *arm = static_cast<arm_type<F> *>(*place_of<T, F>(object));
  if constexpr (is_primitive(F.held)) {
    return Primitive<F.held>::get(handle, space_id, arm, err);
  } else {
    return arm;
  }
}

// Required: the selector is not consulted.
template <const Structure &T, const Field &F>
void *get(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  if (!field_access::reads_quickly<F>(handle, object, err)) [[unlikely]]
    return get_by_steps<T, F>(handle, space_id, object, err);
  return *place_of<T, F>(object);
}

template <const Structure &T, const Field &F>
void *get_detach(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return nullptr;
  return detach(facts<T, F>, handle, space_id, object, err);
}

template <const Structure &T, const Field &F>
void set(kelp_handle *handle, std::uint32_t space_id, void *object, void *arm, std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  attach(facts<T, F>, handle, space_id, object, arm, err);
}

template <const Structure &T, const Field &F>
std::uint32_t set_cr(kelp_handle *handle, void *object, void *arm) {
  set<T, F>(handle, handle->cr_space_id, object, arm, &handle->cr_err);
  return handle->cr_err;
}

}  // namespace harbor::choice
