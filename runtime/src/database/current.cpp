// The thread's current database, for the rules that ask without naming one, and its tenant.
#include "database/current.hpp"

#include "database/database.hpp"
#include "database/handle_state.hpp"
#include "kelp/embed.h"

namespace kelp {

namespace {

// Set with nearly every operation, so it must be reached without a call.
__attribute__((tls_model("initial-exec"))) thread_local kelp_database *t_database = nullptr;
__attribute__((tls_model("initial-exec"))) thread_local std::uint64_t t_serial = 0;
thread_local std::uint16_t t_tenant = 0;

}  // namespace

kelp_database *current_database() {
  return t_database != nullptr && database_is_open(t_serial) ? t_database : nullptr;
}

void set_current_database(kelp_database *database) {
  t_database = database;
  t_serial = database == nullptr ? 0 : database->serial;
}

}  // namespace kelp

extern "C" void kelp_database_make_current(kelp_database *database) {
  kelp::set_current_database(database);
}

extern "C" kelp_database *kelp_database_current(void) { return kelp::current_database(); }

extern "C" uint32_t kelplib_db_is_shared(void) {
  const kelp_database *database = kelp::current_database();
  return database != nullptr && database->marked_shared ? 1 : 0;
}

extern "C" void kelp_tenant_set(uint16_t tenant) { kelp::t_tenant = tenant; }

extern "C" void mt_get_tenant_id(uint16_t *tenant) {
  if (tenant != nullptr) *tenant = kelp::t_tenant;
}
