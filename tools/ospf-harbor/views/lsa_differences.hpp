// In what two lists of LSAs differ: which came, which went, and which fields of the others changed.
#pragma once

#include <string>
#include <vector>

#include "ospf_tables/lsdb_view.hpp"
#include "views/router_names.hpp"

namespace tool {

struct FieldChange {
  std::string field;   // as `lsdb --json` has it, such as "body.links[10.0.0.2].metric"
  std::string before;  // a JSON value; empty for what came
  std::string after;   // empty for what went
};

struct LsaChange {
  const ospf_tables::LsdbEntry *before = nullptr;  // null for what came
  const ospf_tables::LsdbEntry *after = nullptr;   // null for what went
  std::vector<FieldChange> fields;                 // of one that changed
};

// With `every_field` also ages, sequence numbers and checksums, which differ whenever LSAs are
// refreshed. In the order of the lists.
std::vector<LsaChange> lsa_changes(const std::vector<ospf_tables::LsdbEntry> &before,
                                   const std::vector<ospf_tables::LsdbEntry> &after,
                                   bool every_field);

std::string json_line(const LsaChange &change, const RouterNames &names);
void print_lsa_change(const LsaChange &change, const RouterNames &names, std::FILE *out);

}  // namespace tool
