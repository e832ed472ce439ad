#include <cstdio>
#include <memory>

#include "commands/command.hpp"
#include "views/json_lines.hpp"
#include "views/lsa_list.hpp"
#include "views/lsdb_filter.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

struct LsdbOptions {
  LsdbFilter filter;
  bool detail = false;
  bool json = false;
};

// Prints the listing; 1, with a word on standard error, when it would be empty.
int list_lsas(Session &session, const LsdbOptions &options) {
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

Run set_up_lsdb(CLI::App &app) {
  const auto options = std::make_shared<LsdbOptions>();
  add_filter_options(app, options->filter);
  CLI::Option *detail = app.add_flag("--detail", options->detail, "Each LSA in full");
  app.add_flag("--json", options->json, "One JSON object a line")->excludes(detail);
  return [options](Session *session) { return list_lsas(*session, *options); };
}

}  // namespace

extern const Command lsdb_command;
const Command lsdb_command{"lsdb", "List the link-state databases", Needs::tree, set_up_lsdb};

}  // namespace tool
