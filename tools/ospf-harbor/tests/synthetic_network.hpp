// Databases made up by a test: LSAs as a decoder gives them, put into the tables as a load does.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_tables/session.hpp"

namespace synthetic {

std::uint32_t address(const std::string &dotted);

// Links of OSPFv2 router LSAs.
struct Link {
  std::uint8_t type;
  std::string id;
  std::string data;
  std::uint16_t metric;
};

class Network {
 public:
  // Flags are those of the router LSA: B 1, E 2, V 4.
  ospf_decode::LsaV2 &router(std::uint32_t area, const std::string &id, std::uint8_t flags,
                             const std::vector<Link> &links);
  ospf_decode::LsaV2 &network(std::uint32_t area, const std::string &address,
                              const std::string &mask, const std::string &designated_router,
                              const std::vector<std::string> &attached);
  // Any other, with at least the type, link-state ID and advertising router of its header filled.
  ospf_decode::LsaV2 &add(std::uint32_t area, ospf_decode::LsaV2 lsa);
  ospf_decode::LsaV3 &add(std::uint32_t area, ospf_decode::LsaV3 lsa);

  // Fills the tables: one instance of each version that has LSAs, all in area scope.
  void load(ospf_tables::Session &session) const;

 private:
  template <typename Lsa>
  using Areas = std::map<std::uint32_t, std::map<std::uint16_t, std::vector<Lsa>>>;
  template <typename Lsa>
  static void load(ospf_tables::Session &session, const Areas<Lsa> &areas, bool ipv4);

  Areas<ospf_decode::LsaV2> v2_;
  Areas<ospf_decode::LsaV3> v3_;
};

// Of `areas` areas around a backbone ring, with as many routers altogether, point-to-point links
// within areas and a few networks; every cost of another number.
Network large_network(std::size_t routers, std::size_t areas);

}  // namespace synthetic
