// kelp_vstring: who owns a text, and how it moves from one owner to another.
#include <cstring>

#include "primitives/embedded_header.hpp"
#include "primitives/own_memory.hpp"
#include "primitives/super_fast_hash.hpp"
#include "primitives/type_record.hpp"
#include "primitives/vstring_text.hpp"

static_assert(sizeof(kelp_vstring) == 16);

namespace kelp {

void store_text(Writer writer, kelp_vstring *vstring, char *text, uint32_t length) {
  static_assert(offsetof(kelp_vstring, text) == 0);
  static_assert(offsetof(kelp_vstring, length) == sizeof(char *));
  writer.announce(vstring, sizeof vstring->text + sizeof vstring->length);
  vstring->text = text;
  vstring->length = length;
}

void replace_text(Writer writer, kelp_vstring *vstring, std::string_view text, uint32_t *err) {
  if (text.size() > KELP_VSTRING_MAX_LENGTH)
    return raise(writer.handle, err, KELP_ERR_TOO_LONG,
                 "found a longer text than a kelp_vstring holds");
  char *copy = nullptr;
  if (!text.empty()) {
    copy = static_cast<char *>(writer.allocate(text.size() + 1));
    if (copy == nullptr) return raise(writer.handle, err, KELP_ERR_NO_MEMORY);
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
  }
  char *old = vstring->text;
  store_text(writer, vstring, copy, static_cast<uint32_t>(text.size()));
  if (old != nullptr) writer.free(old);
}

}  // namespace kelp

namespace {

kelp_variant_entry vstring_variant_entry = {0, sizeof(kelp_vstring), 0, 0, 0, 0, 0};
kelp_variant_info vstring_variant_info = {1, &vstring_variant_entry};

}  // namespace

kelp_type_record _kelp_vstring_type_info_internal = kelp::primitive_type_record(
    "kelp_vstring", "157aa9f60b0a962db60530d55218cc7b", &vstring_variant_info);

kelp_vstring *kelp_vstring_get(kelp_handle *, uint32_t, const kelp_vstring *address,
                               uint32_t *err) {
  return *err != 0 ? nullptr : const_cast<kelp_vstring *>(address);
}

void kelp_vstring_set(kelp_handle *handle, uint32_t space_id, kelp_vstring *destination,
                      kelp_vstring *source, uint32_t *err) {
  if (destination == nullptr || source == nullptr) {
    if (*err == 0) kelp::raise(handle, err, KELP_ERR_INVALID);
    return;
  }
  if (destination == source) return;
  // The objects around the two were copied as bytes: destination already is the second owner of the
  // text. Required: the source then gives it up whatever the error word says.
  const bool already_moved = destination->text == source->text;
  if (*err != 0 && !(already_moved && source->text != nullptr)) return;
  const kelp::Writer writer = {handle, space_id};
  if (!already_moved) {
    char *old = destination->text;
    kelp::store_text(writer, destination, source->text, source->length);
    if (old != nullptr) writer.free(old);
  }
  kelp::store_text(writer, source, nullptr, 0);
}

int32_t kelp_vstring_compare(const kelp_vstring *a, const kelp_vstring *b) {
  if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
  const int order = kelp::text_of(a).compare(kelp::text_of(b));
  return (order > 0) - (order < 0);
}

uint32_t kelp_vstring_hash(const kelp_vstring *address, uint32_t seed) {
  if (address == nullptr) return seed;
  const std::string_view text = kelp::text_of(address);
  return kelp::hash_bytes(text.data(), static_cast<uint32_t>(text.size()), seed);
}

void kelp_vstring_initialize(kelp_handle *handle, uint32_t space_id, kelp_vstring *object,
                             kelp_type_record *, int32_t notify, int32_t, uint8_t flags, void *,
                             uint32_t *err) {
  if (*err != 0) return;
  if (object == nullptr) return kelp::raise(handle, err, KELP_ERR_INVALID);
  const kelp::InitialStore store = {{handle, space_id}, notify != 0};
  kelp::initialize_variants(store, object);
  kelp::initialize_flags(store, object, flags);
}

void kelp_vstring_set_instance_embedded(kelp_handle *handle, uint32_t space_id,
                                        kelp_vstring *object) {
  if (object != nullptr) kelp::set_embedded({handle, space_id}, object);
}

kelp_vstring *kelp_vstring_create(kelp_handle *handle, uint32_t space_id) {
  auto *vstring = kelp::create_zeroed<kelp_vstring>({handle, space_id});
  uint32_t err = 0;
  if (vstring != nullptr) {
    kelp_vstring_initialize(handle, space_id, vstring, &_kelp_vstring_type_info_internal, 1, 0, 0,
                            nullptr, &err);
  }
  return vstring;
}

void kelp_vstring_destroy_internal(kelp_handle *handle, uint32_t space_id, kelp_vstring *address,
                                   int32_t free_it) {
  if (address == nullptr) return;
  const kelp::Writer writer = {handle, space_id};
  if (char *text = address->text; text != nullptr) {
    kelp::store_text(writer, address, nullptr, 0);
    writer.free(text);
  }
  if (free_it != 0) writer.free(address);
}

uint32_t kelp_vstring_get_oid_count(kelp_handle *handle, uint32_t, const kelp_vstring *object,
                                    uint32_t *err) {
  kelp::test_object(handle, object, err);
  return 0;
}

void kelp_vstring_get_object_references(kelp_handle *handle, uint32_t, const kelp_vstring *object,
                                        void **, uint32_t, uint32_t *err) {
  kelp::test_object(handle, object, err);
}

void kelp_vstring_assign(kelp_handle *handle, uint32_t space_id, kelp_vstring *vstring,
                         const char *text, size_t length, uint32_t *err) {
  if (*err != 0) return;
  if (vstring == nullptr || (text == nullptr && length != 0)) {
    return kelp::raise(handle, err, KELP_ERR_INVALID);
  }
  kelp::replace_text({handle, space_id}, vstring, {text, length}, err);
}

const char *kelp_vstring_text(const kelp_vstring *vstring) {
  return vstring == nullptr || vstring->text == nullptr ? "" : vstring->text;
}
