// The runtime's small work, inline. A library of types does it itself where nobody could tell: the
// handle's word quick says that this process has put no function in front of those that stand here,
// for who replaces one sees every call. Where it is null each form makes the call that it stands
// for. The runtime's functions are made of the same rules, so that there is one of each.
//
// What the forms find out of the ordinary (a null argument, a set error word, a buffer too short)
// goes to the function too, which knows what to say.
#pragma once

#include <kelp/core.h>
#include <kelp/oid.h>
#include <kelp/primitive_layout.h>
#include <kelp/trace.h>
#include <kelp/wire.h>
#include <sys/single_threaded.h>

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

extern "C" {

// How the last operation of a handle failed: one word, since nearly every operation forgets it.
struct alignas(8) kelp_quick_error {
  std::uint32_t code;
  bool refused;       // an allocation since the handle last forgot its error
  bool refused_link;  // the last link was refused for want of memory
  std::uint16_t rest;
};

// What the runtime keeps for a handle that these forms work on.
struct kelp_quick {
  kelp_quick_error last_error;
  // The handle's own members while nobody hears of writes, null while somebody does.
  void *unheard_pool;
  decltype(kelp_handle::write_notify) unheard_write;
  decltype(kelp_handle::counter_notify) unheard_counter;
  // The same two while a store alone hears of them, and memory of it that the running transaction
  // has made or put by: a write there only counts.
  void *store_pool;
  decltype(kelp_handle::write_notify) store_write;
  const void *put_by;
  std::size_t put_by_size;
  void *free_variants;            // the handle's domain while it fixes nothing, else null
  std::uint64_t write_counts[4];  // by kelp_write_origin
};

// It lies behind the handle.
struct kelp_quick_handle {
  kelp_handle handle = {};
  kelp_quick quick = {};
};

// Another number whenever a registered module of the trace may get another level.
extern KELP_API std::uint32_t kelp_trace_edition;

// The serial of the calling thread's current database, 0 for none.
extern KELP_API __thread std::uint64_t kelp_thread_database
    __attribute__((tls_model("initial-exec")));

}  // extern "C"

