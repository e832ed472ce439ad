// Brings a follower's tree to what an assembly says, row by row within one transaction: what went
// goes from the leaves up, what came comes from the root down, and a row that changed gives its
// tables to the row that takes its place.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
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
  Application(ospf_tables::Session &session, const HadRows &had, const Assembly &assembly,
              RowPlaces &places)
      : session_(session), had_(had), assembly_(assembly), places_(places) {}

  // Within the write lock. Throws Unsound and LibraryFailure; all of it is to be undone then.
  void apply();
  // What the follower has when the transaction is committed.
  void enter(HadRows &had);
  std::size_t changed() const { return come_.size() + gone_.size(); }

 private:
  using Entry = Assembly::Entry;
  // A row above others, which come one behind the other.
  struct Above {
    std::string_view path;
    const Had *had = nullptr;
    std::int64_t *children = nullptr;
  };

  void sort_out();
  void remove(const std::string &path);
  void put(const std::string &path, const Held &held);
  void *put_record(const std::string &path, const Held &held, const tree_exchange::TableRule &rule,
                   const Had *before, const Had *parent);
  void *table_of(const std::string &path, const Had *parent);
  void tie(const tree_exchange::TableRule &rule, void *record, void *before,
           std::uint32_t references);
  const Had *find(std::string_view path) const;
  const Above &above(std::string_view path);

  ospf_tables::Session &session_;
  const HadRows &had_;
  const Assembly &assembly_;
  RowPlaces &places_;
  std::vector<const Entry *> come_;
  std::vector<const std::string *> gone_;
  // By paths that lie in the assembly or in what the follower has.
  std::unordered_map<std::string_view, Had> staged_;
  std::unordered_set<std::string_view> removed_;
  std::unordered_map<std::string_view, std::int64_t> children_;
  Above above_;
};

}  // namespace ospf_replication
