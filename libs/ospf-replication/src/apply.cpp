#include "ospf_replication/apply.hpp"

#include <algorithm>

#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_replication {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

const std::string &path_of(const std::string *path) { return *path; }
const std::string &path_of(const Assembly::Entry *entry) { return entry->first; }

// By the level at which they stand; of one level as they were.
template <typename Row>
void sort_by_depth(std::vector<Row> &rows, bool deepest_first) {
  std::vector<std::vector<Row>> levels;
  for (const Row &row : rows) {
    const auto depth = static_cast<std::size_t>(std::ranges::count(path_of(row), '.'));
    if (levels.size() <= depth) levels.resize(depth + 1);
    levels[depth].push_back(row);
  }
  if (deepest_first) std::ranges::reverse(levels);
  rows.clear();
  for (const std::vector<Row> &level : levels) rows.insert(rows.end(), level.begin(), level.end());
}

bool is_empty(Session &session, const TableRule &rule, void *table) {
  bool empty = true;
  rule.for_each(session, table, [&](void *) { empty = false; });
  return empty;
}

// Ends a record that no table has taken yet.
class NewRow {
 public:
  NewRow(Session &session, const TableRule &rule, void *record)
      : session_(session), rule_(rule), record_(record) {}
  ~NewRow() {
    if (record_ != nullptr) rule_.end_record(session_, record_);
  }
  NewRow(const NewRow &) = delete;
  NewRow &operator=(const NewRow &) = delete;
  void *get() const { return record_; }
  void is_in_a_table() { record_ = nullptr; }

 private:
  Session &session_;
  const TableRule &rule_;
  void *record_;
};

}  // namespace

void Application::apply() {
  sort_out();
  for (const std::string *path : gone_) remove(*path);
  for (const Entry *entry : come_) put(entry->first, entry->second);
}

void Application::sort_out() {
  for (const Entry *entry : assembly_.in_order()) {
    const auto had = had_.find(entry->first);
    if (entry->second.is_gone) {
      if (had != had_.end() && !assembly_.from_nothing()) gone_.push_back(&had->first);
    } else if (had == had_.end() || had->second.row != entry->second.row) {
      come_.push_back(entry);
    }
  }
  if (assembly_.from_nothing()) {
    for (const auto &[path, had] : had_) {
      const auto held = assembly_.waiting().find(path);
      if (held == assembly_.waiting().end() || held->second.is_gone) gone_.push_back(&path);
    }
  }
  sort_by_depth(come_, false);
  sort_by_depth(gone_, true);
}

const Had *Application::find(std::string_view path) const {
  if (const auto staged = staged_.find(path); staged != staged_.end()) return &staged->second;
  if (removed_.contains(path)) return nullptr;
  const auto had = had_.find(std::string(path));
  return had == had_.end() ? nullptr : &had->second;
}

// The row above a path's. Rows of one level do not change where those of a higher one lie.
const Application::Above &Application::above(std::string_view path) {
  const std::string_view higher = path_above(path);
  if (higher != above_.path || above_.children == nullptr) {
    above_ = {higher, higher.empty() ? nullptr : find(higher), &children_[higher]};
  }
  return above_;
}

void Application::remove(const std::string &path) {
  const Had &had = had_.at(path);
  const auto counted = children_.find(path);
  const std::int64_t step = counted == children_.end() ? 0 : counted->second;
  if (static_cast<std::int64_t>(had.children) + step != 0) {
    throw Unsound(path + ": found a row that went with rows below it, expected those to go too");
  }
  if (had.record != nullptr) had.rule->end_record(session_, had.record);
  removed_.insert(path);
  --*above(path).children;
}

// The table in which the row is to stand.
void *Application::table_of(const std::string &path, const Had *parent) {
  if (parent == nullptr) return root_table(session_, true);
  const ReferenceRule *reference = reference_named(*parent->rule, steps_of(path).back().reference);
  void *table = reference->below(session_, parent->record);
  if (table == nullptr) {
    throw Unsound(path + ": found no table for the row, expected one at the row above it");
  }
  return table;
}

// Has the row's references lead to the tables of the row before it, or to new ones.
void Application::tie(const TableRule &rule, void *record, void *before, std::uint32_t references) {
  for (std::size_t at = 0; at < rule.references.size(); ++at) {
    const ReferenceRule &reference = rule.references[at];
    void *below = before == nullptr ? nullptr : reference.below(session_, before);
    if ((references >> at & 1) != 0 && reference.held(session_, record)) {
      void *table = below != nullptr ? below : reference.child->open(session_);
      reference.tie(session_, record, table);
      if (below != nullptr) reference.tie(session_, before, nullptr);
    } else if (below != nullptr && !is_empty(session_, *reference.child, below)) {
      throw Unsound(std::string(rule.kind) + ": found rows in " + reference.child->name +
                    ", to which the row leads no more, expected none");
    }
  }
}

void Application::put(const std::string &path, const Held &held) {
  const Had *before = find(path);
  const Above &higher = above(path);
  if (higher.had == nullptr && !higher.path.empty()) {
    throw Unsound(path + ": found a row without the row above it, expected that too");
  }
  Had had;
  had.row = held.row;
  had.luid = held.luid;
  had.rule = places_.of(path).rule;
  if (before == nullptr) {
    ++*higher.children;
  } else {
    had.children = before->children;
  }
  if (had.rule != nullptr) {
    had.record = put_record(path, held, *had.rule, before, higher.had);
    had.stored = stored_digest(session_, *had.rule, had.record);
  }
  staged_.insert_or_assign(path, had);
}

void *Application::put_record(const std::string &path, const Held &held, const TableRule &rule,
                              const Had *before, const Had *parent) {
  void *table = table_of(path, parent);
  NewRow row(session_, rule, rule.from_image(session_, held.image));
  const std::string_view expected = std::string_view(path).substr(path.rfind('.') + 1);
  if (const std::string key = token_of(session_, rule, row.get()); key != expected) {
    throw Unsound(path + ": found a row with the key " + key + ", expected that of its path");
  }
  tie(rule, row.get(), before == nullptr ? nullptr : before->record, held.references);
  if (before != nullptr) rule.end_record(session_, before->record);
  if (rule.add(session_, table, nullptr, row.get()) == Added::twice) {
    throw Unsound(path + ": found a row that the table has under another path, expected none");
  }
  void *record = row.get();
  row.is_in_a_table();
  return record;
}

void Application::enter(HadRows &had) {
  // By value: the paths may be those of the rows.
  const std::vector<std::string> removed(removed_.begin(), removed_.end());
  std::vector<std::pair<std::string, std::int64_t>> children;
  for (const auto &[path, step] : children_) {
    if (step != 0) children.emplace_back(path, step);
  }
  for (const auto &[path, row] : staged_) had.insert_or_assign(std::string(path), row);
  for (const std::string &path : removed) {
    if (!staged_.contains(path)) had.erase(path);
  }
  for (const auto &[path, step] : children) {
    if (const auto row = had.find(path); row != had.end()) {
      row->second.children =
          static_cast<std::uint64_t>(static_cast<std::int64_t>(row->second.children) + step);
    }
  }
}

}  // namespace ospf_replication