namespace kelp::quick {

// Of a handle that the runtime made.
inline kelp_quick &behind(const kelp_handle *handle) {
  return reinterpret_cast<kelp_quick_handle *>(const_cast<kelp_handle *>(handle))->quick;
}

// What the handle's word quick holds, so that one load says whether the forms may be used and what
// the thread's database then is: the serial of the handle's database.
inline kelp_quick *word_of(std::uint64_t database) {
  return reinterpret_cast<kelp_quick *>(static_cast<std::uintptr_t>(database));
}
inline std::uint64_t database_of(const kelp_handle *handle) {
  return reinterpret_cast<std::uintptr_t>(handle->quick);
}

inline kelp_quick *of(const kelp_handle *handle) {
  return handle == nullptr || handle->quick == nullptr ? nullptr : &behind(handle);
}

// Whether there are both, and the forms may be used: two tests for three. Addresses that have no
// bit in common count as null ones do, so no is only a reason to look again.
inline bool have_both(const kelp_handle *handle, const void *object) {
  return (reinterpret_cast<std::uintptr_t>(handle) & reinterpret_cast<std::uintptr_t>(object)) !=
             0 &&
         handle->quick != nullptr;
}

// --- the last error -----------------------------------------------------------------------------

inline void forget_error(kelp_quick &quick, std::uint64_t database) {
  quick.last_error = {};
  kelp_thread_database = database;
}

// Where the forms may be used.
inline void forget_error(const kelp_handle *handle) {
  forget_error(behind(handle), database_of(handle));
}

inline void clear_last_error(kelp_handle *handle) {
  if (of(handle) != nullptr) [[likely]] {
    forget_error(handle);
  } else {
    kelp_clear_last_error(handle);
  }
}

// --- what is heard ------------------------------------------------------------------------------

inline constexpr int kModuleWrite = 0;
inline constexpr int kCounterWrite = 1;

// Where writes are counted while nobody hears of them; null when somebody does.
inline std::uint64_t *unheard_writes(const kelp_handle *handle) {
  kelp_quick &quick = behind(handle);
  return handle->quick != nullptr && handle->write_notify == quick.unheard_write &&
                 handle->obj_pool == quick.unheard_pool
             ? &quick.write_counts[kModuleWrite]
             : nullptr;
}

inline bool is_put_by(const kelp_handle *handle, const void *address) {
  const kelp_quick &quick = behind(handle);
  return handle->quick != nullptr &&
         reinterpret_cast<std::uintptr_t>(address) -
                 reinterpret_cast<std::uintptr_t>(quick.put_by) <
             quick.put_by_size &&
         handle->write_notify == quick.store_write && handle->obj_pool == quick.store_pool;
}

inline void write_notify(kelp_handle *handle, const void *address, std::size_t length,
                         std::uint32_t space_id) {
  if (std::uint64_t *writes = unheard_writes(handle)) [[likely]] {
    ++*writes;
  } else if (is_put_by(handle, address)) {
    ++behind(handle).write_counts[kModuleWrite];
  } else {
    handle->write_notify(handle->obj_pool, address, length, space_id);
  }
}

// Whether neither writes nor counters of this handle are heard of.
inline bool is_unheard(const kelp_handle *handle) {
  const kelp_quick *quick = of(handle);
  return quick != nullptr && handle->write_notify == quick->unheard_write &&
         handle->counter_notify == quick->unheard_counter &&
         handle->obj_pool == quick->unheard_pool;
}

// Counters of a process are its threads' in common.
inline void add_to_counter(const kelp_type_record *record, std::uint64_t *counter,
                           std::uint64_t count = 1) {
  if (record->plain_counters != 0 || __libc_single_threaded != 0) {
    *counter += count;
  } else {
    __atomic_fetch_add(counter, count, __ATOMIC_RELAXED);
  }
}

// Counts an object in its type's entry. Required: the announced length is 1, though a counter has 8
// bytes.
inline void count(kelp_handle *handle, std::uint32_t space_id, const kelp_type_record *record,
                  std::uint64_t *counter) {
  if (is_unheard(handle)) [[likely]] {
    ++behind(handle).write_counts[kCounterWrite];
  } else {
    handle->counter_notify(handle->obj_pool, counter, 1, space_id);
  }
  add_to_counter(record, counter);
}

inline void type_stats_create_object(kelp_handle *handle, std::uint32_t space_id,
                                     const kelp_type_record *record, std::uint64_t *create_count,
                                     std::uint32_t *err) {
  if (of(handle) != nullptr && *err == 0 && record != nullptr) [[likely]] {
    count(handle, space_id, record, create_count);
  } else {
    kelplib_type_stats_create_object(handle, space_id, record, create_count, err);
  }
}

// It is given the create counter too, and finds the other beside it.
inline std::uint64_t *destroy_count_beside(std::uint64_t *create_count) {
  constexpr std::size_t apart =
      offsetof(kelp_variant_entry, destroy_count) - offsetof(kelp_variant_entry, create_count);
  return create_count + apart / sizeof *create_count;
}

inline void type_stats_destroy_object(kelp_handle *handle, std::uint32_t space_id,
                                      const kelp_type_record *record, std::uint64_t *create_count,
                                      std::uint32_t *err) {
  if (of(handle) != nullptr && *err == 0 && record != nullptr) [[likely]] {
    count(handle, space_id, record, destroy_count_beside(create_count));
  } else {
    kelplib_type_stats_destroy_object(handle, space_id, record, create_count, err);
  }
}

// --- the trace ----------------------------------------------------------------------------------

// Registers a module of the trace, which is done again and again. settled is the module's own: what
// its id and the trace's edition were when it registered last.
inline void register_module(const kelp_handle *handle, const char *name, std::uint32_t *id_word,
                            std::uint32_t *level_word, std::uint64_t *settled) {
  const std::uint64_t edition =
      std::uint64_t{__atomic_load_n(&kelp_trace_edition, __ATOMIC_ACQUIRE)} << 32;
  const auto state = [&] { return edition | __atomic_load_n(id_word, __ATOMIC_RELAXED); };
  if (of(handle) != nullptr && __atomic_load_n(settled, __ATOMIC_RELAXED) == state()) return;
  xlog_module_init_fn(name, id_word, level_word);
  __atomic_store_n(settled, state(), __ATOMIC_RELAXED);
}

// --- variants and type records ------------------------------------------------------------------

inline std::int8_t variant_of(const void *object) {
  return object == nullptr ? std::int8_t{0}
                           : static_cast<const kelp_object_header *>(object)->variant;
}

inline std::int8_t get_instance_variant(const kelp_handle *handle, const void *object,
                                        std::int32_t is_structure, std::int32_t is_plain_valued) {
  return of(handle) != nullptr ? variant_of(object)
                               : kelp_get_instance_variant(object, is_structure, is_plain_valued);
}

inline std::uint8_t flags_of(const void *object) {
  return object == nullptr ? std::uint8_t{0}
                           : static_cast<const kelp_object_header *>(object)->obj_flags;
}

inline std::uint8_t get_instance_obj_flag(const kelp_handle *handle, const void *object,
                                          std::int32_t is_structure, std::int32_t is_plain_valued) {
  return of(handle) != nullptr ? flags_of(object)
                               : kelp_get_instance_obj_flag(object, is_structure, is_plain_valued);
}

inline kelp_type_record **record_place(void *object) {
  auto *header = static_cast<kelp_object_header *>(object);
  if ((header->obj_flags & OBJ_TINFO_BLOCK) == 0 || header->tinfo == nullptr) return &header->tinfo;
  void *block = header->tinfo;
  return &static_cast<kelp_tinfo_block *>(block)->tinfo;
}

inline kelp_type_record **get_manifested_type_info_ptr_mem(const kelp_handle *handle,
                                                           void *object) {
  return of(handle) != nullptr ? record_place(object)
                               : kelp_get_manifested_type_info_ptr_mem(object);
}

inline kelp_type_record *get_manifested_type_info(const kelp_handle *handle, const void *object) {
  if (of(handle) == nullptr) return kelp_get_manifested_type_info(object);
  return object == nullptr ? nullptr : *record_place(const_cast<void *>(object));
}

inline std::int8_t highest_variant(const kelp_type_record *record) {
  return static_cast<std::int8_t>(record->varinfo->n_variants - 1);
}

// Whether the handle gives every type its highest variant.
inline bool fixes_nothing(const kelp_handle *handle) {
  const kelp_quick *quick = of(handle);
  return quick != nullptr && handle->domain.variants == quick->free_variants;
}

inline std::int8_t domain_lookup_variant(kelp_handle *handle, const kelp_type_record *record,
                                         std::uint32_t *err) {
  if (record != nullptr && record->varinfo != nullptr && fixes_nothing(handle)) [[likely]] {
    return highest_variant(record);
  }
  return kelp_domain_lookup_variant(handle, &handle->domain, record, err);
}

// An object that is there already, as nearly all are, needs no call.
inline void adjust_variant(kelp_handle *handle, std::uint32_t space_id, void *object,
                           const kelp_type_record *record, std::int32_t highest,
                           std::uint32_t *err) {
  if (object != nullptr && *err == 0 && record != nullptr && record->varinfo != nullptr &&
      fixes_nothing(handle)) [[likely]] {
    const std::int8_t variant = variant_of(object);
    if (variant >= highest || variant >= highest_variant(record)) return;
  }
  kelplib_adjust_variant(handle, space_id, object, record, highest, err);
}

// --- references ---------------------------------------------------------------------------------

// Whether the 16 bytes name nothing.
inline bool is_zero(const std::uint8_t *id) {
  std::uint64_t halves[2];
  std::memcpy(halves, id, sizeof halves);
  return (halves[0] | halves[1]) == 0;
}

inline bool oid_id_is_zero(const kelp_handle *handle, const std::uint8_t *id) {
  return of(handle) != nullptr ? is_zero(id) : kelp_oid_id_is_zero(id) != 0;
}

// --- numbers in memory and in images ------------------------------------------------------------

template <class T>
void store_big_endian(std::uint8_t *at, T value) {
  for (std::size_t i = sizeof(T); i-- > 0;) {
    at[i] = static_cast<std::uint8_t>(value);
    if constexpr (sizeof(T) > 1) value = static_cast<T>(value >> 8);
  }
}

template <class T>
T load_big_endian(const std::uint8_t *at) {
  T value = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) {
    if constexpr (sizeof(T) > 1) value = static_cast<T>(value << 8);
    value = static_cast<T>(value | at[i]);
  }
  return value;
}

