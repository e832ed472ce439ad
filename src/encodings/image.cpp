#include "encodings/image.hpp"

#include <algorithm>

#include "encodings/light_image.hpp"

namespace harbor::image {

using state_tracking::Tracking;
using state_tracking::tracking_of;

namespace {

// How many of count bytes there is room for.
std::uint32_t fitting(std::uint32_t count, std::int32_t remaining) {
  return std::min(count, static_cast<std::uint32_t>(std::max(remaining, 0)));
}

}  // namespace

// --- the writer ---------------------------------------------------------------------------------

namespace {

// A variant above the domain's is refused and lowered; the writer goes on.
std::int8_t written_variant(Writing &image, const void *object, std::uint32_t strict,
                            std::uint8_t variants) {
  std::int8_t variant = kelp::quick::get_instance_variant(image.handle, object, 1, 0);
  const kelp_type_record *record = kelp::quick::get_manifested_type_info(image.handle, object);
  const std::int8_t of_domain = kelp::quick::domain_lookup_variant(image.handle, record, image.err);
  if (strict != 0 && variant > of_domain) {
    fail_variant(
        image.handle, image.err, About(record->type_name, "marshal"),
        "found an object of variant %d, expected at most %d, which the handle's domain gives",
        variant, of_domain);
    variant = of_domain;
  }
  return type_record_access::capped_variant(variant, variants);
}

}  // namespace

bool open(const ImageFacts &facts, Writing &image, const void *object, std::uint32_t strict) {
  if (!light_image::begin_image(facts.record->type_name, image.handle, image.length, image.err))
    return false;
  image.variant = written_variant(image, object, strict, facts.variants);
  image.position = static_cast<std::int32_t>(kelp::quick::instance_variant_marshal(
      image.handle, image.space_id, image.buffer, &image.variant, image.length, image.err));
  std::uint8_t flags = kelp::quick::get_instance_obj_flag(image.handle, object, 1, 0);
  if (tracking_of(image.handle, facts.corrupted_in_writer) == Tracking::on) {
    image.carries_state = true;
    if ((flags & OBJ_STATE_TRACKED) != 0) {
      image.area = state_tracking::area_of(image.handle, image.space_id, const_cast<void *>(object),
                                           facts.object_size);
    }
    flags |= OBJ_STATE_TRACKED;
  } else {
    flags &= static_cast<std::uint8_t>(~OBJ_STATE_TRACKED);
  }
  flags &= wire_flags;
  image.position += kelp::quick::instance_obj_flag_marshal(
      image.handle, image.space_id, image.here(), &flags, image.remaining(), image.err);
  if ((flags & OBJ_RA_DATA) != 0) {
    const std::uint64_t word = 0;
    const std::uint8_t byte = 0;
    image.position += _kelp_instance_ra_data_marshal(image.handle, image.space_id, image.here(),
                                                     &word, &byte, image.remaining(), image.err);
  }
  image.jump_at = image.position;
  const std::int32_t unknown = 0;
  image.position += kelp::quick::variant_jump_marshal(image.handle, image.space_id, image.here(),
                                                      &unknown, image.remaining(), image.err);
  // A null object has failed with 22 above; there are no fields to write.
  if (object == nullptr) image.variant = -1;
  return true;
}

// Required: the patch is given 4 bytes of room, also when the jump word itself found less.
std::uint32_t close(Writing &image) {
  const std::int32_t jump = image.position - image.jump_at;
  kelp::quick::variant_jump_marshal(image.handle, image.space_id, image.buffer + image.jump_at,
                                    &jump, KELP_WIRE_JUMP_SIZE, image.err);
  return static_cast<std::uint32_t>(image.position);
}

// An object that took its elements without their state has state bytes, but none for them.
void put_array_state(const array_field::ArrayFacts &array, Writing &image, std::uint32_t count) {
  put_state(image, array.state_place);
  const std::uint32_t length = fitting(count, image.remaining());
  const std::uint8_t *states =
      image.area == nullptr ? nullptr : array_field::element_states_of(array, image.area);
  if (states == nullptr) {
    std::memset(image.here(), 0, length);
  } else {
    std::memcpy(image.here(), states, length);
  }
  image.position += static_cast<std::int32_t>(length);
}

// The first failure stands: a writer goes on behind it, and may meet others.
void put_block(const Field &field, Writing &image, const void *block, std::uint32_t count) {
  const std::uint32_t length = fitting(count, image.remaining());
  if (length < count && *image.err == 0) {
    fail(image.handle, KELP_ERR_NO_ROOM, image.err, About(field, "marshal"),
         "found %u bytes of buffer, expected %u", length, count);
  }
  if (length != 0) std::memcpy(image.here(), block, length);
  image.position += static_cast<std::int32_t>(length);
}

void miss_arm(const Field &field, Writing &image) {
  if (*image.err != 0) return;
  fail(
      image.handle, KELP_ERR_NOT_FOUND, image.err, About(field, "marshal"),
      "found no object in this arm, which the choice selects, expected one set before the image is "
      "written");
}

// --- the reader ---------------------------------------------------------------------------------

namespace {

void settle_states(const ImageFacts &facts, Reading &image, void *object) {
  const bool carries_state = (image.flags & OBJ_STATE_TRACKED) != 0;
  if (tracking_of(image.handle, facts.corrupted_in_reader) != Tracking::on) {
    if (carries_state) image.states = States::skip;
    image.flags &= static_cast<std::uint8_t>(~OBJ_STATE_TRACKED);
    return;
  }
  if (!state_tracking::is_tracked(object)) die(type_source, facts.tracking_mismatch);
  image.flags |= OBJ_STATE_TRACKED;
  if (!carries_state) return;
  image.states = States::copy;
  image.area = state_tracking::area_of(image.handle, image.space_id, object, facts.object_size);
}

}  // namespace

// Only the two flags of the format are taken: the others say where an object lies in the writer's
// memory, and one of them would make the type record be looked for elsewhere.
bool open(const ImageFacts &facts, Reading &image, void *object) {
  if (!light_image::begin_image(facts.record->type_name, image.handle, image.length, image.err))
    return false;
  if (object == nullptr) {
    fail(image.handle, KELP_ERR_INVALID, image.err, About(facts.record->type_name, "unmarshal"),
         "found a null object, expected one");
    return false;
  }
  image.position = static_cast<std::int32_t>(kelp::quick::instance_variant_unmarshal(
      image.handle, image.space_id, image.buffer, &image.variant, image.length, image.err));
  image.position += kelp::quick::instance_obj_flag_unmarshal(
      image.handle, image.space_id, image.here(), &image.flags, image.remaining(), image.err);
  image.flags &= wire_flags;
  if ((image.flags & OBJ_RA_DATA) != 0) {
    std::uint64_t word = 0;
    std::uint8_t byte = 0;
    image.position += _kelp_instance_ra_data_unmarshal(image.handle, image.space_id, image.here(),
                                                       &word, &byte, image.remaining(), image.err);
  }
  image.variant = type_record_access::capped_variant(image.variant, facts.variants);
  image.jump_at = image.position;
  image.position += kelp::quick::variant_jump_unmarshal(image.handle, image.space_id, image.here(),
                                                        &image.jump, image.remaining(), image.err);
  settle_states(facts, image, object);
  return true;
}

// Required: the three header stores are not announced.
std::uint32_t close(const ImageFacts &facts, Reading &image, void *object) {
  if (image.jump_at + image.jump > image.position) {
    trace(type_source, Level::information, facts.offset_jump,
          static_cast<std::uint32_t>(image.position), static_cast<std::uint32_t>(image.jump_at),
          static_cast<std::uint32_t>(image.jump));
    image.position = image.jump_at + image.jump;
  }
  kelp_object_header *header = header_of(object);
  header->variant = image.variant;
  header->obj_flags |= image.flags;
  *kelp::quick::get_manifested_type_info_ptr_mem(image.handle, object) =
      type_record_access::record_for(image.handle, image.space_id, facts.record);
  return static_cast<std::uint32_t>(image.position);
}

// Required: there is a byte wherever the position is not exactly the end of the buffer.
void take_state(Reading &image, std::uint32_t place) {
  if (image.position == image.length) return;
  if (image.states == States::copy) {
    store(image.handle, image.space_id, image.area + place, *image.here());
  }
  ++image.position;
}

void take_state_with_room(Reading &image, std::uint32_t place) {
  if (image.remaining() < 2) return;
  if (image.states == States::copy) {
    store(image.handle, image.space_id, image.area + place, *image.here());
  }
  ++image.position;
}

namespace {

void *allocate(const Field &field, Reading &image, std::size_t size) {
  void *block = image.handle->obj_alloc(image.handle->obj_pool, image.space_id, size);
  if (block == nullptr)
    fail(image.handle, KELP_ERR_NO_MEMORY, image.err, About(field, "unmarshal"));
  return block;
}

void release(Reading &image, void *block) {
  image.handle->obj_free(image.handle->obj_pool, image.space_id, block);
}

// Required: with reuse, old state bytes go only when the count changed. New ones are allocated in
// any case, so that those of an array of the same count are left behind.
bool provide_element_states(const array_field::ArrayFacts &array, Reading &image,
                            std::uint32_t count) {
  std::uint8_t *&states = array_field::element_states_of(array, image.area);
  if (image.reuse != 0 && states != nullptr && count != image.held_elements) {
    release(image, states);
  }
  announce(image.handle, image.space_id, &states, sizeof(states));
  states = static_cast<std::uint8_t *>(allocate(*array.field, image, count));
  if (states == nullptr) return false;
  std::memset(states, 0, count);
  return true;
}

}  // namespace

// The bytes of a store, kept or new, are zeroed and filled unannounced; a kept store's elements
// announce themselves as they are read.
bool provide_elements(const array_field::ArrayFacts &array, Reading &image, void *object,
                      void **store, std::uint32_t count) {
  const std::size_t size = array.element_width() * count;
  const bool count_changes = count != image.held_elements;
  const auto drop_states = [&] {
    if (count_changes) {
      array_field::drop_element_states(array, image.handle, image.space_id, object);
    }
  };
  if (image.reuse != 0 && *store != nullptr && count_changes) {
    release(image, *store);
    announce(image.handle, image.space_id, store, sizeof(*store));
    *store = nullptr;
  }
  if (image.reuse == 0 || *store == nullptr) {
    announce(image.handle, image.space_id, store, sizeof(*store));
    *store = allocate(*array.field, image, size);
    if (*store == nullptr) {
      drop_states();
      return false;
    }
  }
  std::memset(*store, 0, size);
  if (image.states == States::copy) return provide_element_states(array, image, count);
  drop_states();
  return true;
}

// A buffer that ends too early leaves zeroes behind what it held, without a failure.
void take_block(Reading &image, void *block, std::uint32_t count) {
  const std::uint32_t length = fitting(count, image.remaining());
  if (length != 0) std::memcpy(block, image.here(), length);
  image.position += static_cast<std::int32_t>(length);
}

void take_array_state(const array_field::ArrayFacts &array, Reading &image, std::uint32_t count) {
  take_state(image, array.state_place);
  const std::uint32_t length = fitting(count, image.remaining());
  if (image.states == States::copy && length != 0) {
    std::memcpy(array_field::element_states_of(array, image.area), image.here(), length);
  }
  image.position += static_cast<std::int32_t>(length);
}

}  // namespace harbor::image
