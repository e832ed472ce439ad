// The image of a structure: how an object crosses from one process to another that may know more or
// fewer variants of its type. Called by the forwarders of <type>_marshal, _marshal_for_clone,
// _unmarshal and _len, by the record encodings of the tables, and by clone. Promises: a writer
// allocates nothing and passes once over its buffer; a reader skips what it does not know and
// announces what it stores, but for the three header stores at its end.
//
//   0  1  instance variant
//   1  1  flags: 8 when state bytes follow the fields, 32 when an ra-data block follows
//   2  9  ra-data block, only with flag 32
//   J  4  jump word: bytes from J to the end of the image, itself included
//   J+4   the fields of floor 0 in order, then floor by floor up to the variant; under flag 8 each
//         with its state
//
// An ospf_area of variant 1, area_id 10, state not tracked, in bytes:
//   01 00 00000058 0000000a <40 bytes of the interfaces OID> <40 of the area_scope_lsas OID>
//
// What does not depend on the fields stands in image.cpp; a structure's own part is a fold over its
// fields with constants.
#pragma once

#include <kelp/wire.h>

#include "encodings/arm_creation.hpp"
#include "encodings/field_walk.hpp"
#include "encodings/light_encodings.hpp"
#include "encodings/plain_image.hpp"
#include "module/operation.hpp"
#include "types/array_field.hpp"
#include "types/primitive.hpp"
#include "types/state_mark.hpp"
#include "types/type_record_access.hpp"

namespace harbor::image {

inline constexpr std::string_view writer_errors =
    "KELP_ERR_NO_MEMORY for a length below 1, also inside, where an embedded object begins at the "
    "end of the buffer; KELP_ERR_EPOCH when the object's variant is above the domain's; "
    "KELP_ERR_NO_ROOM when the buffer is too short; KELP_ERR_NOT_FOUND when the selected arm of a "
    "choice is missing; KELP_ERR_INVALID for a null object. The image is ended properly all the "
    "same";
inline constexpr std::string_view writer_arguments =
    "kelp_handle *handle, uint32_t space_id, void *buffer, const $T *object, int32_t length, "
    "uint32_t *err";

inline constexpr std::array operations{
    Operation{
        .suffix = "marshal",
        .result = "uint32_t",
        .arguments = writer_arguments,
        .rule = "image::write<$bindings>(handle, space_id, buffer, object, length, 1, err)",
        .brief = "Writes the image of object into buffer, length bytes long, and gives the bytes "
                 "written. Make the buffer 4 bytes longer than length tells: the last state byte "
                 "and the patched jump word of an image that did not fit may fall behind it.",
        .errors = writer_errors,
    },
    Operation{
        .suffix = "marshal_for_clone",
        .result = "uint32_t",
        .arguments = writer_arguments,
        .rule = "image::write<$bindings>(handle, space_id, buffer, object, length, 0, err)",
        .brief = "Writes the image of object as $type_marshal does, but at the object's own "
                 "variant when that is above the domain's. Objects embedded in it are lowered all "
                 "the same.",
        .errors = writer_errors,
    },
    Operation{
        .suffix = "unmarshal",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const void *buffer, $T *object, "
                     "int32_t length, uint32_t reuse, uint32_t *err",
        .rule = "image::unmarshal",
        .brief = "Reads an image of at most length bytes from buffer into object and gives the "
                 "bytes consumed. Set reuse when the object may hold arrays from an earlier image: "
                 "they are then reused or released. Fields that the image lacks keep what they "
                 "held; what is behind the fields known here is skipped. The state bytes of the "
                 "elements of an array go when their number changes and the image brings none.",
        .errors =
            "KELP_ERR_NO_MEMORY for a length below 1, at any level, and when there is no memory, "
            "with the object half filled and 0 as the result; KELP_ERR_NO_ROOM when the image is "
            "cut; KELP_ERR_INVALID for a null object and for a value that no writer writes",
        .ownership = "what is allocated for arrays, texts and arms belongs to the object",
    },
    Operation{
        .suffix = "len",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $T *object",
        .rule = "image::len",
        .brief = "Gives the bytes to provide for the image of object, without an ra-data block. "
                 "An image may be shorter: an empty array leaves out its state byte. It is longer "
                 "by a byte for each array element when the handle tracks state and the object "
                 "does not.",
    },
    Operation{
        .suffix = "len_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object",
        .rule = "image::len_cr",
        .brief = "Gives what $type_len gives under the handle's cr_space_id, 0 when its cr_err is "
                 "set.",
        .errors = "none; cr_err is only read",
    },
};

inline constexpr Family family{"image", operations};

// --- what the plain part knows of a structure ---------------------------------------------------

struct ImageFacts {
  std::uint8_t variants;
  std::uint32_t object_size;
  kelp_type_record *record;
  std::uint32_t corrupted_in_writer;
  std::uint32_t corrupted_in_reader;
  std::uint32_t tracking_mismatch;
  std::uint32_t offset_jump;
};

template <const Structure &T>
inline constexpr ImageFacts facts{
    T.variants,
    model::object_size(T),
    type_record<T>,
    messages::corrupted_at(T, messages::StructureSite::marshal),
    messages::corrupted_at(T, messages::StructureSite::unmarshal),
    messages::of_type(messages::TypeForm::tracking_mismatch, T),
    messages::of_offset_jump(T),
};

using plain_image::frame_length;
inline constexpr std::uint8_t wire_flags = OBJ_STATE_TRACKED | OBJ_RA_DATA;
static_assert(wire_flags == 40);

// --- the writer ---------------------------------------------------------------------------------

// An image while it is written.
struct Writing {
  kelp_handle *handle;
  std::uint32_t space_id;
  std::uint8_t *buffer;
  std::int32_t length;
  std::uint32_t *err;
  std::int32_t position = 0;
  std::int32_t jump_at = 0;
  std::int8_t variant = 0;
  bool carries_state = false;
  std::uint8_t *area = nullptr;  // the object's state bytes, only read; null: zeroes are written

