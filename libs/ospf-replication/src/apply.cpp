#include "ospf_replication/apply.hpp"

#include <algorithm>

#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_replication {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

std::ptrdiff_t depth_of(const std::string &path) { return std::ranges::count(path, '.'); }

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
  for (const Entry &entry : assembly_.waiting()) {
    const auto had = had_.find(entry.first);
    if (entry.second.is_gone) {
      if (had != had_.end() && !assembly_.from_nothing()) gone_.push_back(&had->first);
    } else if (had == had_.end() || had->second.row != entry.second.row) {
      come_.push_back(&entry);
    }
  }
  if (assembly_.from_nothing()) {
    for (const auto &[path, had] : had_) {
      const auto held = assembly_.waiting().find(path);
      if (held == assembly_.waiting().end() || held->second.is_gone) gone_.push_back(&path);
    }
  }
  const auto depth = [](const auto *entry) {
    if constexpr (std::is_same_v<decltype(entry), const std::string *>) {
      return depth_of(*entry);
    } else {
      return depth_of(entry->first);
    }
  };
  std::ranges::stable_sort(come_, std::ranges::less{}, depth);
  std::ranges::stable_sort(gone_, std::ranges::greater{}, depth);
}

const Had *Application::find(const std::string &path) const {
  if (const auto staged = staged_.find(path); staged != staged_.end()) return &staged->second;
  if (removed_.contains(path)) return nullptr;
  const auto had = had_.find(path);
  return had == had_.end() ? nullptr : &had->second;
}

void Application::count_child(const std::string &path, int step) {
  if (const std::string_view above = path_above(path); !above.empty()) {
    children_[std::string(above)] += step;
  }
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
  count_child(path, -1);
}

// The table in which the row is to stand.
void *Application::table_of(const std::string &path, const Step &step, const Had *parent) {
  if (parent == nullptr) return root_table(session_, true);
  const ReferenceRule *reference = reference_named(*parent->rule, step.reference);
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
  const std::string above(path_above(path));
  const Had *parent = above.empty() ? nullptr : find(above);
  if (parent == nullptr && !above.empty()) {
    throw Unsound(path + ": found a row without the row above it, expected that too");
  }
  Had had;
  had.row = held.row;
  had.luid = held.luid;
  had.rule = rule_at(path);
  if (before == nullptr) {
    count_child(path, 1);
  } else {
    had.children = before->children;
  }
  if (had.rule != nullptr) {
    const Step step = steps_of(path).back();
    void *table = table_of(path, step, parent);
    NewRow row(session_, *had.rule, had.rule->from_image(session_, held.image));
    if (const std::string key = token_of(session_, *had.rule, row.get()); key != step.key) {
      throw Unsound(path + ": found a row with the key " + key + ", expected that of its path");
    }
    tie(*had.rule, row.get(), before == nullptr ? nullptr : before->record, held.references);
    if (before != nullptr) had.rule->end_record(session_, before->record);
    if (had.rule->add(session_, table, nullptr, row.get()) == Added::twice) {
      throw Unsound(path + ": found a row that the table has under another path, expected none");
    }
    had.record = row.get();
    row.is_in_a_table();
    had.stored = stored_digest(session_, *had.rule, had.record);
  }
  staged_.insert_or_assign(path, had);
}

void Application::enter(HadRows &had) {
  // By value: the paths may be those of the rows.
  for (const std::string &path : removed_) {
    if (!staged_.contains(path)) had.erase(path);
  }
  for (const auto &[path, row] : staged_) had.insert_or_assign(path, row);
  for (const auto &[path, step] : children_) {
    if (const auto row = had.find(path); row != had.end()) {
      row->second.children =
          static_cast<std::uint64_t>(static_cast<std::int64_t>(row->second.children) + step);
    }
  }
}

}  // namespace ospf_replication
