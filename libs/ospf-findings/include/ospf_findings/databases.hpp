// What link-state databases show by themselves, whatever they were read from.
#pragma once

#include <vector>

#include "ospf_findings/finding.hpp"
#include "ospf_routes/routes.hpp"
#include "ospf_tables/lsdb_view.hpp"

namespace ospf_findings {

// Seconds that routers may take to tell each other of an LSA, and whoever asks them to ask all:
// what is younger and differs may still be on its way.
inline constexpr std::uint16_t on_its_way = 300;

// Of one instance. The LSAs of the tables name what shows a finding; a database that a what-if has
// changed may have findings that none of them shows.
std::vector<Finding> findings_of(const ospf_routes::Database &database,
                                 const ospf_routes::Calculator &calculator,
                                 const std::vector<ospf_tables::LsdbEntry> &lsas);

// Of the LSAs one by one: sequence numbers that are about to end, octets that their checksum does
// not prove; and databases of several routers that are not one.
std::vector<Finding> findings_of(const std::vector<ospf_tables::LsdbEntry> &lsas);

}  // namespace ospf_findings
