#include "sources/load_frr.hpp"

#include <memory>

#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/row_keys.hpp"
#include "router_answers/frr_reader.hpp"
#include "router_answers/router.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;
using namespace router_answers;

namespace {

std::string summary(const Instance &instance) {
  std::size_t interfaces = 0;
  std::size_t neighbors = 0;
  for (const Area &area : instance.areas) {
    interfaces += area.interfaces.size();
    for (const Interface &interface : area.interfaces) neighbors += interface.neighbors.size();
  }
  return std::string(instance.family == Family::ipv4 ? "OSPFv2" : "OSPFv3") + " router " +
         dotted(instance.router_id) + ": " + counted(instance.areas.size(), "area", "areas") +
         ", " + counted(interfaces, "interface", "interfaces") + ", " +
         counted(neighbors, "neighbour", "neighbours");
}

}  // namespace

void load_frr(Session &session, const std::vector<std::string> &folders, std::FILE *report) {
  PassedOver passed_over;
  std::vector<Instance> instances;
  for (const std::string &folder : folders) {
    const std::string name = host_name(folder);
    for (Instance &instance : read_frr(folder, passed_over)) {
      if (!name.empty()) session.names()[instance.router_id] = name;
      instances.push_back(std::move(instance));
    }
  }
  session.changing([&] {
    std::vector<std::unique_ptr<NewInstance>> rows;
    for (const Instance &instance : instances) {
      rows.push_back(std::make_unique<NewInstance>(session, instance));
    }
    add_instances(session, rows);
  });
  if (report == nullptr) return;
  for (const Instance &instance : instances) {
    std::fprintf(report, "loaded %s\n", summary(instance).c_str());
  }
  if (passed_over.values == 0) return;
  std::fprintf(report, "passed over %s of %s that the model has no place for\n",
               counted(passed_over.values, "value", "values").c_str(),
               counted(passed_over.keys.size(), "key", "keys").c_str());
}

}  // namespace tool
