// One thing that happened at one time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ospf_decode/lsdb.hpp"

namespace ospf_events {

enum class EventKind : std::uint8_t {
  neighbor_up,
  neighbor_down,
  mismatch,
  dr_change,
  lsa_new,
  lsa_changed,
  lsa_refreshed,
  lsa_flushed,
  lsa_aged_out,
  max_age_storm,
  restart,
  graceful_restart,
  sequence_wrap,
  retransmission,
  bad_checksum,
  count_,
};

inline constexpr std::size_t event_kind_count = static_cast<std::size_t>(EventKind::count_);

// Stable, as in the enumeration.
const char *name_of(EventKind kind);

// A packet by its number in its capture, from 1; number 0 stands for none, as when a timer ends.
struct PacketName {
  std::uint32_t source = 0;
  std::uint64_t number = 0;
};

struct Event {
  ospf_decode::Time time = 0;
  EventKind kind = EventKind::neighbor_up;
  PacketName packet;
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  std::optional<std::uint32_t> area;
  std::vector<std::uint32_t> routers;  // whose it is comes first
  std::string where;                   // interfaces; empty for LSAs
  std::string why;                     // one stable word, or none
  std::string text;                    // the sentence
  std::optional<ospf_decode::LsdbKey> lsa;
  std::uint32_t sequence = 0;  // of the LSA
};

}  // namespace ospf_events
