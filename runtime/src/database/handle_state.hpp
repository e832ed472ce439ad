// A handle with all that the runtime keeps for it. kelp_handle_create makes it and
// kelp_handle_destroy ends it; the public handle is the first of it and points back at it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "base/pool.hpp"
#include "database/kept.hpp"
#include "kelp/embed.h"
#include "kelp/quick.hpp"
#include "parts/domain.hpp"
#include "parts/feed.hpp"

struct kelp_handle_state : kelp_quick_handle {
  kelp_database *database = nullptr;
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

  // Memory of a store that the running transaction has put by or made, by its place: what the
  // inline form knows of was written last, and trees are written node by node.
  using PutBy = std::span<const std::byte>;
  static constexpr std::size_t kPutBy = 32;
  PutBy put_by[kPutBy];

  PutBy &put_by_around(const void *address) {
    constexpr std::uintptr_t kStep = 256;
    return put_by[reinterpret_cast<std::uintptr_t>(address) / kStep % kPutBy];
  }
  void forget_put_by() {
    quick.put_by_size = 0;
    for (PutBy &each : put_by) each = {};
  }
};

namespace kelp {

inline kelp_database &database_of(kelp_handle *handle) { return *handle->state->database; }

}  // namespace kelp
