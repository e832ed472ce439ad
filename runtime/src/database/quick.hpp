// What decides whether the small work of a handle may be done inline.
#pragma once

#include "database/handle_state.hpp"

namespace kelp {

// Whether the functions that the inline forms stand for are the runtime's own for all who call them
// in this process. Looked up once.
bool are_own_functions();

// Who hears of the handle's writes, or what its domain fixes, has changed.
void settle_quick(kelp_handle_state &state);

}  // namespace kelp
