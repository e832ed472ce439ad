// How the runtime reports failures: through error words to modules, through kelp_error to programs.
// No exception leaves the library: what may run out of memory goes through without_exceptions.
#pragma once

#include <cstdint>
#include <new>

#include "kelp/core.h"
#include "kelp/embed.h"

namespace kelp {

// A non-zero error word on entry: the operation is to do nothing.
inline bool is_set(const std::uint32_t *err) { return err != nullptr && *err != 0; }

// Sets the word and the handle's last error together. found: what was found and expected, in words,
// or null; function: the one that failed.
void raise(kelp_handle *handle, std::uint32_t *err, std::uint32_t code, const char *found = nullptr,
           const char *function = __builtin_FUNCTION());

// Runs work; false when memory ran out in it.
template <typename Work>
bool without_exceptions(Work &&work) noexcept {
  try {
    work();
    return true;
  } catch (const std::bad_alloc &) {
    return false;
  }
}

// Fills in an error, cut to its text, and gives the code.
std::int32_t fail(kelp_error *error, std::int32_t code, const char *format, ...) KELP_PRINTF(3, 4);

// Marks an error as none, and gives 0.
std::int32_t succeed(kelp_error *error);

}  // namespace kelp
