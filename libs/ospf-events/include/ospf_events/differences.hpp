// In what two interfaces that face each other differ, by what they send: the fields that neighbours
// must agree on (RFC 2328, 10.5 and 10.6, RFC 5340, 4.2.2), and what follows when something is
// wrong that packets do not show.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "ospf_decode/network.hpp"

namespace ospf_events {

enum class Difference : std::uint8_t {
  hello_interval,
  dead_interval,
  network_mask,  // of OSPFv2, where there is a designated router
  area,
  area_type,           // the E and N bits: stub area, NSSA
  network_type,        // one elects a designated router, the other one none
  authentication,      // none, by password, by digest
  authentication_key,  // digests by different keys, by their number or since neither takes them
  mtu,
  router_id,  // not different, though two routers have it
  address,    // not different, though two routers have it
  instance,   // each is alone in its own
  one_way,    // one hears the other and is not heard
  unheard,    // neither hears the other, and nothing tells why
  count_,
};

inline constexpr std::size_t difference_count = static_cast<std::size_t>(Difference::count_);

// Stable, such as "hello_interval".
const char *name_of(Difference difference);

class DifferenceSet {
 public:
  void add(Difference difference) { bits_ |= 1u << static_cast<unsigned>(difference); }
  bool has(Difference difference) const {
    return (bits_ >> static_cast<unsigned>(difference) & 1) != 0;
  }
  bool empty() const { return bits_ == 0; }
  // What keeps two routers from becoming neighbours, or from exchanging their databases.
  bool says_why() const;
  std::vector<Difference> list() const;
  bool operator==(const DifferenceSet &) const = default;

 private:
  std::uint32_t bits_ = 0;
};

// Of two that face each other. Both must have sent a hello lately; of silent ones nothing is told.
DifferenceSet differences(const ospf_decode::Network &network, std::uint32_t a, std::uint32_t b,
                          ospf_decode::Time now);

// What an interface has where two differ, such as "2 s".
std::string value_text(const ospf_decode::Interface &of, Difference difference);

// "10.0.0.1@192.0.2.1".
std::string name_of(const ospf_decode::Interface &of);

bool is_alive(const ospf_decode::Interface &of, ospf_decode::Time now);

// Which interfaces face each other: those on one link; in OSPFv2 those that would be if their masks
// were one, or that have one address. Interfaces of OSPFv3 that take nothing from each other have
// no link in common by what they say. They face each other when their ports speak OSPFv2 in one
// subnet, or when they were heard by a capture of one link, which is one in which no router has two
// interfaces. Holds as long as the links of the network are what they were.
class Facing {
 public:
  explicit Facing(const ospf_decode::Network &network);

  const std::vector<std::uint32_t> &on_link_of(std::uint32_t interface) const {
    return links_.at(link_of_[interface]);
  }
  // Each once, and not itself.
  std::vector<std::uint32_t> with(std::uint32_t interface) const;
  // The lower index comes first.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs() const;

 private:
  using Port = std::pair<std::uint32_t, std::uint64_t>;  // VLAN and hardware address

  void add_by_subnet(std::uint32_t interface, std::vector<std::uint32_t> &to) const;
  void add_by_port(std::uint32_t interface, std::vector<std::uint32_t> &to) const;

  const std::vector<ospf_decode::Interface> &all_;
  std::vector<std::uint32_t> link_of_;
  std::map<std::uint32_t, std::vector<std::uint32_t>> links_;
  std::map<std::uint32_t, std::vector<std::uint32_t>> by_address_;  // of OSPFv2
  std::map<Port, std::vector<std::uint32_t>> ports_[2];             // of OSPFv2 and OSPFv3
  // Of OSPFv3, by capture and VLAN; those of more than one link are empty.
  std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::uint32_t>> captures_;
};

}  // namespace ospf_events
