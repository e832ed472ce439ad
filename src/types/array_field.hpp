// Array fields: a count in the object and a pointer to elements in a block of their own. Called by
// the forwarders of <type>_<field>_get, _set, _set_mem, _remove_elements and their kin. Promises,
// in order: an earlier failure stands and nothing happens; a field that the object's variant lacks
// is never touched; the block is always exactly as long as the count says, so appending one by one
// costs one allocation and one copy each; pointer and count are announced before they change, the
// elements of a fresh block are not; under state tracking one state byte per element is kept in
// step with the block. A count that changes without bringing state bytes, as through a handle that
// does not track, leaves the elements of a tracked object without any, until the array grows or is
// replaced through a handle that tracks, or the state of one is set directly.
//
// What is long stands in array_field.cpp and takes the field's facts; the templates below bind them
// and know the element's type.
#pragma once

#include "module/operation.hpp"
#include "types/field_access.hpp"
#include "types/primitive.hpp"
#include "types/state_mark.hpp"

namespace harbor::array_field {

inline constexpr std::string_view growing_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the field; KELP_ERR_NO_MEMORY without "
    "memory and for index 0xFFFFFFFF, with the elements as they were, or with the array grown and "
    "the element not written when only its state bytes found none; KELP_ERR_INVALID when the "
    "handle tracks state and the object does not, with nothing changed";
inline constexpr std::string_view value_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the field; KELP_ERR_NO_MEMORY without "
    "memory and for index 0xFFFFFFFF, with the elements as they were, or with the array grown and "
    "the element not written when only its state bytes found none; KELP_ERR_INVALID when the "
    "handle tracks state and the object does not, with an element that is there written all the "
    "same and no other made";
inline constexpr std::string_view replacing_errors =
    "KELP_ERR_EPOCH when the object's variant does not hold the field; KELP_ERR_NO_MEMORY without "
    "memory, with no element block and the old count; KELP_ERR_INVALID when the handle tracks "
    "state and the object does not, with the new block unfilled and the old count";

inline constexpr Operation element_get{
    .suffix = "get",
    .result = "$F *",
    .arguments =
        "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, uint32_t *err",
    .rule = "array_field::get",
    .brief = "Gives the place of element index of $field. $meaning",
    .errors =
        "KELP_ERR_EPOCH when the object's variant does not hold the field, KELP_ERR_NOT_FOUND for "
        "an index that is not below the count; null then",
    .ownership = "the place belongs to the object and is good until the array grows or is replaced",
};
inline constexpr Operation elements_removal{
    .suffix = "remove_elements",
    .result = "void",
    .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
    .rule = "array_field::remove_elements",
    .brief =
        "Gives back all elements of $field, so that its count is 0; the state bytes stay as "
        "they are. A null object or an empty array is passed over. $meaning",
    .ownership = "the element block is freed",
};

inline constexpr std::array number_operations{
    element_get,
    Operation{
        .suffix = "get_value",
        .result = "$V",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, uint32_t *err",
        .rule = "array_field::get_value",
        .brief = "Gives the value of element index of $field. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field, "
                  "KELP_ERR_NOT_FOUND for an index that is not below the count; 0 then",
    },
    Operation{
        .suffix = "get_mem",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, $F *destination, "
                     "uint32_t count, uint32_t *err",
        .rule = "array_field::get_mem",
        .brief = "Copies the first count elements of $field to destination, which has room for "
                 "them. $meaning",
        .errors = "KELP_ERR_EPOCH when the object's variant does not hold the field; "
                  "KELP_ERR_INVALID when count is above the array's own, with nothing copied",
        .ownership = "destination is the caller's",
    },
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, "
                     "const $F *source, uint32_t *err",
        .rule = "array_field::set",
        .brief = "Copies source into element index of $field. An index at or above the count "
                 "grows the array to index + 1, with zeroes in between; a null source only grows. "
                 "$meaning",
        .errors = growing_errors,
        .ownership = "source stays the caller's",
    },
    Operation{
        .suffix = "set_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $T *object, uint32_t index, $V value",
        .rule = "array_field::set_cr",
        .brief = "Sets element index of $field, growing the array as set does, with the handle's "
                 "cr_space_id and cr_err; gives cr_err. $meaning",
        .errors = growing_errors,
    },
    Operation{
        .suffix = "set_value",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, "
                     "$V value, uint32_t *err",
        .rule = "array_field::set_value",
        .brief = "Sets element index of $field, growing the array as set does. $meaning",
        .errors = value_errors,
    },
    Operation{
        .suffix = "set_mem",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, const $F *source, "
                     "uint32_t count, uint32_t *err",
        .rule = "array_field::set_mem",
        .brief = "Replaces all elements of $field by copies of the count elements at source; the "
                 "array as a whole is then marked as written and no element is. $meaning",
        .errors = replacing_errors,
        .ownership = "source stays the caller's",
    },
    Operation{
        .suffix = "set_mem_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $T *object, const $F *source, uint32_t count",
        .rule = "array_field::set_mem_cr",
        .brief = "As set_mem, with the handle's cr_space_id and cr_err; gives cr_err. $meaning",
        .errors = replacing_errors,
        .ownership = "source stays the caller's",
    },
    elements_removal,
};

