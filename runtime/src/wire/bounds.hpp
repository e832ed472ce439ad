// The test that stands before every piece of an image, read or written: arguments there, and room
// for the whole piece. The error word's own rule is the caller's, as it differs: pieces of the
// frame are written under a set word too, and must not replace the first failure then.
#pragma once

#include <cinttypes>
#include <cstdio>

#include "base/failure.hpp"

namespace kelp {

// False with 22 or 90 in the error word, unless that holds an earlier failure already.
inline bool piece_fits(kelp_handle *handle, const void *buffer, const void *item, uint64_t needed,
                       int32_t length, uint32_t *err, const char *function = __builtin_FUNCTION()) {
  uint32_t code = 0;
  if (buffer == nullptr || item == nullptr) {
    code = KELP_ERR_INVALID;
  } else if (length < 0 || needed > static_cast<uint64_t>(length)) {
    code = KELP_ERR_NO_ROOM;
  }
  if (code == 0) return true;
  if (*err != 0) return false;
  char found[80];
  if (code == KELP_ERR_NO_ROOM) {
    std::snprintf(found, sizeof found, "found %" PRId32 " bytes of buffer, expected %" PRIu64,
                  length, needed);
  } else {
    std::snprintf(found, sizeof found, "found a null %s", buffer == nullptr ? "buffer" : "value");
  }
  raise(handle, err, code, found, function);
  return false;
}

}  // namespace kelp
