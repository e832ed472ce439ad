#include "router_answers/router.hpp"

#include <algorithm>
#include <filesystem>
#include <set>
#include <sstream>
#include <string_view>

#include "ospf_decode/lsa_header.hpp"
#include "ospf_tables/input_error.hpp"
#include "router_answers/answer_file.hpp"
#include "router_answers/bird_reader.hpp"
#include "router_answers/frr_reader.hpp"

namespace router_answers {

using namespace ospf_tables;

namespace {

// The areas that databases tell of, where the answer about the process is missing.
void add_areas(Process &process) {
  for (const auto &entry : process.database.lsas) {
    const Place &place = entry.first.place;
    if (place.scope == ospf_decode::Scope::as) continue;
    auto &areas = process.instance.areas;
    const bool known = std::any_of(areas.begin(), areas.end(),
                                   [&](const Area &area) { return area.id == place.area; });
    if (!known) areas.push_back({place.area, {}});
  }
}

// FRR's OSPFv3 has an instance ID for each interface, and one set of databases, which it sends by
// all of them: a process for each ID has its interfaces, and the databases of their areas.
std::vector<Process> by_instance_id(Process process) {
  std::set<std::uint8_t> ids;
  for (const Area &area : process.instance.areas) {
    for (const Interface &interface : area.interfaces) ids.insert(interface.instance_id);
  }
  if (ids.size() < 2) {
    if (!ids.empty()) process.instance_id = *ids.begin();
    return {std::move(process)};
  }
  std::vector<Process> all;
  for (const std::uint8_t id : ids) {
    Process own = process;
    own.instance_id = id;
    std::set<std::pair<std::uint32_t, std::string>> interfaces;
    for (Area &area : own.instance.areas) {
      std::erase_if(area.interfaces, [&](const Interface &each) { return each.instance_id != id; });
      for (const Interface &each : area.interfaces) interfaces.emplace(area.id, each.name);
    }
    std::erase_if(own.instance.areas, [](const Area &area) { return area.interfaces.empty(); });
    std::erase_if(own.database.lsas, [&](const auto &entry) {
      const Place &place = entry.first.place;
      if (place.scope == ospf_decode::Scope::link && !place.interface.empty()) {
        return !interfaces.contains({place.area, place.interface});
      }
      return place.scope != ospf_decode::Scope::as &&
             std::ranges::none_of(own.instance.areas,
                                  [&](const Area &area) { return area.id == place.area; });
    });
    all.push_back(std::move(own));
  }
  return all;
}

void separate_instances(Router &router) {
  std::vector<Process> all;
  for (Process &process : router.processes) {
    for (Process &each : by_instance_id(std::move(process))) all.push_back(std::move(each));
  }
  router.processes = std::move(all);
}

}  // namespace

bool is_router(const std::string &folder) {
  return has_frr_process(folder) || has_frr_v2(folder) || has_frr_v3(folder) ||
         !bird_protocols(folder).empty();
}

std::string host_name(const std::string &folder) {
  struct Place {
    const char *file;
    const char *before;
  };
  constexpr Place places[] = {{"frr.conf", "hostname "},
                              {"running-config.txt", "hostname "},
                              {"bird.conf", "hostname "},
                              {"status.txt", "Hostname is "}};
  for (const Place &place : places) {
    const auto file = find_answer(folder, place.file);
    if (!file) continue;
    std::istringstream in(read_answer(*file));
    for (std::string line; std::getline(in, line);) {
      if (!line.starts_with(place.before)) continue;
      line.erase(0, std::string_view(place.before).size());
      std::erase(line, '"');
      return in_one_line(line.substr(0, line.find_first_of("; \t\r")));
    }
  }
  return "";
}

Router read_router(const std::string &folder, PassedOver &passed_over) {
  Router router;
  router.name = std::filesystem::path(folder).lexically_normal().filename().string();
  if (router.name.empty()) {
    router.name =
        std::filesystem::path(folder).lexically_normal().parent_path().filename().string();
  }
  if (has_frr_process(folder)) {
    for (Instance &instance : read_frr(folder, passed_over, Missing::left_out)) {
      Process process;
      process.version = instance.family == Family::ipv4 ? 2 : 3;
      process.instance = std::move(instance);
      router.processes.push_back(std::move(process));
    }
  }
  const auto process_of = [&](std::uint8_t version) -> Process & {
    for (Process &process : router.processes) {
      if (process.version == version) return process;
    }
    Process process;
    process.version = version;
    process.instance.family = version == 2 ? Family::ipv4 : Family::ipv6;
    router.processes.push_back(std::move(process));
    return router.processes.back();
  };
  if (has_frr_v2(folder)) {
    Process &process = process_of(2);
    read_frr_v2(folder, process.database);
  }
  if (has_frr_v3(folder)) {
    Process &process = process_of(3);
    read_frr_v3(folder, process.database);
  }
  separate_instances(router);
  for (const std::string &protocol : bird_protocols(folder)) {
    router.processes.push_back(read_bird(folder, protocol));
  }
  if (router.processes.empty()) {
    throw InputError(folder, "", "no answer that is known",
                     "ip-ospf.json, ipv6-ospf6.json, ip-ospf-database.json or another of FRR's, or "
                     "NAME-lsadb.txt of BIRD's");
  }
  for (Process &process : router.processes) add_areas(process);
  return router;
}

}  // namespace router_answers
