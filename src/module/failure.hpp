// How a failure reaches the caller: the error word and the handle's last error, together, and words
// about it for people. Words are made when something has failed, and only then.
#pragma once

#include <kelp/core.h>

#include <cstdint>
#include <kelp/quick.hpp>
#include <string_view>

#include "model/schema.hpp"

namespace harbor {

// What a failure is about: a type, a field of it, or a table, and the rule that failed.
struct About {
  std::string_view type;
  std::string_view field;
  const char *rule;

  explicit About(std::string_view its_type, const char *its_rule = __builtin_FUNCTION())
      : type(its_type), rule(its_rule) {}
  // Looks for the structure of the field.
  explicit About(const model::Field &its_field, const char *its_rule = __builtin_FUNCTION());
};

// A failure that an operation detects itself. format: what was found and expected, or null.
[[gnu::cold, gnu::format(printf, 5, 6)]] void fail(kelp_handle *handle, std::uint32_t code,
                                                   std::uint32_t *err, const About &about,
                                                   const char *format, ...);
// One whose reason stands with the runtime's words: what the runtime refused to allocate.
[[gnu::cold]] void fail(kelp_handle *handle, std::uint32_t code, std::uint32_t *err,
                        const About &about);

// A value or a field that a variant does not hold. The runtime decides what the word then holds.
[[gnu::cold, gnu::format(printf, 4, 5)]] void fail_variant(kelp_handle *handle, std::uint32_t *err,
                                                           const About &about, const char *format,
                                                           ...);

// A code that the error word holds already, stored as the handle's last error.
[[gnu::cold]] void store_failure(kelp_handle *handle, std::uint32_t code, const About &about,
                                 const char *doing);

// Says what a failure is about that a call of the runtime met, unless that is known.
[[gnu::cold]] void name_failure(kelp_handle *handle, const About &about);

// The opening of every operation that may fail: false when an earlier failure stands.
inline bool begin(kelp_handle *handle, const std::uint32_t *err) {
  if (*err != 0) return false;
  kelp::quick::clear_last_error(handle);
  return true;
}

}  // namespace harbor
