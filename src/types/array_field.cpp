// What array fields do with their blocks, the same for all fields and elements. Called by the rules
// of array_field.hpp once the error word and the variant have been looked at.
#include "types/array_field.hpp"

#include <utility>

namespace harbor::array_field {

namespace {

using state_tracking::Tracking;
using state_tracking::tracking_of;

void *allocate(kelp_handle *handle, std::uint32_t space_id, std::size_t size) {
  return handle->obj_alloc(handle->obj_pool, space_id, size);
}

void release(kelp_handle *handle, std::uint32_t space_id, void *block) {
  handle->obj_free(handle->obj_pool, space_id, block);
}

void *place_in(const ArrayFacts &array, void *store, std::uint32_t index) {
  return reinterpret_cast<void *>(reinterpret_cast<std::uintptr_t>(store) +
                                  array.element_width() * index);
}

std::uint8_t *area_of(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
                      void *object) {
  return state_tracking::area_of(handle, space_id, object, array.object_size);
}

// What a copy of their bytes leaves to be done for elements that are objects.
void settle_moved_addresses(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
                            void *object, void *old_store, std::uint32_t count, bool tracking,
                            std::uint32_t *err) {
  for (std::uint32_t index = 0; index < count; ++index) {
    auto *moved = static_cast<ip_address *>(element_at(array, object, index));
    auto *old = static_cast<ip_address *>(place_in(array, old_store, index));
    ip_address_post_copyout_cleanup(handle, space_id, moved, old, err);
    if (tracking) kelp_hd_mapping_destroy(handle, space_id, old, err);
  }
}

// Replaces the state bytes of the elements by as many as the array now has, the old ones kept. An
// array that was emptied keeps its bytes until here: none of them is taken over then. An array that
// a failed replacement left without a block may shrink here, which bounds the copy.
bool grow_element_states(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
                         void *object, std::uint32_t old_count, std::uint32_t *err) {
  const std::size_t count = count_of(array, object);
  std::uint8_t *&states = element_states_of(array, area_of(array, handle, space_id, object));
  std::uint8_t *const old_states = states;
  announce(handle, space_id, &states, sizeof(states));
  states = static_cast<std::uint8_t *>(allocate(handle, space_id, count));
  if (states == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(*array.field));
  } else {
    __memset_to_buf(states, 0, count);
    if (old_states != nullptr) {
      __memcpy_to_buf(states, old_states, old_count < count ? old_count : count);
    }
  }
  if (old_states != nullptr) release(handle, space_id, old_states);
  return states != nullptr;
}

}  // namespace

std::uint32_t &count_of(const ArrayFacts &array, void *object) {
  return *reinterpret_cast<std::uint32_t *>(reinterpret_cast<std::uintptr_t>(object) +
                                            array.count_offset);
}

void *&store_of(const ArrayFacts &array, void *object) {
  return *reinterpret_cast<void **>(reinterpret_cast<std::uintptr_t>(object) + array.store_offset);
}

std::uint8_t *&element_states_of(const ArrayFacts &array, std::uint8_t *area) {
  return *reinterpret_cast<std::uint8_t **>(area + array.element_states_place);
}

void *element_at(const ArrayFacts &array, void *object, std::uint32_t index) {
  return place_in(array, store_of(array, object), index);
}

std::uint8_t *provide_element_states(const ArrayFacts &array, kelp_handle *handle,
                                     std::uint32_t space_id, void *object) {
  std::uint8_t *&states = element_states_of(array, area_of(array, handle, space_id, object));
  if (states != nullptr) return states;
  const std::size_t count = count_of(array, object);
  auto *made = static_cast<std::uint8_t *>(allocate(handle, space_id, count));
  if (made == nullptr) return nullptr;
  __memset_to_buf(made, 0, count);
  store(handle, space_id, &states, made);
  return made;
}

void drop_element_states(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
                         void *object) {
  if (!state_tracking::is_tracked(object)) return;
  std::uint8_t *&states = element_states_of(array, area_of(array, handle, space_id, object));
  if (states == nullptr) return;
  release(handle, space_id, states);
  store<std::uint8_t *>(handle, space_id, &states, nullptr);
}

// Required: the block grows to index + 1 elements and never further. The first growth of the field
// in the process is traced; the first allocation of an array is none. The highest index has no
// count that would hold it.
bool grow(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object,
          std::uint32_t index, std::uint32_t *err) {
  const bool tracking = tracking_of(handle, array.gate.corrupted) == Tracking::on;
  if (tracking &&
      !state_tracking::require_tracked(handle, object, *array.field, array.gate.not_tracked, err)) {
    return false;
  }
  void *const old_store = store_of(array, object);
  const std::uint32_t old_count = count_of(array, object);
  if (old_store != nullptr && index < old_count) return true;
  if (index == UINT32_MAX) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(*array.field),
         "found the index %u, expected a lower one", index);
    return false;
  }
  if (old_store != nullptr && *array.has_grown == 0) {
    trace(type_source, Level::error, array.reallocating);
    *array.has_grown = 1;
  }
  const std::size_t size = array.element_width() * (std::size_t{index} + 1);
  void *const new_store = allocate(handle, space_id, size);
  if (new_store == nullptr) {
    fail(handle, KELP_ERR_NO_MEMORY, err, About(*array.field));
    return false;
  }
  store(handle, space_id, &store_of(array, object), new_store);
  __memset_to_buf(new_store, 0, size);
  if (old_store != nullptr) {
    __memcpy_to_buf(new_store, old_store, array.element_width() * old_count);
    if (array.holds_addresses) {
      settle_moved_addresses(array, handle, space_id, object, old_store, old_count, tracking, err);
    }
    release(handle, space_id, old_store);
  }
  store(handle, space_id, &count_of(array, object), index + 1);
  if (tracking_of(handle, array.growth.corrupted) != Tracking::on) {
    if (index + 1 != old_count) drop_element_states(array, handle, space_id, object);
    return true;
  }
  return state_tracking::require_tracked(handle, object, *array.field, array.growth.not_tracked,
                                         err) &&
         grow_element_states(array, handle, space_id, object, old_count, err);
}

