// How a failure reaches the caller: the error word and the handle's last error, together.
#pragma once

#include <kelp/core.h>

#include <cstdint>

namespace harbor {

// A failure that an operation detects itself.
inline void fail(kelp_handle *handle, std::uint32_t code, std::uint32_t *err) {
  *err = code;
  kelp_store_err(handle, code);
}

// A value or a field that a variant does not hold. The runtime decides what the word then holds.
inline void fail_variant(kelp_handle *handle, std::uint32_t *err) {
  kelp_store_epoch_err(handle, KELP_ERR_EPOCH, err);
}

// The opening of every operation that may fail: false when an earlier failure stands.
inline bool begin(kelp_handle *handle, const std::uint32_t *err) {
  if (*err != 0) return false;
  kelp_clear_last_error(handle);
  return true;
}

}  // namespace harbor
