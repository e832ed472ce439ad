// The optional handlers of a table, as addresses that are null where the application defines none.
// The emitter fills one set for each table from weak references; its members are the rows of the
// handlers family, in their order.
#pragma once

#include <kelp/table.h>

#include <cstdint>

namespace harbor {

using EventHandler = std::uint64_t (*)(kelp_handle *, std::uint32_t, void *context, void *record,
                                       std::uint32_t *err);
using DmEventHandler = std::uint64_t (*)(kelp_handle *, std::uint32_t, void *record,
                                         std::uint32_t *err);
using GroupingHandler = std::uint64_t (*)(kelp_handle *, std::uint32_t, void *arg_a,
                                          std::uint32_t *err, void *arg_b, void *arg_c);
using FreeHandler = std::uint64_t (*)(kelp_handle *, std::uint32_t, void *arg_a,
                                      std::uint32_t arg_u32, std::uint32_t *err, void *arg_b);

struct HandlerAddresses {
  EventHandler on_create;
  EventHandler on_modify;
  EventHandler on_delete;
  DmEventHandler on_create_dm;
  DmEventHandler on_delete_dm;
  GroupingHandler on_grouping;
  FreeHandler on_free;
};

template <const auto &table>
inline constexpr HandlerAddresses handlers_of{};

}  // namespace harbor
