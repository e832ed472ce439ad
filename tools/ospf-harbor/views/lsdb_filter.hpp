// Which LSAs of a database a command looks at.
#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "ospf_tables/lsdb_view.hpp"

namespace tool {

// As the command line has it; empty texts mean all.
struct LsdbFilter {
  std::string area;                // a dotted quad or a number
  std::vector<std::string> types;  // names that people type, short names or numbers; any meets
  std::string adv_router;          // a dotted quad
  std::string family;              // "ipv4" or "ipv6", of the instance
  std::string instance;            // a number of 8 bits
  std::string ls_id;               // a dotted quad or a number
  std::string newer_than;          // seconds
  std::string prefix;              // as PrefixChoice has it
  bool v2 = false;
  bool v3 = false;
};

// Its options, for any command that has one.
void add_filter_options(CLI::App &command, LsdbFilter &filter);

// The LSAs that meet all that the filter asks for, in the given order. Throws UsageError for a text
// that no LSA can meet.
std::vector<ospf_tables::LsdbEntry> filtered(std::vector<ospf_tables::LsdbEntry> entries,
                                             const LsdbFilter &filter);

// A dotted quad or a number. Throws UsageError.
std::uint32_t parse_area(const std::string &text);

}  // namespace tool
