// The thread's current database, for the rules that ask without naming one, and its tenant.
#include "database/current.hpp"

#include "database/database.hpp"
#include "kelp/quick.hpp"

// Set with nearly every operation, so it must be reached without a call.
__thread std::uint64_t kelp_thread_database = 0;

namespace kelp {

__thread std::uint16_t t_tenant = 0;

kelp_database *current_database() { return open_database(kelp_thread_database); }

void set_current_database(kelp_database *database) {
  kelp_thread_database = database == nullptr ? 0 : database->serial;
}

void set_current_tenant(std::uint16_t tenant) { t_tenant = tenant; }

}  // namespace kelp
