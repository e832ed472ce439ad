// Looking through a store for a program.
#include "store/check.hpp"

#include <cerrno>
#include <cinttypes>

#include "base/failure.hpp"
#include "database/database.hpp"

extern "C" int32_t kelp_database_check(kelp_database *database, kelp_check_finding finding,
                                       void *context, kelp_error *error) {
  constexpr const char *kFunction = "kelp_database_check";
  if (database == nullptr || database->store == nullptr) {
    return kelp::fail(error, KELP_ERR_INVALID, "%s: expected a database in a file", kFunction);
  }
  uint64_t findings = 0;
  const bool done = kelp::without_exceptions([&] {
    findings = kelp::store::check(database->store->view(), [&](const std::string &text) {
      if (finding != nullptr) finding(context, text.c_str());
    });
  });
  if (!done) return kelp::fail(error, KELP_ERR_NO_MEMORY, "%s: no memory", kFunction);
  if (findings == 0) return kelp::succeed(error);
  return kelp::fail(error, EIO, "%s: store '%s': %" PRIu64 " things are wrong in it", kFunction,
                    database->name.c_str(), findings);
}