  std::uint8_t *here() const { return buffer + position; }
  std::int32_t remaining() const { return length - position; }
  std::uint8_t state(std::uint32_t place) const { return area == nullptr ? 0 : area[place]; }
};

// Steps up to the jump word; false when nothing is to be written at all.
bool open(const ImageFacts &facts, Writing &image, const void *object, std::uint32_t strict);

// Patches the jump word and gives the length of the image.
std::uint32_t close(Writing &image);

// Rule A: the state byte of every field but references and arms.
// Required: the byte is stored in any case, with no room left one byte behind the stated buffer;
// only the position depends on the room. The test is weaker than that of rule B on purpose.
inline void put_state(Writing &image, std::uint32_t place) {
  *image.here() = image.state(place);
  if (image.remaining() != 0) ++image.position;
}

// Rule B: the state byte of references and arms.
// Required: it needs room for 2 bytes, so that the last byte of a buffer stays unused.
inline void put_state_with_room(Writing &image, std::uint32_t place) {
  if (image.remaining() < 2) return;
  *image.here() = image.state(place);
  ++image.position;
}

// The whole-array byte by rule A, then by rule C as many element bytes as there is room for.
void put_array_state(const array_field::ArrayFacts &array, Writing &image, std::uint32_t count);

// Rule D: the bytes of an array in one block, cut with 90 when they do not fit.
void put_block(const Field &field, Writing &image, const void *block, std::uint32_t count);

// A selected arm that is not there: 2.
void miss_arm(const Field &field, Writing &image);

template <const Structure &T>
std::uint32_t write(kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *object,
                    std::int32_t length, std::uint32_t strict, std::uint32_t *err);

template <const Structure &T, const Field &F>
void write_array(Writing &image, const void *object) {
  const std::uint32_t count = field_walk::count_of<T, F>(object);
  if (count == 0) return;
  using Type = Primitive<F.held>;
  const auto *elements = field_walk::elements_of<T, F, typename Type::value_type>(object);
  if constexpr (F.held == Kind::u8) {
    put_block(F, image, elements, count);
  } else {
    // Under a set error word the elements would write nothing: the walk over them is left out.
    for (std::uint32_t index = 0; index < count && *image.err == 0; ++index) {
      image.position += Type::marshal(image.handle, image.space_id, image.here(), elements + index,
                                      image.remaining(), image.err);
    }
  }
  if (image.carries_state) put_array_state(array_field::facts<T, F>, image, count);
}

template <const Structure &T, const Field &F>
void write_arm(Writing &image, const void *object) {
  if (field_walk::is_selected<T, F>(object)) {
    const void *held = *place_of<T, F>(object);
    if (held == nullptr) {
      miss_arm(F, image);
    } else if constexpr (F.held == Kind::structure) {
      image.position += write<*F.structure>(image.handle, image.space_id, image.here(), held,
                                            image.remaining(), 1, image.err);
    } else {
      using Type = Primitive<F.held>;
      image.position += Type::marshal(image.handle, image.space_id, image.here(),
                                      static_cast<const typename Type::value_type *>(held),
                                      image.remaining(), image.err);
    }
  }
  if (image.carries_state) put_state_with_room(image, model::state_place(T, F));
}

// Required: an embedded structure is written strictly, also under marshal_for_clone.
template <const Structure &T, const Field &F>
void write_field(Writing &image, const void *object) {
  if constexpr (F.kind == Kind::array) {
    write_array<T, F>(image, object);
  } else if constexpr (F.kind == Kind::arm) {
    write_arm<T, F>(image, object);
  } else {
    const auto *place = place_of<T, F>(object);
    if constexpr (F.kind == Kind::structure) {
      image.position += write<*F.structure>(image.handle, image.space_id, image.here(), place,
                                            image.remaining(), 1, image.err);
    } else if constexpr (light_encodings::is_light(F.kind)) {
      image.position += light_encodings::marshal<light_encodings::type_of<F>()>(
          image.handle, image.space_id, image.here(), place, image.remaining(), image.err);
    } else if constexpr (F.kind == Kind::reference) {
      image.position += kelp::quick::oid_marshal(image.handle, image.space_id, image.here(),
                                                 &place->oid, image.remaining(), image.err);
    } else {
      image.position += Primitive<F.kind>::marshal(image.handle, image.space_id, image.here(),
                                                   place, image.remaining(), image.err);
    }
    if constexpr (F.kind == Kind::reference) {
      if (image.carries_state) put_state_with_room(image, model::state_place(T, F));
    } else if constexpr (model::has_state(F)) {
      if (image.carries_state) put_state(image, model::state_place(T, F));
    }
  }
}

// The bytes of a run of numbers in an image without state.
template <const Structure &T, std::uint8_t floor, std::size_t first, std::size_t end>
inline constexpr std::int32_t run_length = [] {
  std::int32_t length = 0;
  field_walk::every_field_of<T, floor, first, end>([&]<const Field & F>() {
    length += static_cast<std::int32_t>(Primitive<F.kind>::rule::kImageSize);
    return true;
  });
  return length;
}();

template <const Structure &T, std::uint8_t floor>
void write_fields(Writing &image, const void *object) {
  field_walk::for_each_field<T, floor>([&]<const Field & F>() {
    write_field<T, F>(image, object);
    if (*image.err != 0) [[unlikely]]
      name_failure(image.handle, About(F));
  });
}

// No failure in the middle stops the writer: what is called under a set error word adds nothing,
// and the jump word is patched in any case.
template <const Structure &T>
[[gnu::noinline]] std::uint32_t write_by_rules(kelp_handle *handle, std::uint32_t space_id,
                                               void *buffer, const void *object,
                                               std::int32_t length, std::uint32_t strict,
                                               std::uint32_t *err) {
  Writing image{handle, space_id, bytes(buffer), length, err};
  if (!open(facts<T>, image, object, strict)) return 0;
  for_each_floor<T>(image.variant,
                    [&]<std::uint8_t floor>() { write_fields<T, floor>(image, object); });
  return close(image);
}

template <const Structure &T>
std::uint32_t write(kelp_handle *handle, std::uint32_t space_id, void *buffer, const void *object,
                    std::int32_t length, std::uint32_t strict, std::uint32_t *err) {
  if (length > 0 && buffer != nullptr && plain_image::is_plain(handle, err)) [[likely]] {
    std::uint8_t *const start = bytes(buffer);
    if (const auto *end = plain_image::write<T>(start, start + length, object)) [[likely]] {
      kelp::quick::forget_error(handle);
      return static_cast<std::uint32_t>(end - start);
    }
  }
  return write_by_rules<T>(handle, space_id, buffer, object, length, strict, err);
}

// --- the reader ---------------------------------------------------------------------------------

// What becomes of the state bytes of an image.
enum class States : std::uint8_t { none, copy, skip };

// An image while it is read.
struct Reading {
  kelp_handle *handle;
  std::uint32_t space_id;
  const std::uint8_t *buffer;
  std::int32_t length;
  std::uint32_t reuse;
  std::uint32_t *err;
  std::int32_t position = 0;
  std::int32_t jump_at = 0;
  std::int32_t jump = 0;
  std::int8_t variant = 0;
  std::uint8_t flags = 0;  // to be stored
  States states = States::none;
  std::uint8_t *area = nullptr;     // the object's state bytes, under States::copy
  std::uint32_t held_elements = 0;  // the count that the array read next had before