inline constexpr std::array address_operations{
    element_get,
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t index, "
                     "$F *source, uint32_t *err",
        .rule = "array_field::set",
        .brief = "Moves the content of source into element index of $field. An index at or above "
                 "the count grows the array to index + 1, with unset addresses in between; a null "
                 "source only grows. $meaning",
        .errors = growing_errors,
        .ownership = "source stays the caller's, but gives up what it owned",
    },
    Operation{
        .suffix = "set_cr",
        .result = "uint32_t",
        .arguments =
            "kelp_handle *handle, $T *object, uint32_t index, $F *source, uint32_t transfer",
        .rule = "array_field::set_address_cr",
        .brief = "As set, with the handle's cr_space_id and cr_err; gives cr_err. transfer 0 "
                 "copies source instead of moving its content. $meaning",
        .errors = growing_errors,
        .ownership = "source stays the caller's; with transfer non-zero it gives up what it owned",
    },
    elements_removal,
};

constexpr bool holds_numbers(const Field &field) {
  return field.kind == Kind::array && field.held != Kind::address;
}
constexpr bool holds_addresses(const Field &field) {
  return field.kind == Kind::array && field.held == Kind::address;
}
inline constexpr FieldFamily number_family{"array_field", holds_numbers, number_operations};
inline constexpr FieldFamily address_family{"array_field (addresses)", holds_addresses,
                                            address_operations};

// --- what the rules know of a field -------------------------------------------------------------

// The messages of one place that looks at the tracking of handle and object.
struct TrackingMessages {
  std::uint32_t corrupted;
  std::uint32_t not_tracked;
};

struct ArrayFacts {
  const Field *field;
  std::uint32_t count_offset;
  std::uint32_t store_offset;
  std::uint32_t object_size;
  std::uint32_t state_place;           // of the byte of the array as a whole
  std::uint32_t element_states_place;  // of the pointer to the bytes of the elements
  bool holds_addresses;
  std::size_t (*element_width)();
  std::uint8_t *has_grown;  // the field grew before, in some object of this process
  std::uint32_t reallocating;
  TrackingMessages gate;
  TrackingMessages growth;
};

// Required: a plain byte without a lock. At worst two threads both trace the first growth.
template <const Structure &T, const Field &F>
inline std::uint8_t has_grown = 0;

template <const Structure &T, const Field &F, messages::WriteSite site>
inline constexpr TrackingMessages tracking_messages{messages::corrupted_at_write(T, F, site),
                                                    messages::not_tracked_at_write(T, F, site)};

template <const Structure &T, const Field &F>
inline constexpr ArrayFacts facts{
    .field = &F,
    .count_offset = model::offset(T, model::counter_of(T, F)),
    .store_offset = model::offset(T, F),
    .object_size = model::object_size(T),
    .state_place = model::state_place(T, F),
    .element_states_place = model::state_block_place(T, F),
    .holds_addresses = F.held == Kind::address,
    .element_width = Primitive<F.held>::size,
    .has_grown = &has_grown<T, F>,
    .reallocating = messages::of_array(messages::TypeForm::reallocating, T, F),
    .gate = tracking_messages<T, F, messages::WriteSite::array_gate>,
    .growth = tracking_messages<T, F, messages::WriteSite::array_growth>,
};

// --- what does not depend on the element's type -------------------------------------------------

std::uint32_t &count_of(const ArrayFacts &array, void *object);
void *&store_of(const ArrayFacts &array, void *object);

// The pointer to the state bytes of the elements, in the object's state area.
std::uint8_t *&element_states_of(const ArrayFacts &array, std::uint8_t *area);

