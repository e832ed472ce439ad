// The link-state databases of the tables as a list of LSAs, each with the instance, area and
// interface that it belongs to. Called by whoever lists or draws databases; changes nothing.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ospf_tables/lsa_view.hpp"

namespace ospf_tables {

struct LsdbEntry {
  std::string kind;      // of its row, as a path calls it
  std::string path;      // of its row
  std::string instance;  // key of the instance's row, such as "ipv4,10.0.0.1"
  std::uint32_t router_id = 0;
  std::optional<std::uint32_t> area;     // empty for LSAs of the whole AS
  std::optional<std::string> interface;  // of LSAs of one link
  std::optional<Ages> ages;              // what the LSA's age is as of, where that is told
  LsaView lsa;
  std::optional<Site> site = {};  // whose it is, where that is to be named
};

// By instance; in each by area, and the AS as the last; in each area what belongs to the area
// before what belongs to a link; in these by LS type, link-state ID and advertising router. Throws
// LibraryFailure.
std::vector<LsdbEntry> read_lsdb(Session &session);

}  // namespace ospf_tables
