// Brings a follower's tree to what an assembly says, row by row within one transaction: what went
// goes from the leaves up, what came comes from the root down, and a row that changed is read into
// the one that is there, or gives its tables to the row that takes its place.
#pragma once

#include <array>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ospf_replication/assembly.hpp"
#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_replication {

// Rows that make no tree, although each is sound.
class Unsound : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Application {
 public:
  // had is what the assembly stands on.
  Application(ospf_tables::Session &session, HadRows &had, Assembly &assembly)
      : session_(session), had_(had), assembly_(assembly) {}

  // Within the write lock. Throws Unsound and LibraryFailure; all of it is to be undone then.
  void apply();
  // Brings what the follower has to what it is when the transaction is committed.
  void enter();
  std::size_t changed() const { return changed_; }

 private:
  struct Coming {
    Held *held;
    HadRow *before;  // null for a row that is new
    Had now;
  };
  // The table in which rows stand that come one behind the other, and the row above them.
  struct Above {
    std::string_view path;  // of the rows, without their keys
    std::string_view row;
    const Had *had = nullptr;
    std::int64_t *children = nullptr;
    void *table = nullptr;
  };
  template <typename Row>
  using ByDepth = std::array<std::vector<Row>, deepest_path>;

  void sort_out();
  void remove(const HadRow &row);
  void put(Coming &row);
  void put_record(Coming &row, Above &above);
  bool refill(Coming &row);
  void *table_of(std::string_view path, Above &above);
  void tie(const tree_exchange::TableRule &rule, void *record, void *before,
           std::uint32_t references);
  const Had *find(std::string_view path) const;
  Above &above(std::string_view path);

  ospf_tables::Session &session_;
  HadRows &had_;
  Assembly &assembly_;
  ByDepth<Coming> come_;
  ByDepth<HadRow *> gone_;
  std::size_t changed_ = 0;
  // By paths that lie in the assembly or in what the follower has.
  std::unordered_map<std::string_view, std::int64_t> children_;
  Above above_;
  Bytes image_;
};

}  // namespace ospf_replication