  const std::uint8_t *here() const { return buffer + position; }
  std::int32_t remaining() const { return length - position; }
};

// Steps up to the settling of the state bytes; false when nothing is read at all.
bool open(const ImageFacts &facts, Reading &image, void *object);

// Passes over what a newer writer added, stores variant, flags and type record, and gives the bytes
// consumed.
std::uint32_t close(const ImageFacts &facts, Reading &image, void *object);

// Rules A and B on the reader's side, for images with state bytes.
void take_state(Reading &image, std::uint32_t place);
void take_state_with_room(Reading &image, std::uint32_t place);

// Provides the zeroed store for count elements and, when state is copied, their state bytes; false
// when there is no memory. The state bytes of another number of elements go with them.
bool provide_elements(const array_field::ArrayFacts &array, Reading &image, void *object,
                      void **store, std::uint32_t count);

void take_block(Reading &image, void *block, std::uint32_t count);
void take_array_state(const array_field::ArrayFacts &array, Reading &image, std::uint32_t count);

template <const Structure &T>
std::uint32_t unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                        void *object, std::int32_t length, std::uint32_t reuse, std::uint32_t *err);

// A count that could not be read leaves the field as it is.
template <const Structure &T, const Field &F>
bool read_array(Reading &image, void *object) {
  const std::uint32_t count = field_walk::count_of<T, F>(object);
  if (count == 0 || *image.err != 0) return true;
  using Type = Primitive<F.held>;
  const array_field::ArrayFacts &array = array_field::facts<T, F>;
  void **store = place_of<T, F>(object);
  if (!provide_elements(array, image, object, store, count)) return false;
  if constexpr (F.held == Kind::u8) {
    take_block(image, *store, count);
  } else {
    auto *elements = static_cast<typename Type::value_type *>(*store);
    for (std::uint32_t index = 0; index < count && *image.err == 0; ++index) {
      image.position +=
          Type::unmarshal(image.handle, image.space_id, image.here(), elements + index,
                          image.remaining(), image.reuse, image.err);
    }
  }
  if (image.states != States::none) take_array_state(array, image, count);
  return true;
}