bool takes_at_once(const ArrayFacts &array, kelp_handle *handle, void *object) {
  return kelp::quick::of(handle) != nullptr && kelp::quick::unheard_writes(handle) != nullptr &&
         store_of(array, object) == nullptr && *array.has_grown != 0 &&
         !state_tracking::is_tracked(object) &&
         tracking_of(handle, array.gate.corrupted) != Tracking::on;
}

NewStore::NewStore(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id,
                   std::uint32_t count)
    : array_(array),
      handle_(handle),
      space_id_(space_id),
      count_(count),
      block_(allocate(handle, space_id, array.element_width() * count)) {}

NewStore::~NewStore() {
  if (block_ != nullptr) release(handle_, space_id_, block_);
}

// Each element would be read into a temporary one, and be stored behind the block and the count.
void NewStore::give_to(void *object) {
  *kelp::quick::unheard_writes(handle_) += std::uint64_t{4} * count_;
  store_of(array_, object) = std::exchange(block_, nullptr);
  count_of(array_, object) = count_;
}

// Elements that came without state bytes have none; then the array as a whole is marked alone,
// since the write of an element that is there allocates nothing.
void mark(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object,
          std::uint32_t index, const TrackingMessages &messages, std::uint32_t *err) {
  if (tracking_of(handle, messages.corrupted) != Tracking::on) return;
  if (!state_tracking::require_tracked(handle, object, *array.field, messages.not_tracked, err)) {
    return;
  }
  std::uint8_t *const area = area_of(array, handle, space_id, object);
  store(handle, space_id, area + array.state_place, state_tracking::written);
  std::uint8_t *const states = element_states_of(array, area);
  if (states != nullptr) store(handle, space_id, states + index, state_tracking::written);
}

// Required: a count that is too high is 22 here and 2 for a single element. Nothing is announced,
// since nothing of the object changes.
void copy_out(const ArrayFacts &array, kelp_handle *handle, void *object, void *destination,
              std::uint32_t count, std::uint32_t *err) {
  if (count > count_of(array, object)) {
    return fail(handle, KELP_ERR_INVALID, err, About(*array.field),
                "found a count of %u, expected at most %u", count, count_of(array, object));
  }
  __memcpy_to_buf(destination, store_of(array, object), array.element_width() * count);
}

// Required: the count is taken as a signed number and the size of the block truncated to 32 bits;
// the old block is gone before the new one is asked for, and the count changes only once the
// elements are there.
void replace(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object,
             const void *source, std::uint32_t count, const TrackingMessages &messages,
             std::uint32_t *err) {
  void *&elements = store_of(array, object);
  if (elements != nullptr) release(handle, space_id, elements);
  const auto size = static_cast<std::uint32_t>(static_cast<std::int64_t>(array.element_width()) *
                                               static_cast<std::int32_t>(count));
  announce(handle, space_id, &elements, sizeof(elements));
  elements = allocate(handle, space_id, size);
  if (elements == nullptr) return fail(handle, KELP_ERR_NO_MEMORY, err, About(*array.field));

  const bool tracking = tracking_of(handle, messages.corrupted) == Tracking::on;
  if (tracking &&
      !state_tracking::require_tracked(handle, object, *array.field, messages.not_tracked, err)) {
    return;
  }
  __memcpy_to_buf(elements, source, size);
  const std::uint32_t old_count = count_of(array, object);
  store(handle, space_id, &count_of(array, object), count);
  if (!tracking) {
    if (count != old_count) drop_element_states(array, handle, space_id, object);
    return;
  }

  std::uint8_t *const area = area_of(array, handle, space_id, object);
  store(handle, space_id, area + array.state_place, state_tracking::written);
  std::uint8_t *&states = element_states_of(array, area);
  if (states != nullptr) release(handle, space_id, states);
  announce(handle, space_id, &states, sizeof(states));
  states = static_cast<std::uint8_t *>(allocate(handle, space_id, count));
  if (states == nullptr) return fail(handle, KELP_ERR_NO_MEMORY, err, About(*array.field));
  __memset_to_buf(states, 0, count);
}

void remove(const ArrayFacts &array, kelp_handle *handle, std::uint32_t space_id, void *object) {
  if (object == nullptr || store_of(array, object) == nullptr) return;
  if (array.holds_addresses) {
    const std::uint32_t count = count_of(array, object);
    for (std::uint32_t index = 0; index < count; ++index) {
      auto *element = static_cast<ip_address *>(element_at(array, object, index));
      ip_address_destroy_internal(handle, space_id, element, 0);
    }
  }
  release(handle, space_id, store_of(array, object));
  store(handle, space_id, &store_of(array, object), static_cast<void *>(nullptr));
  store(handle, space_id, &count_of(array, object), std::uint32_t{0});
}

void put_address(kelp_handle *handle, std::uint32_t space_id, ip_address *element,
                 const ip_address *source, bool transfer, std::uint32_t *err) {
  if (transfer) return ip_address_set(handle, space_id, element, source, err);
  void *work = nullptr;
  std::uint32_t work_size = 0;
  kelplib_get_handle_ws(handle, &work, &work_size, err);
  ip_address_clone_internal(handle, space_id, source, &element, work, work_size, err);
}

}  // namespace harbor::array_field
