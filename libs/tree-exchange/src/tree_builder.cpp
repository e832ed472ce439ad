#include "tree_exchange/tree_builder.hpp"

#include "ospf_tables/tree.hpp"
#include "quoted.hpp"

namespace tree_exchange {

using namespace ospf_tables;

namespace {

std::string row_name(Session &session, const TableRule &rule, void *record) {
  return std::string(rule.kind) + "/" + rule.key(session, record);
}

}  // namespace

TreeBuilder::~TreeBuilder() {
  if (root_ != nullptr) root_rule().free(session_, root_);
}

void TreeBuilder::open_table(std::string_view reference, const TableRule *table) {
  if (levels_.empty()) {
    if (root_ != nullptr) throw Misplaced("a second tree", "the end");
    if (!reference.empty() || table != &root_rule()) {
      throw Misplaced(quoted(table->name) + (reference.empty() ? "" : " under a reference"),
                      std::string(root_rule().name) + ", where a tree begins");
    }
    root_ = table->open(session_);
    levels_.push_back({table, root_});
    return;
  }
  Level &level = levels_.back();
  const TableRule &parent = *level.rule;
  if (level.last_row == nullptr) throw Misplaced("a table", "a row that refers to it");
  const ReferenceRule *rule = reference_named(parent, reference);
  if (rule == nullptr) {
    throw Misplaced("the reference " + quoted(reference),
                    list_of_references(parent) + " of " + parent.name);
  }
  if (rule->child != table) {
    throw Misplaced(quoted(table->name) + " under the reference " + quoted(reference),
                    rule->child->name);
  }
  const auto index = static_cast<std::size_t>(rule - parent.references.data());
  if (index < level.next_reference) {
    throw Misplaced("the reference " + quoted(reference) + " behind " +
                        quoted(parent.references[level.next_reference - 1].name),
                    "each reference once and in field order");
  }
  if (!rule->held(session_, level.last_row)) {
    throw Misplaced("the reference " + quoted(reference) + " of a row at a variant without it",
                    "a row at a later variant");
  }
  level.next_reference = index + 1;
  void *below = table->open(session_);
  try {
    rule->tie(session_, level.last_row, below);
  } catch (...) {
    table->free(session_, below);
    throw;
  }
  levels_.push_back({table, below});
}

void TreeBuilder::add_row(void *record) {
  Level &level = levels_.back();
  if (level.table == root_ && level.rows != 0) {
    level.rule->end_record(session_, record);
    throw Misplaced("a second row of " + std::string(level.rule->name), "one root");
  }
  Added added;
  try {
    added = level.rule->add(session_, level.table, level.last_row, record);
  } catch (...) {
    level.rule->end_record(session_, record);
    throw;
  }
  if (added == Added::twice) {
    const std::string row = row_name(session_, *level.rule, record);
    level.rule->end_record(session_, record);
    throw Misplaced("a second row " + row, "each key once in a table");
  }
  if (added == Added::out_of_order) {
    throw Misplaced("the row " + row_name(session_, *level.rule, record) + " behind " +
                        row_name(session_, *level.rule, level.last_row),
                    "the order of the keys");
  }
  level.last_row = record;
  level.next_reference = 0;
  ++level.rows;
  ++rows_;
}

void TreeBuilder::give() { merge_into_tree(session_, static_cast<tbl_ospf_rev1_table *>(root_)); }

}  // namespace tree_exchange
