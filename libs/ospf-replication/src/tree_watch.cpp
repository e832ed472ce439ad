#include "ospf_replication/tree_watch.hpp"

#include <kelp/changes.h>

#include <algorithm>
#include <cstddef>

#include "ospf_replication/subjects.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_replication {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

const kelp_record *record_of(const e_avl_node *link) {
  return reinterpret_cast<const kelp_record *>(reinterpret_cast<const char *>(link) -
                                               offsetof(kelp_record, avl_node));
}

// The rules take rows as things that can be changed.
void *row_of(const kelp_record *record) { return const_cast<kelp_record *>(record); }

bool is_of(const Site &site, const kelp_record *record) {
  return record->tenant_id == site.tenant && record->src == site.source;
}

}  // namespace

bool TreeWatch::look() {
  const auto *root = reinterpret_cast<const kelp_table *>(root_table(session_, false));
  const bool knows = changes() && root == root_;
  const std::uint64_t now = std::exchange(place_, 0);
  bool follows = knows;
  try {
    if (knows) follow_changes();
  } catch (const Unclear &) {
    follows = false;
  }
  if (!follows) {
    root_ = root;
    look_at_all();
  }
  if (is_tree_) place_ = now;
  return !follows;
}

void TreeWatch::for_each(const std::function<void(const TreeRow &)> &act) const {
  if (!is_tree_) return for_each_row(session_, act);
  for (const Found &found : found_) {
    act({found.node->path, *found.rule, row_of(found.record), found.references, found.stored});
  }
}

void TreeWatch::visit(const void *record, const std::function<void(const TreeRow &)> &act) {
  const auto place = nodes_.find(static_cast<const kelp_record *>(record));
  if (place == nodes_.end() || place->second.path.empty()) return;
  void *row = row_of(place->first);
  const TableRule &rule = *tables_.at(place->second.table).rule;
  rule.stored_image(session_, row, image_);
  act({place->second.path, rule, row, references_of(session_, rule, row), digest_of(image_)});
}

// Asks the store for what was changed since the last look; false when it cannot tell.
bool TreeWatch::changes() {
  changed_.clear();
  if (!session_.is_store()) return false;
  kelp_error error{};
  const bool knows = place_ != 0;
  const std::int32_t code = kelp_changes_since(
      session_.handle(), &place_,
      [](void *context, const void *block, std::uint32_t freed) {
        static_cast<TreeWatch *>(context)->changed_.emplace_back(block, freed != 0);
      },
      this, &error);
  if (code != 0 && code != KELP_TOO_LONG_AGO) throw LibraryFailure(error.text);
  return knows && code == 0;
}

void TreeWatch::look_at_all() {
  nodes_.clear();
  tables_.clear();
  owners_.clear();
  gone_.clear();
  found_.clear();
  is_tree_ = true;
  if (root_ == nullptr) return;
  tables_.insert_or_assign(root_, Table{&root_rule(), root_rule().kind, nullptr});
  try {
    explore(root_->avl_root.top, root_);
  } catch (const Unclear &) {
    is_tree_ = false;
  }
}

void TreeWatch::follow_changes() {
  touched_.clear();
  touched_tables_.clear();
  doubted_.clear();
  gone_.clear();
  found_.clear();
  for (const auto &[block, freed] : changed_) hear(block, freed);
  for (const kelp_table *table : touched_tables_) explore(table->avl_root.top, table);
  for (const kelp_record *record : touched_) {
    Node &node = nodes_.at(record);
    if (record->record_table != node.table) throw Unclear();
    explore(record->avl_node.left, node.table);
    explore(record->avl_node.right, node.table);
    look_at(record, node);
  }
  for (const kelp_table *table : doubted_) {
    const auto there = tables_.find(table);
    if (there == tables_.end() || there->second.referred_by != nullptr) continue;
    if (there->second.nodes != 0) throw Unclear();
    tables_.erase(there);  // empty, until the collector frees it
  }
}