// The first error ends the arms; the state byte of the slot in which it arose is still taken.
template <const Structure &T, const Field &F>
bool read_arm(Reading &image, void *object) {
  if (*image.err != 0) return true;
  if (field_walk::is_selected<T, F>(object)) {
    void **slot = place_of<T, F>(object);
    if (*slot == nullptr &&
        create_arm<F>(image.handle, image.space_id, slot, image.err) == nullptr) {
      return false;
    }
    if constexpr (F.held == Kind::structure) {
      image.position += unmarshal<*F.structure>(image.handle, image.space_id, image.here(), *slot,
                                                image.remaining(), image.reuse, image.err);
    } else {
      using Type = Primitive<F.held>;
      image.position += Type::unmarshal(image.handle, image.space_id, image.here(),
                                        static_cast<typename Type::value_type *>(*slot),
                                        image.remaining(), image.reuse, image.err);
    }
  }
  if (image.states != States::none) take_state_with_room(image, model::state_place(T, F));
  return true;
}

// False where the reader ends at once, which is for want of memory.
template <const Structure &T, const Field &F>
bool read_field(Reading &image, void *object) {
  if constexpr (F.kind == Kind::array) {
    return read_array<T, F>(image, object);
  } else if constexpr (F.kind == Kind::arm) {
    return read_arm<T, F>(image, object);
  } else {
    auto *place = place_of<T, F>(object);
    if constexpr (F.kind == Kind::counter) image.held_elements = *place;
    if constexpr (F.kind == Kind::structure) {
      image.position += unmarshal<*F.structure>(image.handle, image.space_id, image.here(), place,
                                                image.remaining(), image.reuse, image.err);
    } else if constexpr (light_encodings::is_light(F.kind)) {
      image.position += light_encodings::unmarshal<light_encodings::type_of<F>()>(
          image.handle, image.space_id, image.here(), place, image.remaining(), image.reuse,
          image.err);
    } else if constexpr (F.kind == Kind::reference) {
      image.position +=
          kelp::quick::oid_unmarshal(image.handle, image.space_id, image.here(), &place->oid,
                                     image.remaining(), image.reuse, image.err);
    } else {
      image.position +=
          Primitive<F.kind>::unmarshal(image.handle, image.space_id, image.here(), place,
                                       image.remaining(), image.reuse, image.err);
    }
    if constexpr (F.kind == Kind::reference) {
      if (image.states != States::none) take_state_with_room(image, model::state_place(T, F));
    } else if constexpr (model::has_state(F)) {
      if (image.states != States::none) take_state(image, model::state_place(T, F));
    }
    return true;
  }
}

