#include "commands/commands.hpp"

#include <cstdio>
#include <iostream>
#include <sstream>

#include "commands/exchange_options.hpp"
#include "commands/graph_command.hpp"
#include "commands/lsdb_command.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"
#include "sources/capture_command.hpp"
#include "sources/frr_reader.hpp"
#include "views/show.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

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
    for (Instance &instance : read_frr(folder, passed_over)) {
      instances.push_back(std::move(instance));
    }
  }
  std::vector<std::unique_ptr<NewInstance>> rows;
  for (const Instance &instance : instances) {
    rows.push_back(std::make_unique<NewInstance>(session, instance));
  }
  add_instances(session, rows);
  if (report == nullptr) return;
  for (const Instance &instance : instances) {
    std::fprintf(report, "loaded %s\n", summary(instance).c_str());
  }
  if (passed_over.values == 0) return;
  std::fprintf(report, "passed over %s of %s that the model has no place for\n",
               counted(passed_over.values, "value", "values").c_str(),
               counted(passed_over.keys.size(), "key", "keys").c_str());
}

int show_path(Session &session, const std::string &path, bool json) {
  if ((json ? show_json : show)(session, path, stdout) != 0) return 0;
  if (root_table(session, false) == nullptr) {
    std::fprintf(stderr, "ospf-harbor: show: nothing is loaded\n");
  } else {
    std::fprintf(stderr, "ospf-harbor: show %s: nothing there\n", path.c_str());
  }
  return 1;
}

int run_shell(Session &session) {
  int status = 0;
  std::string line;
  for (std::size_t number = 1; std::getline(std::cin, line); ++number) {
    std::istringstream in(line);
    std::vector<std::string> words;
    for (std::string word; in >> word;) words.push_back(word);
    if (words.empty() || words[0][0] == '#') continue;
    const auto unknown = [&] {
      return InputError("standard input", "line " + std::to_string(number), "\"" + line + "\"",
                        "load frr FOLDER..., load capture FILE..., show [PATH] [--json], lsdb "
                        "[OPTION...], or graph OPTION...");
    };
    try {
      int line_status = 0;
      if (run_exchange_line(session, words, &line_status)) {
        if (line_status != 0) status = line_status;
      } else if (words.size() >= 3 && words[0] == "load" && words[1] == "frr") {
        load_frr(session, {words.begin() + 2, words.end()});
      } else if (words.size() >= 3 && words[0] == "load" && words[1] == "capture") {
        const int result =
            load_capture(session, parse_capture_words({words.begin() + 2, words.end()}));
        if (result != 0) status = result;
      } else if (words[0] == "show" && words.size() <= 3) {
        const bool json = words.back() == "--json";
        if (words.size() == 3 && !json) throw unknown();
        const std::string path = words.size() == (json ? 3u : 2u) ? words[1] : "";
        if (show_path(session, path, json) != 0) status = 1;
      } else if (words[0] == "lsdb" || words[0] == "graph") {
        const std::vector<std::string> options(words.begin() + 1, words.end());
        const int result = words[0] == "lsdb" ? run_lsdb(session, parse_lsdb_words(options))
                                              : run_graph(session, parse_graph_words(options));
        if (result != 0) status = result;
      } else {
        throw unknown();
      }
    } catch (const std::exception &failure) {
      std::fflush(stdout);
      std::fprintf(stderr, "ospf-harbor: %s\n", failure.what());
      status = 1;
    }
    std::fflush(stdout);
  }
  return status;
}

}  // namespace tool
