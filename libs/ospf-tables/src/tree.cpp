#include "ospf_tables/tree.hpp"

#include <algorithm>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/rows.hpp"

namespace ospf_tables {

namespace {

constexpr char root_name[] = "ospf";

// A record's text form. The buffer starts out blank, since the closing line is placed over a gap
// that keeps what the buffer held; it grows until the text leaves room. Printing also asks for the
// room that the record's image takes.
template <typename Ops>
std::string text_of(Session &session, typename Ops::Record *record) {
  const std::uint32_t image = Ops::length(session.handle(), space, record);
  for (std::uint32_t size = (1 << 14) + 2 * image;; size *= 4) {
    std::string text(size, ' ');
    const std::uint32_t length = Ops::print(session.handle(), space, text.data(), record,
                                            static_cast<std::int32_t>(size), session.err());
    session.check(Ops::name);
    if (length + 256 < size) return text.substr(0, length);
  }
}

template <typename Ops>
void walk(Session &session, typename Ops::Table *table, const std::string &above,
          TreeVisitor &visitor) {
  for_each_record<Ops>(session, table, [&](typename Ops::Record *record) {
    RowView row{Ops::kind, row_key<Ops>(session, record), "", record,
                [&] { return text_of<Ops>(session, record); }};
    session.check(Ops::name);
    if (!std::is_same_v<Ops, ospf_rev1_ops>) {
      row.path = above + (above.empty() ? "" : "/") + Ops::kind + "/" + row.key;
    }
    if (!visitor.enter(row)) return;
    if (auto *object = Ops::get(session.handle(), space, record); object != nullptr) {
      for_each_reference<Ops>([&]<typename Reference>(const Reference &reference) {
        auto *below = table_below(session, reference, object);
        if (below != nullptr) walk<typename Reference::Child>(session, below, row.path, visitor);
      });
    }
    visitor.leave();
  });
}

}  // namespace

tbl_ospf_rev1_table *root_table(Session &session, bool create) {
  auto *table =
      ospf_rev1_ops::open(session.handle(), space, root_name, create ? 0 : 1, session.err());
  // What is not there is no failure when it is only looked for.
  if (!create && *session.err() == KELP_ERR_NOT_FOUND) {
    *session.err() = 0;
    return nullptr;
  }
  session.check(ospf_rev1_ops::name);
  return table;
}

tbl_ospf_instance_rev1_table *instances_of_root(Session &session) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  tbl_ospf_rev1_table *roots = root_table(session, true);
  auto *root = first_record<ospf_rev1_ops>(session, roots, err);
  session.check(ospf_rev1_ops::name);
  if (root != nullptr) {
    ospf_rev1 *row = ospf_rev1_ops::get(handle, space, root);
    auto *there = table_below(session, std::get<0>(references<ospf_rev1_ops>), row);
    return there != nullptr
               ? there
               : add_table<ospf_instance_rev1_ops>(session, row, ospf_rev1_instance_set_by_ref);
  }
  NewRecord<ospf_rev1_ops> record(session);
  NewObject<ospf_rev1_ops> object(session);
  tbl_ospf_instance_rev1_table *instances =
      add_table<ospf_instance_rev1_ops>(session, record.put(object), ospf_rev1_instance_set_by_ref);
  record.insert_into(roots);
  return instances;
}

void replace_instance(Session &session, tbl_ospf_instance_rev1_table *instances,
                      tbl_ospf_instance_rev1_record *record) {
  kelp_handle *handle = session.handle();
  const auto *key = ospf_instance_rev1_ops::get_key(handle, space, record);
  for_each_record<ospf_instance_rev1_ops>(
      session, instances, [&](tbl_ospf_instance_rev1_record *other) {
        if (ospf_instance_rev1_ops::compare_keys(
                ospf_instance_rev1_ops::get_key(handle, space, other), key) == 0) {
          const std::string name = row_key<ospf_instance_rev1_ops>(session, other);
          session.told().erase(name);
          session.note_replaced(name);
          end_record<ospf_instance_rev1_ops>(session, other);
        }
      });
  ospf_instance_rev1_ops::insert(handle, space, instances, record, session.err());
  session.check(ospf_instance_rev1_ops::name);
}

void merge_into_tree(Session &session, tbl_ospf_rev1_table *others) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  auto *other = first_record<ospf_rev1_ops>(session, others, err);
  session.check(ospf_rev1_ops::name);
  if (other == nullptr) return;
  tbl_ospf_rev1_table *roots = root_table(session, true);
  auto *root = first_record<ospf_rev1_ops>(session, roots, err);
  session.check(ospf_rev1_ops::name);
  if (root == nullptr) {
    tbl_ospf_rev1_delete(handle, space, others, other, err);
    ospf_rev1_ops::insert(handle, space, roots, other, err);
    session.check(ospf_rev1_ops::name);
    return;
  }
  auto *arriving = table_below(session, std::get<0>(references<ospf_rev1_ops>),
                               ospf_rev1_ops::get(handle, space, other));
  if (arriving == nullptr) return;
  tbl_ospf_instance_rev1_table *instances = instances_of_root(session);
  for_each_record<ospf_instance_rev1_ops>(
      session, arriving, [&](tbl_ospf_instance_rev1_record *record) {
        tbl_ospf_instance_rev1_delete(handle, space, arriving, record, err);
        session.check(ospf_instance_rev1_ops::name);
        replace_instance(session, instances, record);
      });
}

void clear_tree(Session &session) {
  if (auto *roots = root_table(session, false); roots != nullptr) {
    empty_and_free<ospf_rev1_ops>(session, roots);
  }
  session.told().clear();
}

std::vector<Site> sites_of(Session &session) {
  std::vector<Site> sites;
  if (auto *roots = root_table(session, false); roots != nullptr) {
    tbl_ospf_rev1_ospf_rev1_singleton_id_walk(
        roots,
        [](void *record, void *found) -> std::uint32_t {
          const auto *row = static_cast<const kelp_record *>(record);
          static_cast<std::vector<Site> *>(found)->push_back({row->tenant_id, row->src});
          return 0;
        },
        &sites, session.err());
    session.check(ospf_rev1_ops::name);
  }
  std::ranges::sort(sites);
  return sites;
}

void walk_tree(Session &session, TreeVisitor &visitor) {
  if (auto *roots = root_table(session, false); roots != nullptr) {
    walk<ospf_rev1_ops>(session, roots, "", visitor);
  }
  session.check("reading the tree");
}

}  // namespace ospf_tables
