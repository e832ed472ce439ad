#include "ospf_routes/routes.hpp"

#include <algorithm>

#include "calculation.hpp"

namespace ospf_routes {

const char *name_of(Kind kind) {
  constexpr const char *names[] = {"intra",      "inter",  "external-1",
                                   "external-2", "nssa-1", "nssa-2"};
  return names[static_cast<int>(kind)];
}

std::size_t HopSets::Hash::operator()(const std::vector<NextHop> &hops) const {
  std::uint64_t mixed = hops.size();
  const auto mix = [&](std::uint64_t value) {
    mixed = (mixed ^ value) * 0x9e3779b97f4a7c15u;
    mixed ^= mixed >> 29;
  };
  for (const NextHop &hop : hops) {
    mix(std::uint64_t{hop.interface.number} << 8 | static_cast<std::uint64_t>(hop.interface.form));
    mix(hop.interface.address.high);
    mix(hop.interface.address.low);
    if (!hop.address) continue;
    mix(hop.address->high);
    mix(hop.address->low);
  }
  return mixed;
}

std::uint32_t HopSets::add(std::vector<NextHop> hops) {
  if (hops.empty()) return 0;
  std::sort(hops.begin(), hops.end());
  hops.erase(std::unique(hops.begin(), hops.end()), hops.end());
  const auto [at, is_new] = known_.try_emplace(hops, static_cast<std::uint32_t>(sets_.size()));
  if (is_new) sets_.push_back(std::move(hops));
  return at->second;
}

std::uint32_t HopSets::join(std::uint32_t a, std::uint32_t b) {
  if (a == b || b == 0) return a;
  if (a == 0) return b;
  const auto [low, high] = std::minmax(a, b);
  const std::uint64_t key = std::uint64_t{low} << 32 | high;
  if (const auto at = joined_.find(key); at != joined_.end()) return at->second;
  std::vector<NextHop> both = sets_[a];
  both.insert(both.end(), sets_[b].begin(), sets_[b].end());
  const std::uint32_t set = add(std::move(both));
  joined_.emplace(key, set);
  return set;
}

bool same_routes(const RoutingTable &a, const RoutingTable &b) {
  return std::equal(a.routes.begin(), a.routes.end(), b.routes.begin(), b.routes.end(),
                    [&](Route one, Route two) {
                      const auto hops_a = a.next_hops(one);
                      const auto hops_b = b.next_hops(two);
                      one.hops = two.hops = 0;
                      return one == two &&
                             std::equal(hops_a.begin(), hops_a.end(), hops_b.begin(), hops_b.end());
                    });
}

Calculator::Calculator(const Database &database, Rules rules)
    : compiled_(std::make_unique<Compiled>(database, rules)) {}
Calculator::~Calculator() = default;
Calculator::Calculator(Calculator &&) noexcept = default;
Calculator &Calculator::operator=(Calculator &&) noexcept = default;

const std::vector<RouterId> &Calculator::routers() const { return compiled_->roots; }
RoutingTable Calculator::table(RouterId router) const {
  return Calculation(*compiled_, router).run();
}
const std::vector<std::string> &Calculator::lacks() const { return compiled_->lacks; }

}  // namespace ospf_routes