// The place of an element. Neither the index nor the store is tested.
void *element_at(const ArrayFacts &array, void *object, std::uint32_t index);

// Makes room for the element at index: true when it is there. Under a tracking handle an object
// without state bytes is refused first.
bool grow(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object,
          std::uint32_t index, std::uint32_t *err);

// The state bytes of the elements; an array of a tracked object that has none gets them, all 0.
// Null without memory.
std::uint8_t *provide_element_states(const ArrayFacts &array, kelp_handle *handle,
                                     std::uint32_t space_id, void *object);

// Gives back the state bytes of elements that are no longer there. Nothing is done for an object
// that is not tracked.
void drop_element_states(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
                         void *object);

// Marks the array as a whole and one element as written, under a tracking handle.
void mark(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object,
          std::uint32_t index, const TrackingMessages &messages, std::uint32_t *err);

// Whether elements may enter the array in one go, rather than one by one behind each other: it has
// none, its field has grown before, no state bytes are kept and nobody hears of the steps.
bool takes_at_once(const ArrayFacts &array, kelp_handle *handle, void *object);

// A block for the elements of such an array, given back unless an object gets it.
class NewStore {
 public:
  // Without memory it has no elements, and nothing is said: one by one some may find room.
  NewStore(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
           std::uint32_t count);
  ~NewStore();
  NewStore(const NewStore &) = delete;
  NewStore &operator=(const NewStore &) = delete;
  void *elements() const { return block_; }
  // As many writes are counted as the elements would have taken one by one.
  void give_to(void *object);

 private:
  const ArrayFacts &array_;
  kelp_handle *handle_;
  std::uint32_t space_id_;
  std::uint32_t count_;
  void *block_;
};

void copy_out(const ArrayFacts &array, kelp_handle *handle, void *object, void *destination,
              std::uint32_t count, std::uint32_t *err);
void replace(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object,
             const void *source, std::uint32_t count, const TrackingMessages &messages,
             std::uint32_t *err);
void remove(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object);

// --- the rules ----------------------------------------------------------------------------------

template <const Structure &T, const Field &F>
using Element = typename Primitive<F.held>::value_type;

// The element where it may be read inline, else null.
template <const Structure &T, const Field &F>
Element<T, F> *quick_element(kelp_handle *handle, void *object, std::uint32_t index,
                             const std::uint32_t *err) {
  if (!field_access::reads_quickly<F>(handle, object, err) ||
      index >= *place_of<T, model::counter_of(T, F)>(object)) {
    return nullptr;
  }
  auto *elements = static_cast<Element<T, F> *>(*place_of<T, F>(object));
  return elements == nullptr ? nullptr : elements + index;
}

// Required: a store that a failed set_mem left null under its old count is read through.
template <const Structure &T, const Field &F>
Element<T, F> *get(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t index,
                   std::uint32_t *err) {
  if (auto *element = quick_element<T, F>(handle, object, index, err)) [[likely]]
    return element;
  if (!field_access::begin_read<F>(handle, object, err)) return nullptr;
  if (index >= count_of(facts<T, F>, object)) {
    fail(handle, KELP_ERR_NOT_FOUND, err, About(F), "found the index %u, expected one below %u",
         index, count_of(facts<T, F>, object));
    return nullptr;
  }
  auto *element = static_cast<Element<T, F> *>(element_at(facts<T, F>, object, index));
  return Primitive<F.held>::get(handle, space_id, element, err);
}

// Required: the error word and the variant are tested here and once more by get.
template <const Structure &T, const Field &F>
Element<T, F> get_value(kelp_handle *handle, std::uint32_t space_id, void *object,
                        std::uint32_t index, std::uint32_t *err) {
  if (const auto *element = quick_element<T, F>(handle, object, index, err)) [[likely]]
    return *element;
  if (!field_access::begin_read<F>(handle, object, err)) return 0;
  const auto *element = get<T, F>(handle, space_id, object, index, err);
  return element == nullptr ? Element<T, F>{0}
                            : Primitive<F.held>::get_value(handle, space_id, element, err);
}

template <const Structure &T, const Field &F>
void get_mem(kelp_handle *handle, std::uint32_t, void *object, void *destination,
             std::uint32_t count, std::uint32_t *err) {
  if (!field_access::begin_read<F>(handle, object, err)) return;
  copy_out(facts<T, F>, handle, object, destination, count, err);
}

