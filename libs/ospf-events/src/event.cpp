#include "ospf_events/event.hpp"

namespace ospf_events {

const char *name_of(EventKind kind) {
  constexpr const char *names[] = {
      "neighbor_up", "neighbor_down",    "mismatch",      "dr_change",      "lsa_new",
      "lsa_changed", "lsa_refreshed",    "lsa_flushed",   "lsa_aged_out",   "max_age_storm",
      "restart",     "graceful_restart", "sequence_wrap", "retransmission", "bad_checksum"};
  static_assert(std::size(names) == event_kind_count);
  return names[static_cast<std::size_t>(kind)];
}

}  // namespace ospf_events