// A rule says what is stored of a value, and how it stands in an image and in a text; decode is
// false for what no writer writes, and format gives the bytes of the text, at most kTextSize.
template <class Unsigned>
struct UnsignedRule {
  using Value = Unsigned;
  static constexpr std::uint32_t kImageSize = sizeof(Value);
  static constexpr std::size_t kTextSize = std::numeric_limits<Value>::digits10 + 1;
  static Value stored(Value value) { return value; }
  static void encode(Value value, std::uint8_t *image) { store_big_endian(image, value); }
  static bool decode(const std::uint8_t *image, Value *value) {
    *value = load_big_endian<Value>(image);
    return true;
  }
  static std::size_t format(Value value, char *text) {
    return static_cast<std::size_t>(std::to_chars(text, text + kTextSize, value).ptr - text);
  }
};

struct DoubleRule {
  using Value = double;
  static constexpr std::uint32_t kImageSize = sizeof(std::uint64_t);
  static constexpr std::size_t kTextSize = 32;
  static Value stored(Value value) { return value; }
  static void encode(double value, std::uint8_t *image) {
    store_big_endian(image, std::bit_cast<std::uint64_t>(value));
  }
  static bool decode(const std::uint8_t *image, double *value) {
    *value = std::bit_cast<double>(load_big_endian<std::uint64_t>(image));
    return true;
  }
  static std::size_t format(double value, char *text) {
    return static_cast<std::size_t>(std::to_chars(text, text + kTextSize, value).ptr - text);
  }
};

