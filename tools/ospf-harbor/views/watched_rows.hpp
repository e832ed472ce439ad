// What `watch` tells of rows: which came and went, and what changed in those that stayed. LSAs are
// told apart by sequence number and checksum, since their ages change all the time; interfaces by
// their state and designated routers, neighbours by their state; of other rows only that they are
// there.
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "ospf_tables/session.hpp"

namespace tool {

struct WatchedFact {
  const char *name;  // for people
  const char *key;   // in JSON, as other commands have it
  std::string value;
  bool operator==(const WatchedFact &other) const { return value == other.value; }
};

struct WatchedRow {
  std::string kind;
  std::vector<WatchedFact> facts;
  bool is_lsa = false;
};

// Rows by their paths.
using WatchedRows = std::map<std::string, WatchedRow>;

// The rows at a path, as show has it, and those below. An LSA that has reached MaxAge is none any
// more.
WatchedRows watched_rows(ospf_tables::Session &session, const std::string &path);

// A line for each difference, in the order of the paths. Gives how many.
std::size_t print_changes(const WatchedRows &before, const WatchedRows &now, bool json,
                          std::FILE *out);

}  // namespace tool
