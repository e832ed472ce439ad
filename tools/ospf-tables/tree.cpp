#include "tree.hpp"

#include "row_keys.hpp"
#include "rows.hpp"

namespace tool {

namespace {

constexpr char root_name[] = "ospf";

// A record's text form. The buffer starts out blank, since the closing line is placed over a gap
// that keeps what the buffer held; it grows until the text leaves room.
template <typename Ops>
std::string text_of(Session &session, typename Ops::Record *record) {
  for (std::uint32_t size = 1 << 14;; size *= 4) {
    std::string text(size, ' ');
    const std::uint32_t length = Ops::print(session.handle(), space, text.data(), record,
                                            static_cast<std::int32_t>(size), session.err());
    session.check(Ops::name);
    if (length + 256 < size) return text.substr(0, length);
  }
}

template <typename Ops>
void walk(Session &session, typename Ops::Table *table, TreeVisitor &visitor) {
  for_each_record<Ops>(session, table, [&](typename Ops::Record *record) {
    const bool further = visitor.enter(
        {Ops::kind, row_key<Ops>(session, record), [&] { return text_of<Ops>(session, record); }});
    if (!further) return;
    if (auto *object = Ops::get(session.handle(), space, record); object != nullptr) {
      for_each_reference<Ops>([&]<typename Reference>(const Reference &reference) {
        auto *below = reference.get(session.handle(), space, object, session.err());
        session.check(reference.name);
        if (below != nullptr) walk<typename Reference::Child>(session, below, visitor);
      });
    }
    visitor.leave();
  });
}

}  // namespace

tbl_ospf_rev1_table *root_table(Session &session, bool create) {
  std::uint32_t err = 0;
  // What is not there is no failure here when it is only looked for.
  std::uint32_t *word = create ? session.err() : &err;
  auto *table = ospf_rev1_ops::open(session.handle(), space, root_name, create ? 0 : 1, word);
  session.check(ospf_rev1_ops::name);
  return table;
}

tbl_ospf_instance_rev1_table *instances_of_root(Session &session) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  tbl_ospf_rev1_table *roots = root_table(session, true);
  if (auto *record = ospf_rev1_ops::first(handle, space, roots, err); record != nullptr) {
    return session.checked(ospf_rev1_instance_get_by_ref(
                               handle, space, ospf_rev1_ops::get(handle, space, record), err),
                           "the instances of the root");
  }
  NewRecord<ospf_rev1_ops> record(session);
  NewObject<ospf_rev1_ops> object(session);
  tbl_ospf_instance_rev1_table *instances =
      add_table<ospf_instance_rev1_ops>(session, record.put(object), ospf_rev1_instance_set_by_ref);
  record.insert_into(roots);
  return instances;
}

void clear_tree(Session &session) {
  if (auto *roots = root_table(session, false); roots != nullptr) {
    empty_and_free<ospf_rev1_ops>(session, roots);
  }
}

void walk_tree(Session &session, TreeVisitor &visitor) {
  if (auto *roots = root_table(session, false); roots != nullptr) {
    walk<ospf_rev1_ops>(session, roots, visitor);
  }
  session.check("reading the tree");
}

}  // namespace tool