// A 32-bit word in memory, one byte in an image.
struct BooleanRule {
  using Value = kelp_boolean;
  static constexpr std::uint32_t kImageSize = 1;
  static constexpr std::size_t kTextSize = 5;
  static Value stored(Value value) { return kelp_boolean{value != 0}; }
  static void encode(kelp_boolean value, std::uint8_t *image) { *image = value != 0; }
  static bool decode(const std::uint8_t *image, kelp_boolean *value) {
    *value = *image;
    return *image <= 1;
  }
  static std::size_t format(kelp_boolean value, char *text) {
    return std::string_view(value != 0 ? "true" : "false").copy(text, kTextSize);
  }
};

// The bits of an address of that family; 0 for the unset and for unknown ones.
inline std::uint8_t address_bits(std::uint8_t family) {
  return family == KELP_AF_IPV4 ? 32 : family == KELP_AF_IPV6 ? 128 : 0;
}

// The same address with everything that does not count zeroed: the header, bytes beyond the
// family's, a zone outside IPv6, a prefix length that is not there or too long. An unknown family
// is unset.
inline ip_address canonical_address(const ip_address &address) {
  ip_address canonical{};
  const std::uint8_t bits = address_bits(address.family);
  if (bits == 0) return canonical;
  canonical.family = address.family;
  std::memcpy(canonical.bytes, address.bytes, bits / 8);
  if (address.has_prefix != 0 && address.prefix_length <= bits) {
    canonical.has_prefix = 1;
    canonical.prefix_length = address.prefix_length;
  }
  if (address.family == KELP_AF_IPV6) canonical.scope = address.scope;
  return canonical;
}

