// The variants of a handle: fixing them, asking for them, and bringing objects up to them.
#include <algorithm>
#include <cstring>

#include "base/announce.hpp"
#include "base/failure.hpp"
#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "database/quick.hpp"
#include "parts/finishers.hpp"
#include "parts/kinship.hpp"

namespace kelp {

namespace {

// 0 when the arguments name a type, else the code that error got.
std::int32_t check_type_name(const kelp_handle *handle, const char *type_name, const char *function,
                             kelp_error *error) {
  if (handle == nullptr) return fail(error, KELP_ERR_INVALID, "%s: the handle is null", function);
  const std::size_t length = type_name == nullptr ? 0 : std::strlen(type_name);
  if (length == 0 || length >= sizeof kelp_type_record{}.type_name) {
    return fail(error, KELP_ERR_INVALID, "%s: a type name of %zu bytes, expected 1 to 63", function,
                length);
  }
  return 0;
}

// An object that a program of an earlier edition made is zero where fields lie that this one knows.
// They are prepared as in a new object, which changes nothing in those that were.
void prepare_fields(kelp_handle *handle, std::uint32_t space_id, void *object,
                    const kelp_type_record *record) {
  const kelp_database &database = database_of(handle);
  if (!database.editions.is_mixed() || !database.store->holds(object)) return;
  kelp_type_record *own = database.editions.own_record(record);
  const ObjectInitializer initialize = own == nullptr ? nullptr : find_initializer(own);
  if (initialize == nullptr || !is_structure(*own)) return;
  constexpr std::int32_t kNotify = 1;
  constexpr std::int32_t kUncounted = 1;
  auto *header = static_cast<kelp_object_header *>(object);
  const std::int8_t created = header->created_variant;
  std::uint32_t err = 0;
  initialize(handle, space_id, object, own, kNotify, kUncounted, 0, nullptr, &err);
  header->created_variant = created;
}

}  // namespace

}  // namespace kelp

extern "C" int32_t kelp_handle_set_variant(kelp_handle *handle, const char *type_name,
                                           int32_t variant, kelp_error *error) {
  constexpr const char *kFunction = "kelp_handle_set_variant";
  if (const int32_t code = kelp::check_type_name(handle, type_name, kFunction, error)) return code;
  if (variant < INT8_MIN || variant > INT8_MAX) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: variant %d of type '%s', expected -128 to 127",
                      kFunction, variant, type_name);
  }
  const bool done = kelp::without_exceptions([&] {
    kelp::Domain::Fixed &fixed = handle->state->domain.entry(type_name);
    fixed.has_variant = true;
    fixed.variant = static_cast<int8_t>(variant);
  });
  kelp::settle_quick(*handle->state);
  if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  return kelp::succeed(error);
}

extern "C" void kelp_handle_clear_variant(kelp_handle *handle, const char *type_name) {
  if (kelp::check_type_name(handle, type_name, "kelp_handle_clear_variant", nullptr) != 0) return;
  kelp::without_exceptions([&] {
    handle->state->domain.entry(type_name).has_variant = false;
    handle->state->domain.drop_empty();
  });
  kelp::settle_quick(*handle->state);
}

extern "C" int32_t kelp_handle_fail_variant(kelp_handle *handle, const char *type_name,
                                            uint32_t code, kelp_error *error) {
  constexpr const char *kFunction = "kelp_handle_fail_variant";
  if (const int32_t bad = kelp::check_type_name(handle, type_name, kFunction, error)) return bad;
  const bool done = kelp::without_exceptions([&] {
    handle->state->domain.entry(type_name).failure = code;
    handle->state->domain.drop_empty();
  });
  kelp::settle_quick(*handle->state);
  if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  return kelp::succeed(error);
}

extern "C" int8_t kelp_domain_lookup_variant(kelp_handle *handle, const kelp_domain *domain,
                                             const kelp_type_record *record, uint32_t *err) {
  if (record == nullptr || record->varinfo == nullptr) {
    if (kelp::is_set(err)) {
      kelp_store_err(handle, KELP_ERR_INVALID);
    } else {
      kelp::raise(handle, err, KELP_ERR_INVALID);
    }
    return 0;
  }
  const int8_t highest = kelp::quick::highest_variant(record);
  auto *variants = domain == nullptr ? nullptr : static_cast<kelp::Domain *>(domain->variants);
  const kelp::Domain::Fixed *fixed = variants == nullptr ? nullptr : variants->find(record);
  if (fixed == nullptr) return highest;
  if (fixed->failure != 0 && !kelp::is_set(err)) kelp::raise(handle, err, fixed->failure);
  return fixed->has_variant ? fixed->variant : highest;
}

extern "C" void kelplib_adjust_variant(kelp_handle *handle, uint32_t space_id, void *object,
                                       const kelp_type_record *record, int32_t highest,
                                       uint32_t *err) {
  if (object == nullptr || kelp::is_set(err)) return;
  const int8_t wanted = kelp_domain_lookup_variant(handle, &handle->domain, record, err);
  if (kelp::is_set(err)) return;
  auto *header = static_cast<kelp_object_header *>(object);
  const int32_t target = std::min<int32_t>(wanted, highest);
  if (target <= header->variant) return;
  kelp::announce(handle, &header->variant, sizeof header->variant, space_id);
  header->variant = static_cast<int8_t>(target);
  kelp::prepare_fields(handle, space_id, object, record);
}
