// The rows of a session's tree, for who looks at them again and again. The first look goes through
// all of them. From then on the store tells which blocks of memory commits changed, and only the
// rows that consist of these are looked at, with those to which they lead: a row that is new is
// linked to one that was there, a table that is new is referred to by such a row.
#pragma once

#include <kelp/table.h>

#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/session.hpp"

namespace ospf_replication {

class TreeWatch {
 public:
  explicit TreeWatch(ospf_tables::Session &session) : session_(session) {}

  // Within a lock. True when it looked at all rows.
  bool look();
  // Within the same lock, what the look found: paths of rows that went, or gave way to others,
  // since the last one, and the rows that may have changed, each behind the one above it. After a
  // look at all rows those are all that there are, and none is said to have gone.
  const std::vector<std::string> &gone() const { return gone_; }
  void for_each(const std::function<void(const TreeRow &)> &act) const;
  // Within the same lock: one of the rows that an earlier look found, unless it went. Rows cannot
  // be asked for one by one where two of them refer to one table.
  bool can_visit() const { return is_tree_; }
  void visit(const void *record, const std::function<void(const TreeRow &)> &act);
  // The next look is at all rows, as behind one that failed.
  void forget() { place_ = 0; }

 private:
  struct Node {
    const kelp_table *table;
    std::string path;  // empty for a row of another site
    std::vector<const void *> blocks;
    std::vector<const kelp_table *> below;
  };
  struct Table {
    const tree_exchange::TableRule *rule;
    std::string path;                // that of a row in it, without the row's key
    const kelp_record *referred_by;  // null for the root's, and while that is in doubt
    std::uint64_t nodes = 0;
  };
  struct Found {
    const kelp_record *record;
    const Node *node;
    const tree_exchange::TableRule *rule;
    std::uint32_t references;
    Digest stored;
  };
  // Something is not as changes alone would have left it, such as a row that was moved as it is.
  struct Unclear {};

  bool changes();
  void look_at_all();
  void follow_changes();
  void hear(const void *block, bool freed);
  void drop(const kelp_record *record);
  void doubt(const kelp_table *table, const kelp_record *referred_by);
  void explore(const e_avl_node *link, const kelp_table *table);
  void look_at(const kelp_record *record, Node &node);
  void look_at_blocks(const kelp_record *record, Node &node);
  void look_below(const kelp_record *record, Node &node, const Table &table);
  void forget_blocks(const kelp_record *record, Node &node);

  ospf_tables::Session &session_;
  std::uint64_t place_ = 0;  // in the store's changes; 0 when all is to be looked at
  const kelp_table *root_ = nullptr;
  // Rows of all sites, since they are linked with each other.
  std::unordered_map<const kelp_record *, Node> nodes_;
  std::unordered_map<const kelp_table *, Table> tables_;
  // Of what rows own, but for their records. A row whose octets are an address of what another one
  // owns has that too.
  std::unordered_multimap<const void *, const kelp_record *> owners_;

  // Of one look.
  std::vector<std::pair<const void *, bool>> changed_;
  std::unordered_set<const kelp_record *> touched_;
  std::unordered_set<const kelp_table *> touched_tables_;
  std::vector<const kelp_table *> doubted_;
  std::vector<std::string> gone_;
  std::vector<Found> found_;
  bool is_tree_ = true;  // no two rows refer to one table
  Bytes image_;
};

}  // namespace ospf_replication
