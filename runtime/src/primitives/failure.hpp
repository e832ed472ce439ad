/* How an operation of the primitives, the wire pieces and XML fails: the code goes into the caller's
 * error word and becomes the handle's last error, both together and once. Nothing else in these
 * folders sets an error word or stores an error. */
#ifndef KELP_PRIMITIVES_FAILURE_HPP
#define KELP_PRIMITIVES_FAILURE_HPP

#include <kelp/core.h>

namespace kelp {

inline void Fail(kelp_handle *handle, uint32_t *err, uint32_t code) {
  *err = code;
  kelp_store_err(handle, code);
}

}  // namespace kelp

#endif
