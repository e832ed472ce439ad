#include <cstdio>
#include <memory>

#include "commands/command.hpp"
#include "commands/network_options.hpp"
#include "views/json_lines.hpp"
#include "views/lsa_list.hpp"
#include "views/lsdb_filter.hpp"
#include "views/text_forms.hpp"

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
    std::fprintf(stderr, "ospf-harbor: lsdb: %s%s\n", site_part(session.named_site()).c_str(),
                 all.empty() ? "no LSAs are loaded"
                             : ("none of " + std::to_string(all.size()) +
                                " LSAs is what the options ask for")
                                   .c_str());
    return 1;
  }
  const RouterNames names = router_names(session, all);
  if (options.json) {
    for (const LsdbEntry &entry : entries) std::printf("%s\n", json_line(entry, names).c_str());
  } else if (options.detail) {
    print_lsa_details(entries, names, stdout);
  } else {
    print_lsa_table(entries, names, stdout);
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

constexpr char lsdb_description[] =
    R"(Lists the LSAs of each instance, area and link. Of a capture these are the
databases as they stand at the last packet, or at --at.

A line of --json has the keys kind, path, instance, router_id, area,
interface, age_as (what the age is as of: "of" a time, or heard; null where a
router tells it), adv_router_name, version, scope, type, type_name, lsa_id,
adv_router, age, seq_num, checksum, length, options, decoded_completed, body
and raw_data. The body has the fields of its type, opaque LSAs with what
their TLVs say: type, name, length, unit, says, octets and sub_tlvs.
)" SITE_KEYS;

}  // namespace

extern const Command lsdb_command;
const Command lsdb_command{"lsdb",
                           "List the link-state databases",
                           Needs::tree,
                           set_up_lsdb,
                           Stands::everywhere,
                           false,
                           lsdb_description,
                           nullptr,
                           Sites::each};

}  // namespace tool
