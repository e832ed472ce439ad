// The LSAs that show a finding, by their names. What the finders of databases share.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "ospf_findings/finding.hpp"
#include "ospf_routes/routes.hpp"
#include "ospf_tables/lsdb_view.hpp"

namespace ospf_findings {

// "Router 10.0.0.1 of 10.0.0.1 in area 0.0.0.0"; an area of "AS" has none.
std::string lsa_name(std::uint32_t version, std::uint16_t type, std::uint32_t id,
                     std::uint32_t adv_router, std::optional<std::uint32_t> area);
std::string lsa_name(const ospf_tables::LsdbEntry &entry);

// What an instance of the protocol is known by. Instances that captures gave tell the instance ID
// in their router ID.
std::uint8_t instance_id_of(const ospf_tables::LsdbEntry &entry);

class Evidence {
 public:
  Evidence(const ospf_routes::Database &database, const std::vector<ospf_tables::LsdbEntry> &lsas);

  // Those of a router, of the types, in the area; nothing when the tables have none.
  std::vector<std::string> of(std::optional<ospf_routes::AreaId> area, ospf_routes::RouterId router,
                              std::uint16_t type_v2, std::uint16_t type_v3,
                              std::optional<std::uint32_t> id = std::nullopt) const;
  // The same, of a prefix.
  std::vector<std::string> of_prefix(std::optional<ospf_routes::AreaId> area,
                                     ospf_routes::RouterId router, std::uint16_t type_v2,
                                     std::uint16_t type_v3,
                                     const ospf_routes::Prefix &prefix) const;

 private:
  template <typename Meets>
  std::vector<std::string> those(std::optional<ospf_routes::AreaId> area,
                                 ospf_routes::RouterId router, std::uint16_t type_v2,
                                 std::uint16_t type_v3, const Meets &meets) const;

  const ospf_routes::Database &database_;
  std::multimap<ospf_routes::RouterId, const ospf_tables::LsdbEntry *> by_router_;
};

Finding finding(Severity severity, Kind kind, const ospf_routes::Database &database,
                std::optional<ospf_routes::AreaId> area);

void append(std::vector<std::string> &to, std::vector<std::string> from);

// The finders, each of one subject.
struct Subject {
  const ospf_routes::Database &database;
  const ospf_routes::Calculator &calculator;
  const Evidence &evidence;
};
void find_in_links(const Subject &subject, std::vector<Finding> &findings);
void find_in_areas(const Subject &subject, std::vector<Finding> &findings);
void find_in_prefixes(const Subject &subject, std::vector<Finding> &findings);

// Which routers of an area reach each other in it, by links that both ends tell of.
class Parts {
 public:
  explicit Parts(const ospf_routes::Area &area);

  std::size_t count() const { return members_.size(); }
  const std::vector<std::vector<ospf_routes::RouterId>> &members() const { return members_; }
  bool connects(ospf_routes::RouterId a, ospf_routes::RouterId b) const;
  // A router of the part tells of a link out of it that is not told of from there: it may have left
  // without a word, and its LSAs are what is left of it.
  bool is_stale(std::size_t part) const { return stale_[part]; }
  // The links that only their first router tells of.
  struct OneWay {
    ospf_routes::RouterId from = 0;
    ospf_routes::RouterId to = 0;  // or
    std::uint32_t network = 0;     // the link-state ID of a network, whose LSA is `to`'s
    bool is_network = false;       // the network's LSA lists `from`, which has no link to it
    bool is_virtual = false;
  };
  const std::vector<OneWay> &one_way() const { return one_way_; }

 private:
  std::map<ospf_routes::RouterId, std::size_t> part_of_;
  std::vector<std::vector<ospf_routes::RouterId>> members_;
  std::vector<bool> stale_;
  std::vector<OneWay> one_way_;
};

}  // namespace ospf_findings
