// The tree that the tables form by their references, from the one root row down. Every level, and
// every table of the model, is walked by the same rule.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace ospf_tables {

// The table of the root row; null when `create` is false and nothing was loaded.
tbl_ospf_rev1_table *root_table(Session &session, bool create);

// The table of instances below the root row, both made when they are missing.
tbl_ospf_instance_rev1_table *instances_of_root(Session &session);

// Puts an instance into a table where the one of the same key gives way to it.
void replace_instance(Session &session, tbl_ospf_instance_rev1_table *instances,
                      tbl_ospf_instance_rev1_record *record);

// Moves what another table of roots holds into the tree. Into an empty tree the root row moves with
// all below it; else the instances below it move, and those of the same key give way to them. The
// other table stays the caller's.
void merge_into_tree(Session &session, tbl_ospf_rev1_table *others);

// The sites whose trees the database holds.
std::vector<Site> sites_of(Session &session);

// Empties and frees every table of the session's site.
void clear_tree(Session &session);

// One row on the way through the tree. The text is made when it is asked for.
struct RowView {
  std::string_view kind;  // what a path calls rows of this table, such as "area"
  std::string key;        // as a path names it, such as "0.0.0.1"
  std::string path;       // kinds and keys from the instance down; empty for the root row
  void *record;           // of the type that the table of this kind has, see record_of
  std::function<std::string()> text;
};

// The row's record if the row is of this table, else null.
template <typename Ops>
typename Ops::Record *record_of(const RowView &row) {
  return row.kind == Ops::kind ? static_cast<typename Ops::Record *>(row.record) : nullptr;
}

class TreeVisitor {
 public:
  virtual ~TreeVisitor() = default;
  // Called for each row before those below it; false passes over what is below.
  virtual bool enter(const RowView &row) = 0;
  virtual void leave() = 0;  // after the rows below a row that was entered
};

// Walks all rows below the root, in the order of each table. Throws LibraryFailure.
void walk_tree(Session &session, TreeVisitor &visitor);

}  // namespace ospf_tables