// Family, prefix length or 255, sixteen bytes, scope.
struct AddressRule {
  using Value = ip_address;
  static constexpr std::uint32_t kImageSize = 22;
  static constexpr std::size_t kPrefixAt = 1;
  static constexpr std::size_t kBytesAt = 2;
  static constexpr std::size_t kScopeAt = 18;
  static constexpr std::uint8_t kNoPrefix = 255;
  static void encode(const ip_address &address, std::uint8_t *image) {
    const ip_address value = canonical_address(address);
    image[0] = value.family;
    image[kPrefixAt] = value.has_prefix != 0 ? value.prefix_length : kNoPrefix;
    std::memcpy(image + kBytesAt, value.bytes, sizeof value.bytes);
    store_big_endian(image + kScopeAt, value.scope);
  }
  static bool decode(const std::uint8_t *image, ip_address *address) {
    ip_address value{};
    value.family = image[0];
    value.has_prefix = image[kPrefixAt] != kNoPrefix;
    value.prefix_length = image[kPrefixAt];
    std::memcpy(value.bytes, image + kBytesAt, sizeof value.bytes);
    value.scope = load_big_endian<std::uint32_t>(image + kScopeAt);
    *address = canonical_address(value);
    return address->family == value.family && address->has_prefix == value.has_prefix;
  }
};

// Its length, then the bytes.
struct TextRule {
  using Value = kelp_vstring;
  static constexpr std::uint32_t kLengthSize = sizeof(std::uint32_t);
  // None for null.
  static std::string_view bytes_of(const kelp_vstring *text) {
    if (text == nullptr || text->text == nullptr) return {};
    return {text->text, text->length};
  }
  static std::uint64_t image_size(std::string_view bytes) { return kLengthSize + bytes.size(); }
  static void encode(std::string_view bytes, std::uint8_t *image) {
    store_big_endian(image, static_cast<std::uint32_t>(bytes.size()));
    if (!bytes.empty()) std::memcpy(image + kLengthSize, bytes.data(), bytes.size());
  }
};

// False where there is something to say, with nothing done.
template <class Rule>
bool put_value(kelp_handle *handle, std::uint32_t space_id, typename Rule::Value *address,
               typename Rule::Value value, const std::uint32_t *err) {
  if (*err != 0 || address == nullptr) return false;
  write_notify(handle, address, sizeof *address, space_id);
  *address = Rule::stored(value);
  return true;
}

inline bool has_room(const void *buffer, const void *item, std::uint32_t size,
                     std::int32_t length) {
  return buffer != nullptr && item != nullptr && length >= static_cast<std::int32_t>(size);
}

template <class Rule>
bool put_image(void *buffer, const typename Rule::Value *address, std::int32_t length,
               const std::uint32_t *err) {
  if (*err != 0 || !has_room(buffer, address, Rule::kImageSize, length)) return false;
  Rule::encode(*address, static_cast<std::uint8_t *>(buffer));
  return true;
}

template <class Rule>
bool take_image(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                typename Rule::Value *address, std::int32_t length, const std::uint32_t *err) {
  typename Rule::Value value{};
  return *err == 0 && has_room(buffer, address, Rule::kImageSize, length) &&
         Rule::decode(static_cast<const std::uint8_t *>(buffer), &value) &&
         put_value<Rule>(handle, space_id, address, value, err);
}

// --- the frame of an image ----------------------------------------------------------------------

// Pieces of the frame are written under a set error word too.
template <class T>
bool put_piece(void *buffer, const T *item, std::int32_t remaining) {
  if (!has_room(buffer, item, sizeof(T), remaining)) return false;
  store_big_endian(static_cast<std::uint8_t *>(buffer), *item);
  return true;
}

template <class T>
bool take_piece(const void *buffer, T *item, std::int32_t remaining, const std::uint32_t *err) {
  if (*err != 0 || !has_room(buffer, item, sizeof(T), remaining)) return false;
  *item = load_big_endian<T>(static_cast<const std::uint8_t *>(buffer));
  return true;
}

// A jump word leads no further than the buffer.
inline bool take_jump(const void *buffer, std::int32_t *jump, std::int32_t remaining,
                      const std::uint32_t *err) {
  std::uint32_t word = 0;
  if (jump == nullptr || !take_piece(buffer, &word, remaining, err) ||
      word > static_cast<std::uint32_t>(remaining)) {
    return false;
  }
  *jump = static_cast<std::int32_t>(word);
  return true;
}

