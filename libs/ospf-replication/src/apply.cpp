#include "ospf_replication/apply.hpp"

#include <algorithm>

#include "ospf_replication/subjects.hpp"
#include "ospf_replication/tree_rows.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_replication {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

std::size_t depth_of(std::string_view path) {
  return static_cast<std::size_t>(std::ranges::count(path, '.')) / 2;
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

[[noreturn]] void refuse_key(const std::string &path, const std::string &key) {
  throw Unsound(path + ": found a row with the key " + key + ", expected that of its path");
}

}  // namespace

void Application::apply() {
  sort_out();
  for (auto level = gone_.rbegin(); level != gone_.rend(); ++level) {
    for (const HadRow *row : *level) remove(*row);
  }
  above_ = {};
  for (std::vector<Coming> &level : come_) {
    for (Coming &row : level) put(row);
  }
}

void Application::sort_out() {
  const auto goes = [&](HadRow &row, std::size_t depth) {
    gone_[depth].push_back(&row);
    ++changed_;
  };
  std::size_t stay = 0;
  assembly_.waiting().for_each([&](Held &held) {
    const auto had = had_.find(HashedPath(held.path, held.hash));
    HadRow *before = had == had_.end() ? nullptr : &*had;
    held.coming = nullptr;
    if (held.is_gone) {
      if (before != nullptr && !assembly_.from_nothing()) goes(*before, held.place.depth);
      return;
    }
    if (before != nullptr) ++stay;
    if (before == nullptr || before->second.row != held.row) {
      come_[held.place.depth].push_back({&held, before, {}});
      ++changed_;
    }
  });
  for (std::vector<Coming> &level : come_) {
    for (Coming &row : level) row.held->coming = &row.now;
  }
  if (!assembly_.from_nothing() || stay == had_.size()) return;
  for (HadRow &row : had_) {
    const Held *held = assembly_.waiting().find(HashedPath(row.first));
    if (held == nullptr || held->is_gone) goes(row, depth_of(row.first));
  }
}

// The row of a path as it is to be; null for one that is not there then.
const Had *Application::find(std::string_view path) const {
  const HashedPath hashed(path);
  const Held *held = assembly_.waiting().find(hashed);
  if (held == nullptr ? assembly_.from_nothing() : held->is_gone) return nullptr;
  if (held != nullptr && held->coming != nullptr) return held->coming;
  const auto had = had_.find(hashed);
  return had == had_.end() ? nullptr : &had->second;
}

// What is above a path's row. Rows of one level do not change where those of a higher one lie.
Application::Above &Application::above(std::string_view path) {
  const std::string_view table = path.substr(0, path.rfind('.'));
  if (above_.children == nullptr || table != above_.path) {
    const std::string_view row = path_above(path);
    above_ = {table, row, row.empty() ? nullptr : find(row), &children_[row]};
  }
  return above_;
}

void Application::remove(const HadRow &row) {
  const auto &[path, had] = row;
  const auto counted = children_.find(path);
  const std::int64_t step = counted == children_.end() ? 0 : counted->second;
  if (static_cast<std::int64_t>(had.children) + step != 0) {
    throw Unsound(path + ": found a row that went with rows below it, expected those to go too");
  }
  if (had.record != nullptr) had.rule->end_record(session_, had.record);
  --*above(path).children;
}

// The table in which the row is to stand.
void *Application::table_of(std::string_view path, Above &above) {
  if (above.had == nullptr) return root_table(session_, true);
  if (above.table == nullptr) {
    const std::string_view name = above.path.substr(above.row.size() + 1);
    const ReferenceRule *reference = reference_named(*above.had->rule, name);
    above.table = reference->below(session_, above.had->record);
  }
  if (above.table == nullptr) {
    throw Unsound(std::string(path) +
                  ": found no table for the row, expected one at the row above it");
  }
  return above.table;
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

void Application::put(Coming &row) {
  const Held &held = *row.held;
  Above &higher = above(held.path);
  if (higher.had == nullptr && !higher.row.empty()) {
    throw Unsound(held.path + ": found a row without the row above it, expected that too");
  }
  row.now.row = held.row;
  row.now.luid = held.luid;
  row.now.rule = held.place.rule;
  if (row.before == nullptr) {
    ++*higher.children;
  } else {
    row.now.children = row.before->second.children;
  }
  if (row.now.rule != nullptr) {
    if (!refill(row)) put_record(row, higher);
    row.now.is_made_here = true;
    row.now.stored = digest_of(image_);
  }
}

// Reads the image into the row that is there. False where another has to take its place.
bool Application::refill(Coming &row) {
  const TableRule &rule = *row.now.rule;
  if (row.before == nullptr || !row.before->second.is_made_here || rule.refill == nullptr ||
      !session_.is_store()) {
    return false;
  }
  const Held &held = *row.held;
  row.now.record = row.before->second.record;
  switch (rule.refill(session_, row.now.record, held.image, image_)) {
    case Refilled::is_that:
      return true;
    case Refilled::differs:
      return false;
    case Refilled::has_another_key:
      break;
  }
  refuse_key(held.path, token_of(session_, rule, row.now.record));
}

// Puts a record of the image into the table, and its image as it is there into image_.
void Application::put_record(Coming &row, Above &higher) {
  const Held &held = *row.held;
  const TableRule &rule = *row.now.rule;
  void *table = table_of(held.path, higher);
  NewRow made(session_, rule, rule.from_image(session_, held.image));
  const std::string_view expected = std::string_view(held.path).substr(higher.path.size() + 1);
  if (const std::string key = token_of(session_, rule, made.get()); key != expected) {
    refuse_key(held.path, key);
  }
  void *before = row.before == nullptr ? nullptr : row.before->second.record;
  tie(rule, made.get(), before, held.references);
  if (before != nullptr) rule.end_record(session_, before);
  if (rule.add(session_, table, nullptr, made.get()) == Added::twice) {
    throw Unsound(held.path + ": found a row that the table has under another path, expected none");
  }
  row.now.record = made.get();
  made.is_in_a_table();
  rule.stored_image(session_, row.now.record, image_);
}

void Application::enter() {
  // By value: the paths are those of rows that go, or move.
  std::vector<std::pair<std::string, std::int64_t>> children;
  for (const auto &[path, step] : children_) {
    if (step != 0) children.emplace_back(path, step);
  }
  for (const auto &level : gone_) {
    for (const HadRow *row : level) had_.erase(had_.find(row->first));
  }
  if (changed_ > had_.size()) had_.reserve(had_.size() + changed_);
  for (auto &level : come_) {
    for (Coming &row : level) {
      if (row.before != nullptr) {
        row.before->second = row.now;
      } else {
        had_.emplace(std::move(row.held->path), row.now);
      }
    }
  }
  for (const auto &[path, step] : children) {
    if (const auto row = had_.find(path); row != had_.end()) {
      row->second.children =
          static_cast<std::uint64_t>(static_cast<std::int64_t>(row->second.children) + step);
    }
  }
}

}  // namespace ospf_replication