// As write_run; all of the run is values that a writer writes.
template <const Structure &T, std::uint8_t floor, std::size_t first, std::size_t end>
bool read_run(Reading &image, void *object) {
  constexpr std::int32_t length = run_length<T, floor, first, end>;
  std::uint64_t *writes = kelp::quick::unheard_writes(image.handle);
  if (writes == nullptr || image.states != States::none || *image.err != 0 ||
      image.remaining() < length) {
    return false;
  }
  const std::uint8_t *at = image.here();
  const bool is_known = field_walk::every_field_of<T, floor, first, end>([&]<const Field & F>() {
    using Rule = typename Primitive<F.kind>::rule;
    typename Rule::Value value{};
    const bool decoded = Rule::decode(at, &value);
    at += Rule::kImageSize;
    return decoded;
  });
  if (!is_known) return false;
  at = image.here();
  image.position += length;
  *writes += end - first;
  return field_walk::every_field_of<T, floor, first, end>([&]<const Field & F>() {
    using Rule = typename Primitive<F.kind>::rule;
    auto *place = place_of<T, F>(object);
    if constexpr (F.kind == Kind::counter) image.held_elements = *place;
    typename Rule::Value value{};
    Rule::decode(at, &value);
    *place = Rule::stored(value);
    at += Rule::kImageSize;
    return true;
  });
}

template <const Structure &T, std::uint8_t floor>
bool read_fields(Reading &image, void *object) {
  return field_walk::every_run<T, floor>(
      [&]<std::size_t first, std::size_t end>() {
        return read_run<T, floor, first, end>(image, object);
      },
      [&]<const Field & F>() {
        const bool goes_on = read_field<T, F>(image, object);
        if (*image.err != 0) [[unlikely]]
          name_failure(image.handle, About(F));
        return goes_on;
      });
}

// A choice, which creates objects of its own as it reads, registers the trace first.
template <const Structure &T>
std::uint32_t unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                        void *object, std::int32_t length, std::uint32_t reuse,
                        std::uint32_t *err) {
  if constexpr (T.is_choice()) {
    if (*err == 0) register_trace(handle);
  }
  Reading image{handle, space_id, bytes(buffer), length, reuse, err};
  if (!open(facts<T>, image, object)) return 0;
  const bool is_read = every_floor<T>(
      image.variant, [&]<std::uint8_t floor>() { return read_fields<T, floor>(image, object); });
  return is_read ? close(facts<T>, image, object) : 0;
}

