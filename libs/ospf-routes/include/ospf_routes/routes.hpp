// The routing table that a router must have by the link-state databases: RFC 2328, 16, with RFC
// 3101 for NSSAs, RFC 5340 and RFC 5838 for OSPFv3, RFC 6860 for hidden networks and RFC 3509 for
// what an area border router is. A RoutingTable stands for itself.
#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "ospf_routes/database.hpp"

namespace ospf_routes {

enum class Kind : std::uint8_t { intra, inter, external_1, external_2, nssa_1, nssa_2 };
const char *name_of(Kind kind);
constexpr bool is_external(Kind kind) { return kind >= Kind::external_1; }
constexpr bool is_type_2(Kind kind) { return kind == Kind::external_2 || kind == Kind::nssa_2; }

// Which interface packets leave by: the router's own address on it or, when databases do not tell
// one, its number. `none` is for a network of which databases tell no interface at all.
struct OwnInterface {
  enum class Form : std::uint8_t { none, address, number };
  Form form = Form::none;
  std::uint32_t number = 0;  // of OSPFv3, and of interfaces of OSPFv2 without an address
  Address address;

  auto operator<=>(const OwnInterface &) const = default;
};

struct NextHop {
  OwnInterface interface;
  std::optional<Address> address;  // empty for what is attached, or when databases do not tell
  bool attached = false;           // the destination is on the link, no router between

  auto operator<=>(const NextHop &) const = default;
};

struct Route {
  Prefix prefix;
  Kind kind = Kind::intra;
  std::uint32_t cost = 0;        // of type 2: to the boundary router or the forwarding address
  std::uint32_t type2_cost = 0;  // of type 2 alone
  std::uint32_t tag = 0;         // of externals alone
  AreaId area = 0;               // not of AS-externals
  std::uint32_t hops = 0;        // a set of the table

  bool operator==(const Route &) const = default;
};

// The way to an AS boundary router that counts for AS-externals.
struct BoundaryRoute {
  RouterId router = 0;
  std::uint32_t cost = 0;
  AreaId area = 0;
  bool is_intra = false;
};

// Sets of next hops, each kept once. Set 0 is empty.
class HopSets {
 public:
  HopSets() : sets_(1) {}
  std::span<const NextHop> of(std::uint32_t set) const { return sets_[set]; }
  std::uint32_t add(std::vector<NextHop> hops);  // in any order
  std::uint32_t join(std::uint32_t a, std::uint32_t b);

 private:
  struct Hash {
    std::size_t operator()(const std::vector<NextHop> &hops) const;
  };
  std::vector<std::vector<NextHop>> sets_;
  std::unordered_map<std::vector<NextHop>, std::uint32_t, Hash> known_;
  std::unordered_map<std::uint64_t, std::uint32_t> joined_;
};

struct RoutingTable {
  RouterId router = 0;
  std::vector<Route> routes;              // by prefix
  std::vector<BoundaryRoute> boundaries;  // by router
  HopSets hops;
  std::vector<std::string> lacks;  // why next hops are without an address, one sentence each

  std::span<const NextHop> next_hops(const Route &route) const { return hops.of(route.hops); }
};

// Whether both tables say the same, next hop for next hop.
bool same_routes(const RoutingTable &a, const RoutingTable &b);

struct Rules {
  // Of RFC 2328, 16.4.1. Routers that keep RFC 1583's preferences have it on.
  bool rfc1583_compatibility = false;
};

class Compiled;

// Reads the databases once; each table then costs one calculation. Calls from several threads are
// sound.
class Calculator {
 public:
  explicit Calculator(const Database &database, Rules rules = {});
  ~Calculator();
  Calculator(Calculator &&) noexcept;
  Calculator &operator=(Calculator &&) noexcept;

  // With a router-LSA in any area, in order.
  const std::vector<RouterId> &routers() const;
  // Empty, with no routes, for a router without a router-LSA.
  RoutingTable table(RouterId router) const;
  // What is missing in the databases, one sentence each: LSAs that others speak of.
  const std::vector<std::string> &lacks() const;

  const Compiled &compiled() const { return *compiled_; }

 private:
  std::unique_ptr<Compiled> compiled_;
};

}  // namespace ospf_routes
