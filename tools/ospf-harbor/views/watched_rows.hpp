// What `watch` tells of rows: which came and went, and what changed in those that stayed. LSAs are
// told apart by sequence number and checksum, since their ages change all the time; interfaces by
// their state and designated routers, neighbours by their state; of other rows only that they are
// there.
#pragma once

#include <kelp/primitives.h>

#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
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

// An LSA as few words, of which a large database has many: what is told of it is made when it has
// changed.
struct WatchedLsa {
  std::uint32_t id = 0;  // with the router the key of its row
  ip_address router{};
  std::uint8_t version = 0;
  std::uint16_t type = 0;
  std::string sequence;
  std::string checksum;
};

struct WatchedLsas {
  const char *kind = "";
  std::vector<WatchedLsa> list;  // in the order of the table
};

struct WatchedRows {
  std::map<std::string, WatchedRow> rows;   // by their paths
  std::map<std::string, WatchedLsas> lsas;  // by the paths of the rows above them

  std::size_t size() const;
};

// The rows at a path, as show has it, and those below. An LSA that has reached MaxAge is none any
// more.
WatchedRows watched_rows(ospf_tables::Session &session, const std::string &path);

// A line for each difference, in the order of the paths, with whose it is where a site is given.
// Gives how many.
std::size_t print_changes(const WatchedRows &before, const WatchedRows &now, bool json,
                          std::FILE *out,
                          const std::optional<ospf_tables::Site> &site = std::nullopt);

}  // namespace tool
