// The network that a capture shows: databases, interfaces, links, neighbours, areas, routers.
//
// A Visitor that a FrameDecoder feeds. What routers say of themselves is kept as facts; what only
// follows from several of them (on which link an interface stands, the state of a neighbour) is
// worked out when asked for. Routers are seen from outside, so some of it is judgement:
//
// Links. OSPFv2 interfaces of one subnet share a link; a hello with mask 0 to one address belongs
// to a virtual link, which is the pair of its addresses. OSPFv3 interfaces are known by router and
// interface ID; a unicast between them, a link LSA that one floods for the other or a router LSA's
// link joins them. Where neither helps, an interface is joined with one that it lists and that
// lists it, if each is its router's only interface in the area with the timers that both have, or
// the only one of these that has listed the other for two hello intervals.
//
// Neighbour states, of B as A has it:
//   Down     B's hellos have stopped for longer than A's dead interval, or A does not hear B or
//            take its hellos, since a router lists all that it hears (RFC 2328, 9.5)
//   Attempt  A sends hellos to an address from which none ever came
//   Init     B's hello is seen and does not list A
//   TwoWay   B's hello lists A
//   ExStart  and A has sent a description with the I bit, none after it without
//   Exchange and A's descriptions have gone on, but not both sides have sent their last
//   Loading  and both have sent their last, but A's requests are not all answered
//   Full     and they are, or A asked for nothing
// A description counts if it is not older than the present two-way relation. Where the descriptions
// were before the capture, Full is told from the database: A's router LSA describes the adjacency,
// or A, the designated router, lists B in its network LSA. On a link of two, A is taken to be Full
// with B too if it floods or acknowledges there, which no router does below Exchange, and has sent
// no description since the relation began. A router that the database has Full with the
// designated router is taken to be Full with the backup too. At last a relation that has lasted for
// a dead interval without an exchange in the capture is taken to be Full.
//
// All above TwoWay holds where an adjacency is wanted (RFC 2328, 10.4): where a network has
// designated routers, with these alone. Others stay TwoWay, or are again after an election.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string_view>
#include <vector>

#include "ospf_decode/links.hpp"
#include "ospf_decode/lsdb.hpp"
#include "ospf_decode/visitor.hpp"

namespace ospf_decode {

enum class NeighborState : std::uint8_t {
  down = 1,
  attempt,
  init,
  two_way,
  ex_start,
  exchange,
  loading,
  full,
};

// What a neighbour's state rests on.
enum class Evidence : std::uint8_t { hello, description, database, flooding, role, lasting };

enum class NetworkType : std::uint8_t {
  unknown,
  broadcast,
  non_broadcast,
  point_to_multipoint,
  point_to_point,
  virtual_link,
};

enum class InterfaceState : std::uint8_t {
  unknown,
  down,  // its hellos have stopped
  waiting,
  point_to_point,
  dr_other,
  backup,
  designated,
};

std::string_view neighbor_state_text(NeighborState state);
std::string_view evidence_text(Evidence evidence);
std::string_view network_type_text(NetworkType type);
std::string_view interface_state_text(InterfaceState state);

// A database exchange as one side sends it.
struct ExchangeFacts {
  IpAddress to;  // zero if multicast
  std::uint8_t flags = 0;
  std::uint32_t sequence = 0;
  Time last = 0;
  bool going_on = false;        // a description without the I bit followed the last one with it
  bool sent_last = false;       // and one without the M bit
  std::set<LsaName> requested;  // and not yet answered
};

// One interface of one router, by what it sends.
struct Interface {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  std::uint32_t router_id = 0;
  std::uint32_t area_id = 0;
  std::uint32_t vlan = 0;
  std::uint64_t hardware = 0;  // of its port; 0 where captures do not have it
  std::uint32_t capture = 0;   // which had it first
  IpAddress address;
  IpAddress virtual_peer;  // zero unless a virtual link
  bool is_virtual = false;

  std::uint64_t hello_count = 0;
  Time first_hello = 0;
  Time last_hello = 0;
  // Since when its hellos come without a gap and list the same neighbours.
  Time steady_since = 0;
  Time elected_since = 0;  // since when they name a designated router, or name none
  Hello hello;             // the last
  std::map<std::uint32_t, Time> listed_since;  // neighbours in the last hello
  std::optional<Time> last_multicast_hello;
  bool had_designated_router = false;
  std::map<IpAddress, Time> hello_targets;  // of unicast hellos, with the last of each

  std::optional<Time> last_flooding;  // its last update or acknowledgement
  std::optional<std::uint16_t> mtu;   // from its descriptions
  AuthKind auth_kind = AuthKind::none;
  std::uint16_t auth_key_id = 0;  // key or security association
  std::size_t auth_digest_length = 0;
  bool lls = false;
  std::vector<ExchangeFacts> exchanges;

  bool demand_circuit() const;
  // Whether its hellos go to everyone now, not only in some earlier configuration.
  bool multicasts_hellos() const;
};

struct Neighbor {
  std::uint32_t interface = 0;        // A: index into interfaces()
  std::optional<std::uint32_t> peer;  // B; none for Attempt
  std::uint32_t router_id = 0;
  IpAddress address;
  std::uint32_t designated_router = 0;  // as B's hello declares
  std::uint32_t backup_designated_router = 0;
  NeighborState state = NeighborState::down;
  Evidence evidence = Evidence::hello;
};

struct AreaKey {
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  std::uint32_t area_id = 0;
  auto operator<=>(const AreaKey &) const = default;
};

struct Area {
  std::set<std::uint32_t> routers;  // that sent packets in it or have a router LSA
  bool hello_seen = false;
  bool external_capable = false;  // the E bit of its hellos; without it and N the area is a stub
  bool nssa = false;              // the N bit
};

class Network : public Visitor {
 public:
  Network();

