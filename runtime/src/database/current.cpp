// The thread's current database, for the rules that ask without naming one, and its tenant.
#include "database/current.hpp"

#include "database/database.hpp"

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

std::uint16_t current_tenant() { return t_tenant; }

void set_current_tenant(std::uint16_t tenant) { t_tenant = tenant; }

}  // namespace kelp