inline std::uint32_t instance_variant_marshal(kelp_handle *handle, std::uint32_t space_id,
                                              void *buffer, const std::int8_t *variant,
                                              std::int32_t remaining, std::uint32_t *err) {
  if (of(handle) != nullptr && put_piece(buffer, variant, remaining)) [[likely]]
    return sizeof *variant;
  return _kelp_instance_variant_marshal(handle, space_id, buffer, variant, remaining, err);
}

inline std::uint32_t instance_variant_unmarshal(kelp_handle *handle, std::uint32_t space_id,
                                                const void *buffer, std::int8_t *variant,
                                                std::int32_t remaining, std::uint32_t *err) {
  if (of(handle) != nullptr && take_piece(buffer, variant, remaining, err)) [[likely]]
    return sizeof *variant;
  return _kelp_instance_variant_unmarshal(handle, space_id, buffer, variant, remaining, err);
}

inline std::uint32_t instance_obj_flag_marshal(kelp_handle *handle, std::uint32_t space_id,
                                               void *buffer, const std::uint8_t *flags,
                                               std::int32_t remaining, std::uint32_t *err) {
  if (of(handle) != nullptr && put_piece(buffer, flags, remaining)) [[likely]]
    return sizeof *flags;
  return _kelp_instance_obj_flag_marshal(handle, space_id, buffer, flags, remaining, err);
}

inline std::uint32_t instance_obj_flag_unmarshal(kelp_handle *handle, std::uint32_t space_id,
                                                 const void *buffer, std::uint8_t *flags,
                                                 std::int32_t remaining, std::uint32_t *err) {
  if (of(handle) != nullptr && take_piece(buffer, flags, remaining, err)) [[likely]]
    return sizeof *flags;
  return _kelp_instance_obj_flag_unmarshal(handle, space_id, buffer, flags, remaining, err);
}

inline std::uint32_t variant_jump_marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer,
                                          const std::int32_t *jump, std::int32_t remaining,
                                          std::uint32_t *err) {
  const auto *word = reinterpret_cast<const std::uint32_t *>(jump);
  if (of(handle) != nullptr && put_piece(buffer, word, remaining)) [[likely]]
    return sizeof *word;
  return _kelp_variant_jump_marshal(handle, space_id, buffer, jump, remaining, err);
}

inline std::uint32_t variant_jump_unmarshal(kelp_handle *handle, std::uint32_t space_id,
                                            const void *buffer, std::int32_t *jump,
                                            std::int32_t remaining, std::uint32_t *err) {
  if (of(handle) != nullptr && take_jump(buffer, jump, remaining, err)) [[likely]]
    return sizeof *jump;
  return _kelp_variant_jump_unmarshal(handle, space_id, buffer, jump, remaining, err);
}

// The handle word in network order, then id and source as they are.
inline void encode_oid(const kelp_oid &oid, std::uint8_t *image) {
  store_big_endian(image, oid.handle_word);
  std::memcpy(image + sizeof oid.handle_word, oid.id, sizeof oid.id + sizeof oid.source);
}

inline bool put_oid(void *buffer, const kelp_oid *oid, std::int32_t length,
                    const std::uint32_t *err) {
  if (*err != 0 || !has_room(buffer, oid, KELP_WIRE_OID_SIZE, length)) return false;
  encode_oid(*oid, static_cast<std::uint8_t *>(buffer));
  return true;
}

inline bool take_oid(kelp_handle *handle, std::uint32_t space_id, const void *buffer, kelp_oid *oid,
                     std::int32_t length, const std::uint32_t *err) {
  if (*err != 0 || !has_room(buffer, oid, KELP_WIRE_OID_SIZE, length)) return false;
  const auto *at = static_cast<const std::uint8_t *>(buffer);
  write_notify(handle, oid, sizeof *oid, space_id);
  oid->handle_word = load_big_endian<std::uint64_t>(at);
  std::memcpy(oid->id, at + sizeof oid->handle_word, sizeof oid->id);
  std::memcpy(oid->source, at + sizeof oid->handle_word + sizeof oid->id, sizeof oid->source);
  return true;
}