// --- the length ---------------------------------------------------------------------------------

template <const Structure &T>
std::uint32_t len(kelp_handle *handle, std::uint32_t space_id, const void *object);

// A null object passes null addresses to the primitives, and has no elements and no arms.
template <const Structure &T, const Field &F>
std::uint32_t field_len(kelp_handle *handle, std::uint32_t space_id, const void *object) {
  if constexpr (light_encodings::is_light(F.kind)) {
    return light_encodings::image_length<light_encodings::type_of<F>()>();
  } else if constexpr (F.kind == Kind::structure) {
    return len<*F.structure>(handle, space_id,
                             object == nullptr ? nullptr : place_of<T, F>(object));
  } else if constexpr (F.kind == Kind::reference) {
    return kelplib_oid_len(handle, space_id,
                           object == nullptr ? nullptr : &place_of<T, F>(object)->oid);
  } else if constexpr (F.kind == Kind::array) {
    if (object == nullptr) return 0;
    using Type = Primitive<F.held>;
    const auto *elements = field_walk::elements_of<T, F, typename Type::value_type>(object);
    return Type::len(handle, space_id, elements) * field_walk::count_of<T, F>(object);
  } else if constexpr (F.kind == Kind::arm) {
    if (object == nullptr || !field_walk::is_selected<T, F>(object)) return 0;
    const void *held = *place_of<T, F>(object);
    if constexpr (F.held == Kind::structure) {
      return len<*F.structure>(handle, space_id, held);
    } else {
      using Type = Primitive<F.held>;
      return Type::len(handle, space_id, static_cast<const typename Type::value_type *>(held));
    }
  } else {
    return Primitive<F.kind>::len(handle, space_id,
                                  object == nullptr ? nullptr : place_of<T, F>(object));
  }
}

template <const Structure &T, std::uint8_t floor>
std::uint32_t fields_len(kelp_handle *handle, std::uint32_t space_id, const void *object) {
  std::uint32_t total = 0;
  field_walk::for_each_field<T, floor>(
      [&]<const Field & F>() { total += field_len<T, F>(handle, space_id, object); });
  return total;
}

// One state byte for a field, and one for each element when the object has state bytes at all.
// Required: the byte of an empty array counts, although the writer leaves it out, and the elements
// of an untracked object do not, although the writer puts a zero for each.
template <const Structure &T, std::uint8_t floor>
std::uint32_t states_len(const void *object) {
  std::uint32_t total = 0;
  field_walk::for_each_field<T, floor>([&]<const Field & F>() {
    if constexpr (model::has_state(F)) ++total;
    if constexpr (F.kind == Kind::array) {
      if (state_tracking::is_tracked(object)) total += field_walk::count_of<T, F>(object);
    }
  });
  return total;
}

template <const Structure &T>
std::uint32_t len(kelp_handle *handle, std::uint32_t space_id, const void *object) {
  using enum state_tracking::Tracking;
  const std::int8_t variant = kelp::quick::get_instance_variant(handle, object, 1, 0);
  std::uint32_t total = frame_length;
  for_each_floor<T>(variant, [&]<std::uint8_t floor>() {
    total += fields_len<T, floor>(handle, space_id, object);
  });
  if (object == nullptr) return total;
  constexpr std::uint32_t corrupted = messages::corrupted_at(T, messages::StructureSite::length);
  if (state_tracking::tracking_of(handle, corrupted) != on) return total;
  for_each_floor<T>(variant, [&]<std::uint8_t floor>() { total += states_len<T, floor>(object); });
  return total;
}

template <const Structure &T>
std::uint32_t len_cr(kelp_handle *handle, const void *object) {
  return handle->cr_err != 0 ? 0 : len<T>(handle, handle->cr_space_id, object);
}

}  // namespace harbor::image
