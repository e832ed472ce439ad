#include "ospf_replication/tree_rows.hpp"

#include "ospf_replication/subjects.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_replication {

using namespace ospf_tables;
using namespace tree_exchange;

namespace {

class Walk {
 public:
  Walk(Session &session, const std::function<void(const TreeRow &)> &act)
      : session_(session), act_(act) {}

  void rows(const TableRule &rule, void *table, const char *reference) {
    rule.for_each(session_, table, [&](void *record) {
      const std::size_t length = path_.size();
      if (length != 0) path_ += '.';
      path_ += reference;
      path_ += '.';
      path_ += token_of(session_, rule, record);
      rule.stored_image(session_, record, image_);
      act_({path_, rule, record, references_of(session_, rule, record), digest_of(image_)});
      for (const ReferenceRule &below : rule.references) {
        if (void *child = below.below(session_, record); child != nullptr) {
          rows(*below.child, child, below.name);
        }
      }
      path_.resize(length);
    });
  }

 private:
  Session &session_;
  const std::function<void(const TreeRow &)> &act_;
  std::string path_;
  Bytes image_;
};

RowPlaces::Place place_of(const std::vector<Step> &steps) {
  if (steps.empty()) return {};
  if (steps.front().reference != root_rule().kind) return {true, nullptr, steps.size() - 1};
  const TableRule *rule = &root_rule();
  for (std::size_t level = 1; level < steps.size() && rule != nullptr; ++level) {
    const ReferenceRule *reference = reference_named(*rule, steps[level].reference);
    rule = reference == nullptr ? nullptr : reference->child;
  }
  return {true, rule, steps.size() - 1};
}

}  // namespace

std::string token_of(Session &session, const TableRule &rule, void *record) {
  Bytes image;
  const auto text = rule.telling_key(session, record, image);
  return text ? token_of(*text) : token_of(ByteView(image));
}

void for_each_row(Session &session, const std::function<void(const TreeRow &)> &act) {
  if (void *root = root_table(session, false); root != nullptr) {
    Walk(session, act).rows(root_rule(), root, root_rule().kind);
  }
}

std::uint32_t references_of(Session &session, const TableRule &rule, void *record) {
  std::uint32_t references = 0;
  for (std::size_t at = 0; at < rule.references.size(); ++at) {
    if (rule.references[at].below(session, record) != nullptr) references |= 1u << at;
  }
  return references;
}

Sums sums_of(Session &session) {
  Sums sums;
  for_each_row(session, [&](const TreeRow &row) {
    const Bytes image = row.rule.image(session, row.record);
    sums.add(luid_of(image), digest_of(row.path, row.references, image));
  });
  return sums;
}

RowPlaces::Place RowPlaces::of(std::string_view path) {
  constexpr std::size_t most_tables = 10'000;
  const std::size_t end = path.rfind('.');
  if (end == path.npos || path.size() > longest_path || !is_token(path.substr(end + 1))) return {};
  const std::string_view table = path.substr(0, end);
  if (table == latest_) return latest_place_;
  latest_ = table;
  const auto [place, is_new] = tables_.try_emplace(latest_);
  if (is_new) place->second = place_of(steps_of(path));
  latest_place_ = place->second;
  if (tables_.size() > most_tables) tables_.clear();
  return latest_place_;
}

}  // namespace ospf_replication
