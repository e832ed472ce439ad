// The functions and pools that a handle carries, by which modules reach the memory and the type
// records of its database.
#pragma once

#include "database/handle_state.hpp"

namespace kelp {

void set_hooks(kelp_handle_state &state, kelp_database *database);

}  // namespace kelp
