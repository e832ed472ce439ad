// The calling thread's current database and tenant, as modules and programs see them.
#include "database/current.hpp"

#include "database/database.hpp"

extern "C" void kelp_database_make_current(kelp_database *database) {
  kelp::set_current_database(database);
}

extern "C" kelp_database *kelp_database_current(void) { return kelp::current_database(); }

extern "C" uint32_t kelplib_db_is_shared(void) {
  const kelp_database *database = kelp::current_database();
  return database != nullptr && database->marked_shared ? 1 : 0;
}

extern "C" void kelp_tenant_set(uint16_t tenant) { kelp::set_current_tenant(tenant); }

extern "C" void mt_get_tenant_id(uint16_t *tenant) {
  if (tenant != nullptr) *tenant = kelp::current_tenant();
}
