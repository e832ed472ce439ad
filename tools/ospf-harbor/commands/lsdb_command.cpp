#include "commands/lsdb_command.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <memory>

#include "ospf_tables/input_error.hpp"
#include "sources/sources.hpp"
#include "views/json_lines.hpp"
#include "views/lsa_list.hpp"
#include "views/lsa_names.hpp"

namespace tool {

using namespace ospf_tables;

void add_filter_options(CLI::App &command, LsdbFilter &filter) {
  command.add_option("--area", filter.area, "Only this area, such as 0.0.0.1 or 1");
  command.add_option("--type", filter.type,
                     "Only LSAs of this type, by number or as one of " + list_of_type_names());
  command.add_option("--adv-router", filter.adv_router, "Only LSAs of this advertising router");
  command.add_option("--family", filter.family, "Only instances of ipv4 or of ipv6");
  CLI::Option *v2 = command.add_flag("--v2", filter.v2, "Only OSPFv2");
  command.add_flag("--v3", filter.v3, "Only OSPFv3")->excludes(v2);
}

void add_lsdb_options(CLI::App &command, LsdbOptions &options) {
  add_filter_options(command, options.filter);
  CLI::Option *detail = command.add_flag("--detail", options.detail, "Each LSA in full");
  command.add_flag("--json", options.json, "One JSON object a line")->excludes(detail);
}

void parse_words(CLI::App &command, const char *name, std::vector<std::string> words) {
  command.set_help_flag();
  std::reverse(words.begin(), words.end());
  try {
    command.parse(std::move(words));
  } catch (const CLI::ParseError &failure) {
    throw InputError(name, "", failure.what(),
                     "the options that \"ospf-harbor " + std::string(name) + " --help\" tells");
  }
}

LsdbOptions parse_lsdb_words(const std::vector<std::string> &words) {
  LsdbOptions options;
  CLI::App command;
  add_lsdb_options(command, options);
  parse_words(command, "lsdb", words);
  return options;
}

Command add_lsdb_command(CLI::App &app) {
  CLI::App *command = app.add_subcommand("lsdb", "List the link-state databases");
  const auto options = std::make_shared<LsdbOptions>();
  const auto sources = std::make_shared<std::vector<std::string>>();
  add_lsdb_options(*command, *options);
  command->add_option("--from", *sources, source_help)->required();
  return {command, [options, sources] {
            Session session;
            const int status = load_sources(session, *sources);
            return std::max(status, run_lsdb(session, *options));
          }};
}

int run_lsdb(Session &session, const LsdbOptions &options) {
  const std::vector<LsdbEntry> all = read_lsdb(session);
  const std::vector<LsdbEntry> entries = filtered(all, options.filter);
  if (entries.empty()) {
    std::fprintf(stderr, "ospf-harbor: lsdb: %s\n",
                 all.empty() ? "no LSAs are loaded"
                             : ("none of " + std::to_string(all.size()) +
                                " LSAs is what the options ask for")
                                   .c_str());
    return 1;
  }
  if (options.json) {
    for (const LsdbEntry &entry : entries) std::printf("%s\n", json_line(entry).c_str());
  } else if (options.detail) {
    print_lsa_details(entries, stdout);
  } else {
    print_lsa_table(entries, stdout);
  }
  return 0;
}

}  // namespace tool