  const Lsdb &lsdb() const { return lsdb_; }
  const std::vector<Interface> &interfaces() const { return interfaces_; }
  const std::map<AreaKey, Area> &areas() const { return areas_; }
  // Time of the last packet; ages and states are told for it unless another is asked for.
  Time last_time() const { return last_time_; }

  // Of which capture the next packets are.
  void set_capture(std::uint32_t capture) { capture_ = capture; }

  // The number of the link that an interface stands on, as in the keys of link-scope LSAs.
  std::uint32_t link_of(std::uint32_t interface) const;
  // Interfaces by link.
  std::map<std::uint32_t, std::vector<std::uint32_t>> links() const;

  std::vector<Neighbor> neighbors(Time now) const;
  // Whether a grace LSA has served its purpose, so that routers may have dropped it without a flush
  // on a captured link: its period is over, or its router has since originated its router LSA anew,
  // as it does when the restart ends. False for every other LSA.
  bool grace_over(const LsdbEntry &entry, Time now) const;
  NetworkType network_type(std::uint32_t interface) const;
  InterfaceState interface_state(std::uint32_t interface) const;
  // Its cost, if its router's LSA in the database tells.
  std::optional<std::uint16_t> interface_cost(std::uint32_t interface) const;

  void on_packet(const Packet &packet) override;
  void on_hello(const Packet &packet, const Hello &hello) override;
  void on_database_description(const Packet &packet, const DatabaseDescription &dd) override;
  void on_request(const Packet &packet, std::span<const LsaName> names) override;
  void on_lsa_v2(const Packet &packet, const LsaV2 &lsa) override;
  void on_lsa_v3(const Packet &packet, const LsaV3 &lsa) override;

  // B as A has it: `of` and `with` are indices into interfaces(), and only_two tells whether they
  // are alone on their link.
  Neighbor neighbor(std::uint32_t of, std::uint32_t with, bool only_two, Time now) const;

 protected:
  // For who follows what changes: an LSA as it is about to be offered to the databases, which still
  // hold what they held; and then what became of it.
  virtual void on_offer(const Packet &, const LsdbKey &, const LsaHeader &, Bytes) {}
  virtual void on_offered(const Packet &, const LsdbKey &, const LsaHeader &, Lsdb::Outcome) {}
  // The interface that sent the packet at hand.
  std::uint32_t sending_interface() const { return sender_; }
  std::uint32_t capture() const { return capture_; }
  // Whether an interface on the sender's link has asked for an LSA that has not come yet.
  bool is_requested(const LsaName &name) const;
  // Changes whenever links() may.
  std::uint64_t links_generation() const { return interfaces_.size() + link_changes_; }

 private:
  struct SourceKey {
    std::uint8_t version = 0;
    std::uint8_t instance_id = 0;
    std::uint32_t router_id = 0;
    std::uint32_t vlan = 0;
    IpAddress address;
    auto operator<=>(const SourceKey &) const = default;
  };

  static SourceKey source_of(const Packet &packet);
  LinkName name_of(std::uint32_t interface) const;
  std::uint32_t add_interface(const Packet &packet);
  std::uint32_t sender(const Packet &packet);
  std::optional<std::uint32_t> virtual_end(const Packet &packet,
                                           std::optional<std::uint32_t> id) const;
  template <typename Also>
  std::optional<std::uint32_t> only_one(const Interface &of, std::uint32_t router, Also also) const;
  std::uint32_t hello_sender(const Packet &packet, const Hello &hello);
  void join_by_unicast(std::uint32_t interface, const Packet &packet);
  void join_by_hello(std::uint32_t interface);
  ExchangeFacts &exchange_of(Interface &interface, const IpAddress &destination);
  void answered(const LsaHeader &header);
  void load(const Packet &packet, const LsaHeader &header, Bytes raw, bool complete, Scope scope);

  // Since when both may have listed each other; what was before counts no more.
  static Time relation_since(const Interface &of, const Interface &with);
  const ExchangeFacts *valid_exchange(const Interface &of, const Interface &with) const;
  const LsdbEntry *lsa_of_area(const Interface &interface, std::uint16_t type_v2,
                               std::uint16_t type_v3, std::uint32_t id_v2,
                               std::uint32_t id_v3) const;
  std::vector<const LsdbEntry *> router_lsas(const Interface &interface, Time now) const;
  // When the database first said that `of` is Full with `with`; none if it does not say so.
  std::optional<Time> full_since(const Interface &of, const Interface &with, Time now) const;
  // links: what links() gives, which is made anew with each call.
  bool hear_each_other(const std::map<std::uint32_t, std::vector<std::uint32_t>> &links,
                       std::uint32_t interface, std::uint32_t router) const;
  bool wants_adjacency(std::uint32_t interface, std::uint32_t peer) const;
  bool in_transit_network(const Interface &interface, Time now) const;

  Lsdb lsdb_;
  mutable Links links_;  // finding a number shortens paths
  std::vector<Interface> interfaces_;
  std::map<SourceKey, std::vector<std::uint32_t>> by_source_;
  std::map<IpAddress, std::vector<std::uint32_t>> by_address_;
  std::map<std::uint32_t, std::vector<std::uint32_t>> by_router_;
  std::map<AreaKey, Area> areas_;
  std::set<std::uint32_t> requesting_;  // interfaces whose requests are not all answered
  std::uint32_t sender_ = 0;            // of the packet at hand
  std::uint32_t capture_ = 0;
  std::uint64_t link_changes_ = 0;
  Time last_time_ = 0;
};

}  // namespace ospf_decode
