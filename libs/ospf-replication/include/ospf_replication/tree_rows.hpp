// All rows of a session's tree with their paths, from the root down.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "ospf_replication/messages.hpp"
#include "tree_exchange/table_rules.hpp"

namespace ospf_replication {

struct TreeRow {
  const std::string &path;
  const tree_exchange::TableRule &rule;
  void *record;
  std::uint32_t references;  // a bit for each reference, in field order, that leads to a table
  Digest stored;             // of the image with its references as they stand
};

// The token of a row's key: of its text, or of its image where other keys have the same text.
std::string token_of(ospf_tables::Session &session, const tree_exchange::TableRule &rule,
                     void *record);

void for_each_row(ospf_tables::Session &session, const std::function<void(const TreeRow &)> &act);

// A bit for each reference of the row that leads to a table.
std::uint32_t references_of(ospf_tables::Session &session, const tree_exchange::TableRule &rule,
                            void *record);

// The digests of the tables of a session's tree, as a commit marker of it would have them.
Sums sums_of(ospf_tables::Session &session);

// Where rows stand by their paths, for who meets many of each table one behind the other.
class RowPlaces {
 public:
  struct Place {
    bool is_one = false;                             // the path is one that rows have
    const tree_exchange::TableRule *rule = nullptr;  // null when this edition has no such table
    std::size_t depth = 0;                           // levels above the row's
  };
  Place of(std::string_view path);

 private:
  std::unordered_map<std::string, Place> tables_;  // by paths without the row's key
  std::string latest_;
  Place latest_place_;
};

}  // namespace ospf_replication