// In the order of the changes: behind a block that was freed another one may begin there.
void TreeWatch::hear(const void *block, bool freed) {
  const auto *record = static_cast<const kelp_record *>(block);
  if (nodes_.contains(record)) {
    if (freed) {
      drop(record);
    } else {
      touched_.insert(record);
    }
    return;
  }
  if (const auto [owner, end] = owners_.equal_range(block); owner != end) {
    for (auto each = owner; each != end; ++each) touched_.insert(each->second);
    if (freed) owners_.erase(owner, end);
    return;
  }
  const auto table = tables_.find(static_cast<const kelp_table *>(block));
  if (table == tables_.end()) return;
  if (!freed) {
    touched_tables_.insert(table->first);
    return;
  }
  if (table->second.nodes != 0 || table->first == root_) throw Unclear();
  if (table->second.referred_by != nullptr) touched_.insert(table->second.referred_by);
  touched_tables_.erase(table->first);
  tables_.erase(table);
}

void TreeWatch::drop(const kelp_record *record) {
  const auto place = nodes_.find(record);
  Node &node = place->second;
  if (!node.path.empty()) gone_.push_back(node.path);
  for (const kelp_table *below : node.below) doubt(below, record);
  forget_blocks(record, node);
  --tables_.at(node.table).nodes;
  touched_.erase(record);
  nodes_.erase(place);
}

// A row does not refer to the table any more: it went too, or another row does.
void TreeWatch::doubt(const kelp_table *table, const kelp_record *referred_by) {
  const auto there = tables_.find(table);
  if (there == tables_.end() || there->second.referred_by != referred_by) return;
  there->second.referred_by = nullptr;
  doubted_.push_back(table);
}

// Looks at the rows below a link that are new.
void TreeWatch::explore(const e_avl_node *link, const kelp_table *table) {
  if (link == nullptr) return;
  const kelp_record *record = record_of(link);
  const auto [place, is_new] = nodes_.try_emplace(record);
  Node &node = place->second;
  if (!is_new) {
    if (node.table != table) throw Unclear();
    return;
  }
  node.table = table;
  ++tables_.at(table).nodes;
  explore(link->left, table);
  look_at(record, node);
  explore(link->right, table);
}

void TreeWatch::look_at(const kelp_record *record, Node &node) {
  if (!is_of(session_.site(), record)) {
    if (!node.path.empty()) throw Unclear();
    return;
  }
  const Table &table = tables_.at(node.table);
  const std::string path = table.path + '.' + token_of(session_, *table.rule, row_of(record));
  if (!node.path.empty() && node.path != path) throw Unclear();
  node.path = path;
  look_at_blocks(record, node);
  table.rule->stored_image(session_, row_of(record), image_);
  found_.push_back({record, &node, table.rule, 0, digest_of(image_)});
  found_.back().references = references_of(session_, *table.rule, row_of(record));
  look_below(record, node, table);
}

void TreeWatch::look_at_blocks(const kelp_record *record, Node &node) {
  if (!session_.is_store()) return;
  forget_blocks(record, node);
  kelp_error error{};
  const std::int32_t code = kelp_record_blocks(
      session_.handle(), record,
      [](void *context, const void *block, std::uint32_t) {
        static_cast<std::vector<const void *> *>(context)->push_back(block);
      },
      &node.blocks, &error);
  if (code != 0) throw LibraryFailure(error.text);
  std::erase(node.blocks, record);
  for (const void *block : node.blocks) owners_.emplace(block, record);
}

void TreeWatch::forget_blocks(const kelp_record *record, Node &node) {
  for (const void *block : node.blocks) {
    const auto [begin, end] = owners_.equal_range(block);
    const auto own =
        std::find_if(begin, end, [&](const auto &each) { return each.second == record; });
    if (own != end) owners_.erase(own);
  }
  node.blocks.clear();
}

void TreeWatch::look_below(const kelp_record *record, Node &node, const Table &table) {
  node.below.resize(table.rule->references.size());
  for (std::size_t at = 0; at < node.below.size(); ++at) {
    const ReferenceRule &reference = table.rule->references[at];
    const auto *below = static_cast<const kelp_table *>(reference.below(session_, row_of(record)));
    if (const kelp_table *before = std::exchange(node.below[at], below); before != below) {
      doubt(before, record);
    }
    if (below == nullptr) continue;
    const std::string path = node.path + '.' + reference.name;
    const auto [place, is_new] = tables_.try_emplace(below, Table{reference.child, path, record});
    Table &there = place->second;
    if (is_new) {
      explore(below->avl_root.top, below);
    } else if (there.path != path) {
      throw Unclear();
    } else {
      there.referred_by = record;
    }
  }
}

}  // namespace ospf_replication
