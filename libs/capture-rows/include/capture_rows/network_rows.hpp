// What a capture shows, as instances of the tree: areas, the interfaces and neighbours of all
// routers that were heard, and the databases as they stood at the last packet.
//
// The one who listened is no router, so an instance stands for the whole network as heard. Its
// router ID is 0.0.0.0, and 0.255.VERSION.ID when the packets have an instance ID other than 0; the
// address family is IPv4 for OSPFv2 and for OSPFv3 instances 64 to 127 (RFC 5838), else IPv6. An
// interface is named ROUTER@ADDRESS, with %ID for OSPFv3's interface ID, .VLAN behind a tag and
// >PEER for a virtual link.
//
// Databases. Area scope: the area's area_scope_lsas. AS scope: the instance's link_scope_lsas.
// Link scope: link_scope_lsas of the interface of the link that was heard first. OSPFv2's opaque
// LSAs of area scope (type 10): only link-scope rows have fields for what they say, and only
// interfaces keep those of areas apart, so they are in link_scope_lsas of the interface of the area
// that was heard first. Each LSA stands once. LSAs that routers hold no more are left out.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "ospf_decode/network.hpp"
#include "ospf_tables/network.hpp"
#include "ospf_tables/session.hpp"

namespace capture_rows {

struct LoadedInstance {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  std::size_t areas = 0;
  std::size_t interfaces = 0;
  std::size_t neighbors = 0;
  std::size_t lsas = 0;
};

// Adds what was heard to the tree; instances of the same key give way. On a failure, told by
// LibraryFailure, the tree is as it was. Returns what was added, in the order of the instances.
std::vector<LoadedInstance> load_network(ospf_tables::Session &session,
                                         const ospf_decode::Network &network);
// The same as it stands at another time than that of the last packet. LSAs have the ages that they
// have reached then, or those with which each was heard first.
std::vector<LoadedInstance> load_network(ospf_tables::Session &session,
                                         const ospf_decode::Network &network, ospf_decode::Time now,
                                         bool ages_as_heard = false);

// What was heard, in a store that is kept up with it. An update touches the LSAs that changed and
// the few rows of areas, interfaces and neighbours; if anybody else made or ended objects of the
// store since the last one, all is loaded anew.
class FollowedNetwork {
 public:
  FollowedNetwork(ospf_tables::Session &session, const ospf_decode::Network &network);
  ~FollowedNetwork();
  FollowedNetwork(const FollowedNetwork &) = delete;
  FollowedNetwork &operator=(const FollowedNetwork &) = delete;

  // Whether anything but ages and timers is other than at the last update. Needs no lock.
  bool has_changed(ospf_decode::Time now);
  // Within Session::changing, behind has_changed at the same time. How many LSAs it touched.
  std::size_t update();

 private:
  class Rows;
  std::unique_ptr<Rows> rows_;
};

}  // namespace capture_rows
