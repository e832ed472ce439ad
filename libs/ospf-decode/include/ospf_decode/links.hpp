// Which interfaces stand on one link, found out bit by bit.
//
// A set of names for links (a subnet, a router's interface, a pair of addresses), of which any two
// may turn out to mean the same link; then their numbers become one, the lower staying. Network is
// the caller; who wants to hear of joined numbers gives a listener.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "ospf_decode/address.hpp"

namespace ospf_decode {

struct LinkName {
  enum class Kind : std::uint8_t { subnet, router_interface, address_pair, interface_index };
  Kind kind = Kind::subnet;
  std::uint8_t version = 0;
  std::uint8_t instance_id = 0;
  IpAddress a;
  IpAddress b;
  auto operator<=>(const LinkName &) const = default;
};

class Links {
 public:
  using Listener = std::function<void(std::uint32_t from, std::uint32_t to)>;
  explicit Links(Listener joined) : joined_(std::move(joined)) {}

  // The number of the link that `name` means; a new link if it is unheard of.
  std::uint32_t number_of(const LinkName &name);
  void join(const LinkName &a, const LinkName &b);

 private:
  std::uint32_t node_of(const LinkName &name);
  std::uint32_t root(std::uint32_t node);

  Listener joined_;
  std::map<LinkName, std::uint32_t> nodes_;
  std::vector<std::uint32_t> parents_;
};

}  // namespace ospf_decode
