// With HARBOR_INLINE in the environment the handles of stores do the runtime's small work inline,
// as they do in programs that replace no function of it, and as no handle of this program would.
// What looks at calls or makes them fail has every call made all the same.
#pragma once

#include <kelp/handle.h>

namespace harness {

// A handle of a store has been made, or is about to end.
void enter_handle(kelp_handle *handle);
void forget_handle(kelp_handle *handle);

// From the first to the last of these every call is made.
void begin_seeing_calls();
void end_seeing_calls();

}  // namespace harness
