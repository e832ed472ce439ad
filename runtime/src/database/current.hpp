// The calling thread's current database and tenant.
#pragma once

#include <cstdint>

#include "kelp/base.h"

namespace kelp {

// The current database, null for none or for one that was closed since.
kelp_database *current_database();
void set_current_database(kelp_database *database);

// Asked for with each record that is made, found or put into a table, so it is reached without a
// call.
extern __thread std::uint16_t t_tenant __attribute__((tls_model("initial-exec")));

inline std::uint16_t current_tenant() { return t_tenant; }
void set_current_tenant(std::uint16_t tenant);

}  // namespace kelp
