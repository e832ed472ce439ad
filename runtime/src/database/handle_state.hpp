// A handle with all that the runtime keeps for it. kelp_handle_create makes it and
// kelp_handle_destroy ends it; the public handle is its first member and points back at it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/pool.hpp"
#include "database/kept.hpp"
#include "kelp/embed.h"
#include "kelp/quick.hpp"
#include "parts/domain.hpp"
#include "parts/feed.hpp"

struct kelp_handle_state {
  kelp_handle handle = {};
  kelp_database *database = nullptr;
  kelp_quick quick = {};
  kelp::Pool pool;
  kelp::Domain domain;
  kelp::Kept kept;
  decltype(kelp_handle::write_notify) own_write_notify = nullptr;
  decltype(kelp_handle::counter_notify) own_counter_notify = nullptr;
  kelp_sttr sttr = {};
  // Words about the last error; empty for none.
  char error_subject[128] = "";
  char error_text[256] = "";
  std::int32_t tenant = KELP_TENANT_UNCHANGED;
  std::unique_ptr<std::byte[]> work_space;  // made when first asked for
  std::uint32_t work_space_size = 0;
  kelp::Author author;
  std::uint32_t heard = 0;  // the commits when it had a lock last
};

namespace kelp {

inline kelp_database &database_of(kelp_handle *handle) { return *handle->state->database; }

}  // namespace kelp
