#include "sources/answers.hpp"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>

#include "ospf_tables/instance_rows.hpp"
#include "router_answers/one_network.hpp"
#include "router_answers/process_rows.hpp"
#include "router_answers/router.hpp"

namespace tool {

using namespace router_answers;

namespace {

constexpr std::size_t most_differences = 20;

void tell(const std::vector<std::string> &differences) {
  for (std::size_t at = 0; at < differences.size() && at < most_differences; ++at) {
    std::fprintf(stderr, "ospf-harbor: the routers differ: %s\n", differences[at].c_str());
  }
  if (differences.size() > most_differences) {
    std::fprintf(stderr, "ospf-harbor: the routers differ in %zu more places\n",
                 differences.size() - most_differences);
  }
}

// A router's instances may share its router ID and address family, which are the key of a row.
std::vector<Process> own_processes(Router router) {
  std::vector<Process> own;
  Router others{router.name, {}};
  for (Process &process : router.processes) {
    (process.instance_id == 0 ? own : others.processes).push_back(std::move(process));
  }
  Network network = one_network({others});
  std::move(network.processes.begin(), network.processes.end(), std::back_inserter(own));
  return own;
}

// A router's configuration may lie beside its answers.
void read_configurations(const std::vector<std::string> &folders, Heard &heard) {
  for (const std::string &folder : folders) {
    std::ifstream in(std::filesystem::path(folder) / "frr.conf");
    if (in) heard.configurations.push_back(ospf_findings::read_frr_configuration(in));
  }
}

}  // namespace

void load_routers(ospf_tables::Session &session, const std::vector<std::string> &folders,
                  Heard *heard) {
  PassedOver passed_over;
  std::vector<Router> routers;
  for (const std::string &folder : folders) routers.push_back(read_router(folder, passed_over));
  Network network;
  if (routers.size() == 1) {
    network.processes = own_processes(std::move(routers.front()));
  } else {
    network = one_network(routers);
  }
  std::vector<std::unique_ptr<ospf_tables::NewInstance>> rows;
  for (const Process &process : network.processes) rows.push_back(process_rows(session, process));
  ospf_tables::add_instances(session, rows);
  if (heard == nullptr) {
    tell(network.differences);
    return;
  }
  read_configurations(folders, *heard);
  heard->differences = std::move(network.differences);
}

}  // namespace tool
