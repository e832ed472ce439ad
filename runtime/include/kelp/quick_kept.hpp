// What a library keeps of its types' objects under a store, where these point at the store's own
// copies of type records. The runtime owns it, since it knows when those may be others.
#pragma once

#include <kelp/handle.h>

extern "C" {

// The place where a library keeps what it made of owner under this handle: null at first, and again
// once the store's copies of type records may be others than when it was put there. What is put
// there comes from malloc and is the runtime's to free. owner is an address that nothing else ever
// has, also when the library was unloaded since.
//
// Gives null, no place, unless a store alone hears of the handle's writes and counters, no hook of
// it is another's, and it holds a lock; and without memory. A place holds until the next call.
KELP_API void **kelp_quick_kept(kelp_handle *handle, const void *owner);

}  // extern "C"