// Steps up to where an element can be written: the opening of every write, then the growth.
template <const Structure &T, const Field &F>
bool make_room(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t index,
               std::uint32_t *err) {
  return field_access::begin_write<T, F>(handle, space_id, object, err) &&
         grow(facts<T, F>, handle, space_id, object, index, err);
}

// Puts an address into an element: its content is moved, or copied with the handle's work space.
void put_address(kelp_handle *handle, std::uint32_t space_id, ip_address *element,
                 const ip_address *source, bool transfer, std::uint32_t *err);

// Required: a null source grows the array and marks nothing, and the state is marked whatever the
// write of the element ended in.
template <const Structure &T, const Field &F>
void set_element(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t index,
                 const void *source, bool transfer, std::uint32_t *err) {
  if (!make_room<T, F>(handle, space_id, object, index, err)) return;
  if (source == nullptr) return;
  auto *element = static_cast<Element<T, F> *>(element_at(facts<T, F>, object, index));
  const auto *value = static_cast<const Element<T, F> *>(source);
  if constexpr (F.held == Kind::address) {
    put_address(handle, space_id, element, value, transfer, err);
  } else {
    Primitive<F.held>::set(handle, space_id, element, value, err);
  }
  mark(facts<T, F>, handle, space_id, object, index,
       tracking_messages<T, F, messages::WriteSite::array_mark>, err);
}

template <const Structure &T, const Field &F>
void set(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t index,
         const void *source, std::uint32_t *err) {
  set_element<T, F>(handle, space_id, object, index, source, true, err);
}

template <const Structure &T, const Field &F>
std::uint32_t set_cr(kelp_handle *handle, void *object, std::uint32_t index, Element<T, F> value) {
  set<T, F>(handle, handle->cr_space_id, object, index, &value, &handle->cr_err);
  return handle->cr_err;
}

template <const Structure &T, const Field &F>
std::uint32_t set_address_cr(kelp_handle *handle, void *object, std::uint32_t index,
                             const void *source, std::uint32_t transfer) {
  set_element<T, F>(handle, handle->cr_space_id, object, index, source, transfer != 0,
                    &handle->cr_err);
  return handle->cr_err;
}

// An element that is there is looked up with an error word of its own: when that fails with 2, or
// gives no place, the array grows as for an element that is not there.
template <const Structure &T, const Field &F>
void set_value(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t index,
               Element<T, F> value, std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  Element<T, F> *element = nullptr;
  std::uint32_t lookup_err = 0;
  if (index < count_of(facts<T, F>, object)) {
    element = get<T, F>(handle, space_id, object, index, &lookup_err);
  }
  if (element != nullptr && lookup_err != KELP_ERR_NOT_FOUND) {
    *err = lookup_err;
    if (lookup_err != 0) return store_failure(handle, lookup_err, About(F), "finding the element");
  } else {
    set<T, F>(handle, space_id, object, index, nullptr, err);
    if (*err != 0) return;
    element = get<T, F>(handle, space_id, object, index, err);
    if (*err != 0) return;
    if (element == nullptr)
      return fail(handle, KELP_ERR_NOT_FOUND, err, About(F), "found no element at the index %u",
                  index);
  }
  Primitive<F.held>::set_value(handle, space_id, element, value, err);
  mark(facts<T, F>, handle, space_id, object, index,
       tracking_messages<T, F, messages::WriteSite::array_set_value>, err);
}

template <const Structure &T, const Field &F>
void set_mem(kelp_handle *handle, std::uint32_t space_id, void *object, const void *source,
             std::uint32_t count, std::uint32_t *err) {
  if (!field_access::begin_write<T, F>(handle, space_id, object, err)) return;
  replace(facts<T, F>, handle, space_id, object, source, count,
          tracking_messages<T, F, messages::WriteSite::array_replace>, err);
}

template <const Structure &T, const Field &F>
std::uint32_t set_mem_cr(kelp_handle *handle, void *object, const void *source,
                         std::uint32_t count) {
  set_mem<T, F>(handle, handle->cr_space_id, object, source, count, &handle->cr_err);
  return handle->cr_err;
}

// Required: the state bytes of the array and the array of its elements' bytes stay as they are.
template <const Structure &T, const Field &F>
void remove_elements(kelp_handle *handle, std::uint32_t space_id, void *object) {
  remove(facts<T, F>, handle, space_id, object);
}

}  // namespace harbor::array_field