inline std::uint32_t oid_marshal(kelp_handle *handle, std::uint32_t space_id, void *buffer,
                                 const kelp_oid *oid, std::int32_t length, std::uint32_t *err) {
  if (of(handle) != nullptr && put_oid(buffer, oid, length, err)) [[likely]]
    return KELP_WIRE_OID_SIZE;
  return kelplib_oid_marshal(handle, space_id, buffer, oid, length, err);
}

inline std::uint32_t oid_unmarshal(kelp_handle *handle, std::uint32_t space_id, const void *buffer,
                                   kelp_oid *oid, std::int32_t length, std::uint32_t reuse,
                                   std::uint32_t *err) {
  if (of(handle) != nullptr && take_oid(handle, space_id, buffer, oid, length, err)) [[likely]]
    return KELP_WIRE_OID_SIZE;
  return kelplib_oid_unmarshal(handle, space_id, buffer, oid, length, reuse, err);
}

}  // namespace kelp::quick

// The functions that the forms stand for. A process that has put one of its own in front of any of
// them gets all the calls.
// clang-format off
#define KELP_QUICK_NUMBER(each, family)                                                      \
  each(family##_get) each(family##_get_value) each(family##_set_value) each(family##_len)    \
  each(family##_marshal) each(family##_unmarshal) each(family##_print) each(family##_to_xml) \
  each(family##_from_xml)
// Of the numbers that arrays hold.
#define KELP_QUICK_ELEMENT(each, family)                                                     \
  each(family##_create) each(family##_destroy) each(family##_set)
#define KELP_QUICK_FUNCTIONS(each)                                                           \
  each(kelp_clear_last_error) each(xlog_module_init_fn)                                      \
  each(kelp_get_instance_variant) each(kelp_get_instance_obj_flag)                           \
  each(kelp_get_manifested_type_info) each(kelp_get_manifested_type_info_ptr_mem)            \
  each(kelp_domain_lookup_variant) each(kelplib_adjust_variant)                              \
  each(kelplib_type_stats_create_object) each(kelplib_type_stats_destroy_object)             \
  each(kelp_type_info_ptr_get)                                                               \
  KELP_QUICK_NUMBER(each, u_int8) KELP_QUICK_NUMBER(each, u_int16)                           \
  KELP_QUICK_NUMBER(each, u_int32) KELP_QUICK_NUMBER(each, double)                           \
  KELP_QUICK_NUMBER(each, kelp_boolean)                                                      \
  KELP_QUICK_ELEMENT(each, u_int8) KELP_QUICK_ELEMENT(each, u_int32)                         \
  each(kelp_boolean_initialize) each(ip_address_initialize) each(kelp_vstring_initialize)    \
  each(ip_address_get) each(kelp_vstring_get)                                                \
  each(ip_address_marshal) each(kelp_vstring_marshal)                                        \
  each(ip_address_get_oid_count) each(kelp_vstring_get_oid_count)                            \
  each(ip_address_destroy_internal) each(kelp_vstring_destroy_internal)                      \
  each(ip_address_format) each(ip_address_print) each(ip_address_to_xml)                     \
  each(ip_address_from_xml) each(kelp_vstring_from_xml)                                      \
  each(xml_get_element_value) each(xml_get_element_nodecount)                                \
  each(kelp_store_err) each(kelp_describe_err)                                               \
  each(kelp_boolean_set_instance_embedded) each(ip_address_set_instance_embedded)            \
  each(kelp_vstring_set_instance_embedded)                                                   \
  each(kelplib_oid_release_internal) each(kelp_oid_id_is_zero)                               \
  each(_kelp_instance_variant_marshal) each(_kelp_instance_variant_unmarshal)                \
  each(_kelp_instance_obj_flag_marshal) each(_kelp_instance_obj_flag_unmarshal)              \
  each(_kelp_variant_jump_marshal) each(_kelp_variant_jump_unmarshal)                        \
  each(kelplib_oid_len) each(kelplib_oid_marshal) each(kelplib_oid_unmarshal)                \
  each(kelp_print_space) each(kelp_snprintf)                                                 \
  each(start_tag) each(end_tag) each(xml_enum_print)                                         \
  each(__memset_to_buf) each(__memcpy_to_buf)
// clang-format on
