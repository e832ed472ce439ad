// Builds a tree aside, row by row in tree order, and gives it to the tree of the session when it is
// whole. Readers of streams and documents tell it what comes; it refuses what no tree can have, and
// a builder that ends before it was told to give leaves the session's tree as it was.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "tree_exchange/table_rules.hpp"

namespace tree_exchange {

// What cannot stand where it came. The reader that met it adds the place.
class Misplaced : public std::runtime_error {
 public:
  Misplaced(std::string found_, std::string expected_)
      : std::runtime_error("found " + found_ + ", expected " + expected_),
        found(std::move(found_)),
        expected(std::move(expected_)) {}
  const std::string found;
  const std::string expected;
};

class TreeBuilder {
 public:
  explicit TreeBuilder(ospf_tables::Session &session) : session_(session) {}
  ~TreeBuilder();
  TreeBuilder(const TreeBuilder &) = delete;
  TreeBuilder &operator=(const TreeBuilder &) = delete;

  // Opens the table that the last row's reference leads to; with an empty name the table of the
  // root. `table` is the table that the input says it is.
  void open_table(std::string_view reference, const TableRule *table);
  // The table that is open now; null outside all of them.
  const TableRule *open_rule() const { return levels_.empty() ? nullptr : levels_.back().rule; }
  // Adds a row to it. The record is the builder's from now on, also when it is refused.
  void add_row(void *record);
  std::uint32_t rows_of_table() const { return levels_.back().rows; }
  std::uint64_t rows() const { return rows_; }
  void close_table() { levels_.pop_back(); }
  // The root's table has been opened and closed again.
  bool is_whole() const { return root_ != nullptr && levels_.empty(); }

  // Moves what was built into the session's tree, where instances of the same key give way.
  void give();

 private:
  struct Level {
    const TableRule *rule;
    void *table;
    void *last_row = nullptr;
    std::size_t next_reference = 0;  // of the last row; those before it have had their turn
    std::uint32_t rows = 0;
  };

  ospf_tables::Session &session_;
  void *root_ = nullptr;
  std::vector<Level> levels_;
  std::uint64_t rows_ = 0;
};

}  // namespace tree_exchange
