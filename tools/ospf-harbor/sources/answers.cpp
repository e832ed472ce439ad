#include "sources/answers.hpp"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>

#include "ospf_findings/databases.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/row_keys.hpp"
#include "router_answers/one_network.hpp"
#include "router_answers/process_rows.hpp"
#include "router_answers/router.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace router_answers;

namespace {

constexpr std::size_t most_differences = 20;

void tell(const std::vector<Difference> &differences) {
  for (std::size_t at = 0; at < differences.size() && at < most_differences; ++at) {
    std::fprintf(stderr, "ospf-harbor: the routers differ: %s\n", differences[at].text.c_str());
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

// The databases of one instance are one finding, as it may be many lines of one reason.
void add_differences(const std::vector<Difference> &differences,
                     std::vector<ospf_findings::Finding> &findings) {
  std::map<std::pair<std::uint8_t, std::uint8_t>, std::vector<const Difference *>> by_instance;
  for (const Difference &each : differences) {
    by_instance[{each.version, each.instance_id}].push_back(&each);
  }
  for (auto &[instance, those] : by_instance) {
    const auto oldest = std::ranges::max_element(those, {}, &Difference::age);
    std::iter_swap(those.begin(), oldest);
    ospf_findings::Finding found;
    found.severity = those.front()->age >= ospf_findings::on_its_way
                         ? ospf_findings::Severity::warning
                         : ospf_findings::Severity::notice;
    found.kind = ospf_findings::Kind::databases_differ;
    found.version = instance.first;
    found.instance = instance.second;
    found.what = those.front()->text;
    if (those.size() > 1) {
      found.what += "; and " + counted(those.size() - 1, "difference", "differences") + " more";
    }
    findings.push_back(std::move(found));
  }
}

void add_shared_ids(const std::vector<SharedId> &shared,
                    std::vector<ospf_findings::Finding> &findings) {
  for (const SharedId &each : shared) {
    ospf_findings::Finding found;
    found.severity = ospf_findings::Severity::error;
    found.kind = ospf_findings::Kind::duplicate_router_id;
    found.version = each.version;
    found.instance = each.instance_id;
    found.routers = {each.router_id};
    found.where = ospf_tables::dotted(each.router_id);
    for (const std::string &name : each.names) {
      found.what += (found.what.empty() ? "" : " and ") + name;
    }
    found.what += " have this router ID";
    findings.push_back(std::move(found));
  }
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
  for (std::size_t at = 0; at < routers.size(); ++at) {
    const std::string name = host_name(folders[at]);
    for (const Process &process : routers[at].processes) {
      if (!name.empty() && process.instance.router_id != 0) {
        session.names()[process.instance.router_id] = name;
      }
    }
  }
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
  add_differences(network.differences, heard->between_routers);
  add_shared_ids(network.shared_ids, heard->between_routers);
}

}  // namespace tool
