// Routing tables of a large network: one router, all routers, and the shortest paths alone beside
// Boost.Graph's on the same graph. RoutesOf/500 is a network of 500 routers with 2,000 links and
// 20,000 externals. How time grows with the network, and why, is in docs/performance.md.
#include <benchmark/benchmark.h>

#include <boost/graph/compressed_sparse_row_graph.hpp>
#include <boost/graph/dijkstra_shortest_paths.hpp>
#include <random>

#include "compiled.hpp"
#include "ospf_routes/failures.hpp"
#include "ospf_routes/routes.hpp"
#include "shortest_paths.hpp"

namespace {

using namespace ospf_routes;

RouterId router_id(std::uint32_t number) { return 0x0a000000 + number + 1; }

// A ring, so that all is connected, and chords; every router has a loopback, every tenth is a
// boundary router.
Database large_network(std::uint32_t routers, std::uint32_t links, std::uint32_t externals) {
  std::mt19937 random(routers);
  Database database;
  Area area;
  for (std::uint32_t at = 0; at < routers; ++at) {
    RouterLsa lsa{.router = router_id(at), .link_state_id = router_id(at), .links = {}};
    lsa.boundary = at % 10 == 0;
    const Prefix loopback = make_prefix(ipv4_address(router_id(at)), 32);
    lsa.links.push_back({.type = LinkType::stub, .stub = loopback});
    area.routers.push_back(lsa);
  }
  for (std::uint32_t at = 0; at < links; ++at) {
    const std::uint32_t one = at < routers ? at : random() % routers;
    std::uint32_t two = at < routers ? (at + 1) % routers : random() % routers;
    if (one == two) two = (one + 1) % routers;
    const std::uint32_t subnet = 0x0b000000 + 4 * at;
    const std::uint32_t metric = 1 + random() % 20;
    const auto end = [&](std::uint32_t from, std::uint32_t to, std::uint32_t own) {
      std::vector<RouterLink> &list = area.routers[from].links;
      list.push_back({.neighbor = router_id(to), .interface = own, .metric = metric, .stub = {}});
      list.push_back({.type = LinkType::stub,
                      .metric = metric,
                      .stub = make_prefix(ipv4_address(subnet), 30)});
    };
    end(one, two, subnet + 1);
    end(two, one, subnet + 2);
  }
  database.areas.push_back(area);
  for (std::uint32_t at = 0; at < externals; ++at) {
    ExternalLsa lsa;
    lsa.router = router_id(random() % routers / 10 * 10);
    lsa.prefix = make_prefix(ipv4_address(0x64000000 + 256 * (at % (externals * 9 / 10 + 1))), 24);
    lsa.metric = 20;
    lsa.type_2 = random() % 2 == 0;
    database.externals.push_back(lsa);
  }
  return database;
}

Database network_of(std::int64_t routers) {
  const auto count = static_cast<std::uint32_t>(routers);
  return large_network(count, 4 * count, 40 * count);
}

void Compile(benchmark::State &state) {
  const Database database = network_of(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(Calculator(database).routers());
}
BENCHMARK(Compile)->Arg(500)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);

// As the command does it: databases in, one router's table out.
void RoutesOfOneRouter(benchmark::State &state) {
  const Database database = network_of(state.range(0));
  for (auto _ : state) {
    benchmark::DoNotOptimize(Calculator(database).table(router_id(7)).routes);
  }
}
BENCHMARK(RoutesOfOneRouter)->Arg(500)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);

void RoutesOfAllRouters(benchmark::State &state) {
  const Database database = network_of(state.range(0));
  for (auto _ : state) {
    const Calculator calculator(database);
    for (const RouterId router : calculator.routers()) {
      benchmark::DoNotOptimize(calculator.table(router).routes);
    }
  }
}
BENCHMARK(RoutesOfAllRouters)->Arg(500)->Unit(benchmark::kMillisecond)->Iterations(1);

void AllFailures(benchmark::State &state) {
  const Calculator calculator(network_of(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(all_failures(calculator).size());
}
BENCHMARK(AllFailures)->Arg(500)->Unit(benchmark::kMillisecond)->Iterations(1);

void ShortestPaths(benchmark::State &state) {
  const Calculator calculator(network_of(state.range(0)));
  const AreaGraph &graph = calculator.compiled().areas[0].graph;
  DistanceHeap heap;
  std::vector<std::uint32_t> distances;
  std::uint32_t root = 0;
  for (auto _ : state) {
    shortest_paths(
        graph, root++ % graph.size(), heap, distances,
        [](const Edge &, std::uint32_t) { return true; }, [](std::uint32_t, const Edge &, bool) {});
    benchmark::DoNotOptimize(distances.data());
  }
}
BENCHMARK(ShortestPaths)->Arg(500)->Arg(5000)->Arg(20000)->Unit(benchmark::kMicrosecond);

void ShortestPathsOfBoost(benchmark::State &state) {
  const Calculator calculator(network_of(state.range(0)));
  const AreaGraph &graph = calculator.compiled().areas[0].graph;
  struct Cost {
    std::uint32_t cost;
  };
  using Graph = boost::compressed_sparse_row_graph<boost::directedS, boost::no_property, Cost>;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> ends;
  std::vector<Cost> costs;
  for (std::uint32_t vertex = 0; vertex < graph.size(); ++vertex) {
    for (const Edge &edge : graph.edges(vertex)) {
      ends.emplace_back(vertex, edge.to);
      costs.push_back({edge.cost});
    }
  }
  const Graph theirs(boost::edges_are_sorted, ends.begin(), ends.end(), costs.begin(),
                     graph.size());
  std::vector<std::uint32_t> distances(graph.size());
  std::uint32_t root = 0;
  for (auto _ : state) {
    boost::dijkstra_shortest_paths(
        theirs, root++ % graph.size(),
        boost::weight_map(boost::get(&Cost::cost, theirs))
            .distance_map(boost::make_iterator_property_map(
                distances.begin(), boost::get(boost::vertex_index, theirs))));
    benchmark::DoNotOptimize(distances.data());
  }
}
BENCHMARK(ShortestPathsOfBoost)->Arg(500)->Arg(5000)->Arg(20000)->Unit(benchmark::kMicrosecond);

}  // namespace
