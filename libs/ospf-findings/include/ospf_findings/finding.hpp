// One thing that is wrong, or may be: how bad it is, what it is, where, what shows it and what to
// look at.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ospf_events/event.hpp"
#include "ospf_routes/address.hpp"

namespace ospf_findings {

// notice: sound, and yet worth a look. warning: does harm, or will. error: routes are wrong or
// missing.
enum class Severity : std::uint8_t { notice, warning, error };
const char *name_of(Severity severity);

enum class Kind : std::uint8_t {
  one_way_link,
  interface_mismatch,
  hello_one_way,
  duplicate_router_id,
  duplicate_address,
  databases_differ,
  virtual_link_without_transit,
  split_area,
  area_without_backbone,
  unreachable_forwarding_address,
  equal_externals,
  unused_range,
  overlapping_ranges,
  flapping_lsa,
  sequence_near_end,
  wrong_checksum,
  max_age_storm,
  incomplete_database,
  count_,
};
inline constexpr std::size_t kind_count = static_cast<std::size_t>(Kind::count_);

// Stable, as in the enumeration.
const char *name_of(Kind kind);
// What to look at when one is found.
const char *advice_for(Kind kind);

struct Finding {
  Severity severity = Severity::warning;
  Kind kind = Kind::one_way_link;
  std::uint8_t version = 0;  // of OSPF
  std::uint8_t instance = 0;
  std::optional<ospf_routes::AreaId> area;
  std::vector<ospf_routes::RouterId> routers;
  std::string where;  // a link, a prefix, an interface
  std::string field;  // of interface_mismatch: what differs
  std::string what;   // one sentence
  std::vector<std::string> lsas;
  std::vector<ospf_events::PacketName> packets;
};

// The worst first; those of one severity by kind, instance, area and place.
void sort_findings(std::vector<Finding> &findings);

}  // namespace ospf_findings
