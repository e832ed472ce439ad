// The functions and pools that a handle carries, by which modules reach the memory and the type
// records of its database.
#pragma once

#include "database/handle_state.hpp"

namespace kelp {

void set_hooks(kelp_handle_state &state, kelp_database *database);

// Whether the handle's functions for type records, writes and counters are those that it was given.
bool has_own_hooks(const kelp_handle_state &state);

}  // namespace kelp
