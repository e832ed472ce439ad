// Flag objects: named bits in one byte, addressed by bit number. Called by the forwarders of the
// flag sets. Promises, in order: an earlier failure stands; a bit that the object's variant
// does not have fails with 43; each store is announced first, and the other bits keep their values.
//
// Reading and writing one byte takes no lock: writers of different bits of one object must be put
// in order by the caller.
#pragma once

#include <array>

#include "module/failure.hpp"
#include "module/object.hpp"
#include "module/operation.hpp"
#include "types/type_record_access.hpp"

namespace harbor::flag_set {

inline constexpr std::array operations{
    Operation{
        .suffix = "get",
        .result = "$T *",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object",
        .rule = "flag_set::get",
        .brief = "Gives object.",
    },
    Operation{
        .suffix = "in_range",
        .result = "uint32_t",
        .arguments = "uint32_t bit",
        .rule = "flag_set::in_range",
        .brief = "Gives 1 when $type has a flag with this bit number, else 0.",
    },
    Operation{
        .suffix = "compare",
        .result = "int32_t",
        .arguments = "const $T *a, const $T *b",
        .rule = "flag_set::compare",
        .brief = "Orders two objects by their byte, taken as unsigned; null stands below all. Only "
                 "the sign of the result means something.",
    },
    Operation{
        .suffix = "hash",
        .result = "uint32_t",
        .arguments = "const $T *object, uint32_t seed",
        .rule = "flag_set::hash",
        .brief = "Gives the hash of the byte, which is the next seed; a null object gives the "
                 "seed.",
    },
    Operation{
        .suffix = "get_value",
        .result = "uint32_t",
        .arguments =
            "kelp_handle *handle, uint32_t space_id, const $T *object, uint32_t bit, uint32_t *err",
        .rule = "flag_set::get_value",
        .brief = "Gives the mask of the flag when it is set, 0 when it is clear. Test for non-zero "
                 "only: the mask of bit 7 is 0xFFFFFF80. The last error is not cleared.",
        .errors = "KELP_ERR_EPOCH for a null object or a bit that $type does not have; 0 then",
    },
    Operation{
        .suffix = "get_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, const $T *object, uint32_t bit",
        .rule = "flag_set::get_cr",
        .brief = "As $type_get_value, with cr_err as the error word.",
        .errors = "as $type_get_value, in cr_err",
    },
    Operation{
        .suffix = "set",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *destination, const $T *source, "
                     "uint32_t *err",
        .rule = "flag_set::set",
        .brief = "Copies source over destination, all 24 bytes: destination gets the variants, the "
                 "flags and the type record of source too. No variant is looked at. Neither may be "
                 "null.",
        .ownership = "source stays the caller's",
    },
    Operation{
        .suffix = "set_value",
        .result = "void",
        .arguments = "kelp_handle *handle, uint32_t space_id, $T *object, uint32_t bit, uint32_t "
                     "on, uint32_t *err",
        .rule = "flag_set::set_value",
        .brief = "Sets the flag when on is not 0, else clears it; the other flags keep their "
                 "values. Passes silently over a null object, and over a bit that $type does not "
                 "have on an object of a later variant.",
        .errors = "KELP_ERR_EPOCH for a bit that $type does not have on an object of variant 0; "
                  "the object is unchanged then",
    },
    Operation{
        .suffix = "set_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $T *object, uint32_t bit, uint32_t on",
        .rule = "flag_set::set_cr",
        .brief = "As $type_set_value, in the handle's cr_space_id. Gives cr_err as it is "
                 "afterwards.",
        .errors = "as $type_set_value, in cr_err",
    },
    Operation{
        .suffix = "is_valid_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, uint32_t bit",
        .rule = "flag_set::is_valid_cr",
        .brief = "Gives 0 when $type does not have the bit and the handle's domain is at variant "
                 "0, else 1.",
        .errors = "those of kelp_domain_lookup_variant, in cr_err",
    },
};
inline constexpr Family family{"flag_set", operations};

// --- facts ------------------------------------------------------------------------------------

template <const model::FlagSet &S>
constexpr std::uint32_t bit_count() {
  return static_cast<std::uint32_t>(S.members.size());
}

// Required: for bit 7 the sign spreads through the mask and the byte, and the result is 0xFFFFFF80.
constexpr std::uint32_t masked(std::uint8_t flags, std::uint32_t bit) {
  const auto mask = static_cast<std::int32_t>(0x1000000u << (bit & 7)) >> 24;
  return static_cast<std::uint32_t>(mask & static_cast<std::int8_t>(flags));
}

// --- the rules --------------------------------------------------------------------------------

// in_set: whether the set has the bit.
std::int32_t compare_bytes(const FlagObject *a, const FlagObject *b);
std::uint32_t hash_byte(const FlagObject *object, std::uint32_t seed);
std::uint32_t read(const model::FlagSet &set, kelp_handle *handle, const FlagObject *object,
                   std::uint32_t bit, bool in_set, std::uint32_t *err);
void copy_whole(kelp_handle *handle, std::uint32_t space_id, void *destination, const void *source,
                std::uint32_t *err);

// Announces and stores the byte with one bit set or cleared.
void store_bit(kelp_handle *handle, std::uint32_t space_id, FlagObject *object, std::uint32_t bit,
               bool on);

template <const model::FlagSet &S>
void *get(kelp_handle *, std::uint32_t, void *object) {
  return object;
}

template <const model::FlagSet &S>
std::uint32_t in_range(std::uint32_t bit) {
  return bit < bit_count<S>() ? 1 : 0;
}

template <const model::FlagSet &S>
std::int32_t compare(const void *a, const void *b) {
  return compare_bytes(static_cast<const FlagObject *>(a), static_cast<const FlagObject *>(b));
}

template <const model::FlagSet &S>
std::uint32_t hash(const void *object, std::uint32_t seed) {
  return hash_byte(static_cast<const FlagObject *>(object), seed);
}

template <const model::FlagSet &S>
std::uint32_t get_value(kelp_handle *handle, std::uint32_t, const void *object, std::uint32_t bit,
                        std::uint32_t *err) {
  return read(S, handle, static_cast<const FlagObject *>(object), bit, in_range<S>(bit) != 0, err);
}

template <const model::FlagSet &S>
std::uint32_t get_cr(kelp_handle *handle, const void *object, std::uint32_t bit) {
  return get_value<S>(handle, handle->cr_space_id, object, bit, &handle->cr_err);
}

template <const model::FlagSet &S>
void set(kelp_handle *handle, std::uint32_t space_id, void *destination, const void *source,
         std::uint32_t *err) {
  copy_whole(handle, space_id, destination, source, err);
}

// Required: a bit that the set does not have is silently passed over on an object of a variant
// beyond the set's own. Bits of variant 0 are set without a look at the object's variant.
template <const model::FlagSet &S>
void set_value(kelp_handle *handle, std::uint32_t space_id, void *object, std::uint32_t bit,
               std::uint32_t on, std::uint32_t *err) {
  if (!begin(handle, err)) return;
  type_record_access::adjust_variant<S>(handle, space_id, object, err);
  if (bit >= S.limits[0] && type_record_access::refuses_member<S>(
                                bit, kelp::quick::get_instance_variant(handle, object, 0, 1))) {
    return fail_variant(handle, err, About(S.name),
                        "found the bit %u, expected one that the object's variant has", bit);
  }
  if (object == nullptr || in_range<S>(bit) == 0) return;
  store_bit(handle, space_id, static_cast<FlagObject *>(object), bit, on != 0);
}

template <const model::FlagSet &S>
std::uint32_t set_cr(kelp_handle *handle, void *object, std::uint32_t bit, std::uint32_t on) {
  set_value<S>(handle, handle->cr_space_id, object, bit, on, &handle->cr_err);
  return handle->cr_err;
}

template <const model::FlagSet &S>
std::uint32_t is_valid_cr(kelp_handle *handle, std::uint32_t bit) {
  const std::int8_t variant =
      kelp::quick::domain_lookup_variant(handle, type_record<S>, &handle->cr_err);
  return type_record_access::refuses_member<S>(bit, variant) ? 0 : 1;
}

}  // namespace harbor::flag_set
