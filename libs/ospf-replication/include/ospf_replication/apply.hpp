// Brings a follower's tree to what an assembly says, row by row within one transaction: what went
// goes from the leaves up, what came comes from the root down, and a row that changed gives its
// tables to the row that takes its place.
#pragma once

#include <stdexcept>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "ospf_replication/assembly.hpp"
#include "ospf_replication/subjects.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_replication {

// Rows that make no tree, although each is sound.
class Unsound : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Application {
 public:
  Application(ospf_tables::Session &session, const HadRows &had, const Assembly &assembly)
      : session_(session), had_(had), assembly_(assembly) {}

  // Within the write lock. Throws Unsound and LibraryFailure; all of it is to be undone then.
  void apply();
  // What the follower has when the transaction is committed.
  void enter(HadRows &had);
  std::size_t changed() const { return come_.size() + gone_.size(); }

 private:
  using Entry = std::pair<const std::string, Held>;
  void sort_out();
  void remove(const std::string &path);
  void put(const std::string &path, const Held &held);
  void *table_of(const std::string &path, const Step &step, const Had *parent);
  void tie(const tree_exchange::TableRule &rule, void *record, void *before,
           std::uint32_t references);
  const Had *find(const std::string &path) const;
  void count_child(const std::string &path, int step);

  ospf_tables::Session &session_;
  const HadRows &had_;
  const Assembly &assembly_;
  std::vector<const Entry *> come_;
  std::vector<const std::string *> gone_;
  std::unordered_map<std::string, Had> staged_;
  std::unordered_set<std::string> removed_;
  std::unordered_map<std::string, std::int64_t> children_;
};

}  // namespace ospf_replication
