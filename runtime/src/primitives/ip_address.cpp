// ip_address as a field, an array element and a key. It owns nothing: moving one is copying it, and
// destroying an embedded one is nothing.
#include <algorithm>
#include <cstring>

#include "primitives/embedded_header.hpp"
#include "primitives/ip_address_value.hpp"
#include "primitives/own_memory.hpp"
#include "primitives/super_fast_hash.hpp"
#include "primitives/type_record.hpp"
#include "primitives/value_family.hpp"
#include "wire/byte_order.hpp"

static_assert(sizeof(ip_address) == 48);

namespace {

// The value lies between the header and the end of the object.
constexpr size_t kValueAt = offsetof(ip_address, family);
constexpr size_t kValueSize = sizeof(ip_address) - kValueAt;

// What counts of an address, most significant first, so that comparing bytes is comparing
// addresses.
struct Key {
  uint8_t bytes[1 + 16 + 2 + 4];

  explicit Key(const ip_address &address) {
    const ip_address value = kelp::canonical_address(address);
    bytes[0] = value.family;
    std::memcpy(bytes + 1, value.bytes, sizeof value.bytes);
    bytes[17] = value.has_prefix;
    bytes[18] = value.prefix_length;
    kelp::store_big_endian(bytes + 19, value.scope);
  }
};

struct Address : kelp::quick::AddressRule {
  static constexpr std::string_view kName = "ip_address";
  static constexpr char kExpected[] = "an IPv4 or IPv6 address, with /prefix and %zone or without";
  static constexpr size_t kTextSize = IP_ADDRESS_TEXT_SIZE;

  static uint32_t hash(const ip_address &address, uint32_t seed) {
    const Key key(address);
    return kelp::hash_bytes(key.bytes, sizeof key.bytes, seed);
  }

  static size_t format(const ip_address &address, char *text) {
    return kelp::format_address(address, text);
  }

  static bool parse(std::string_view text, ip_address *address) {
    return kelp::parse_address(text, address);
  }

  // The header stays: it belongs to the place and not to the value.
  static void store(kelp::Writer writer, ip_address *address, const ip_address &value) {
    auto *destination = reinterpret_cast<uint8_t *>(address) + kValueAt;
    writer.announce(destination, kValueSize);
    std::memmove(destination, reinterpret_cast<const uint8_t *>(&value) + kValueAt, kValueSize);
  }
};

kelp_variant_entry ip_address_variant_entry = {0, sizeof(ip_address), 0, 0, 0, 0, 0};
kelp_variant_info ip_address_variant_info = {1, &ip_address_variant_entry};

// The record that an address of this handle may point at.
kelp_type_record *record_for(kelp_handle *handle, uint32_t space_id, kelp_type_record *type) {
  if (handle->shared_tinfo == 0 || type == nullptr) return type;
  kelp_type_record_copy *copy =
      handle->type_table_lookup(handle->type_table, space_id, type->md5_text);
  return copy == nullptr ? nullptr : &copy->record;
}

}  // namespace

kelp_type_record _ip_address_type_info_internal = kelp::primitive_type_record(
    "ip_address", "46ce47c0526144baf3ecbce33032d7d9", &ip_address_variant_info);

KELP_EXPORT_VALUE_FAMILY(ip_address, Address)

void ip_address_set(kelp_handle *handle, uint32_t space_id, ip_address *destination,
                    const ip_address *source, uint32_t *err) {
  if (*err != 0) return;
  if (destination == nullptr || source == nullptr)
    return kelp::raise(handle, err, KELP_ERR_INVALID);
  kelp::Writer{handle, space_id}.announce(destination, sizeof *destination);
  std::memmove(destination, source, sizeof *destination);
}

int32_t ip_address_compare(const ip_address *a, const ip_address *b) {
  if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
  const int order = std::memcmp(Key(*a).bytes, Key(*b).bytes, sizeof(Key));
  return (order > 0) - (order < 0);
}

void ip_address_initialize(kelp_handle *handle, uint32_t space_id, ip_address *object,
                           kelp_type_record *type, int32_t notify, int32_t, uint8_t flags, void *,
                           uint32_t *err) {
  if (*err != 0) return;
  if (object == nullptr) return kelp::raise(handle, err, KELP_ERR_INVALID);
  const kelp::InitialStore store = {{handle, space_id}, notify != 0};
  kelp::initialize_variants(store, &object->header);
  store(&object->header.tinfo, record_for(handle, space_id, type));
  kelp::initialize_flags(store, &object->header, flags);
}

void ip_address_set_instance_embedded(kelp_handle *handle, uint32_t space_id, ip_address *object) {
  if (object != nullptr) kelp::set_embedded({handle, space_id}, &object->header);
}

ip_address *ip_address_create(kelp_handle *handle, uint32_t space_id) {
  auto *address = kelp::create_zeroed<ip_address>({handle, space_id});
  uint32_t err = 0;
  if (address != nullptr) {
    ip_address_initialize(handle, space_id, address, &_ip_address_type_info_internal, 1, 0, 0,
                          nullptr, &err);
  }
  return address;
}

void ip_address_destroy(kelp_handle *handle, uint32_t space_id, ip_address *address) {
  ip_address_destroy_internal(handle, space_id, address, 1);
}

void ip_address_destroy_internal(kelp_handle *handle, uint32_t space_id, ip_address *address,
                                 int32_t free_it) {
  if (free_it != 0) kelp::destroy({handle, space_id}, address);
}

size_t ip_address_sizeof(void) { return sizeof(ip_address); }

uint32_t ip_address_get_oid_count(kelp_handle *handle, uint32_t, const ip_address *object,
                                  uint32_t *err) {
  kelp::test_object(handle, object, err);
  return 0;
}

void ip_address_get_object_references(kelp_handle *handle, uint32_t, const ip_address *object,
                                      void **, uint32_t, uint32_t *err) {
  kelp::test_object(handle, object, err);
}

void ip_address_clone_internal(kelp_handle *handle, uint32_t space_id, const ip_address *source,
                               ip_address **destination, void *, uint32_t, uint32_t *err) {
  if (*err != 0) return;
  if (destination == nullptr) return kelp::raise(handle, err, KELP_ERR_NOT_FOUND);
  if (source == nullptr) return kelp::raise(handle, err, KELP_ERR_INVALID);
  if (*destination == nullptr) *destination = ip_address_create(handle, space_id);
  if (*destination == nullptr) return kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  Address::store({handle, space_id}, *destination, *source);
}

void ip_address_post_copyout_cleanup(kelp_handle *, uint32_t, ip_address *, ip_address *,
                                     uint32_t *) {}

void ip_address_set_all_state_tracking_flag(kelp_handle *, uint32_t, ip_address *, uint8_t) {}
