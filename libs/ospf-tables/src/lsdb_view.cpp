#include "ospf_tables/lsdb_view.hpp"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "ospf_tables/field_reader.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_tables {

namespace {

class LsdbReader : public TreeVisitor {
 public:
  explicit LsdbReader(Session &session) : session_(session) {}
  std::vector<LsdbEntry> entries;

  bool enter(const RowView &row) override {
    if (auto *record = record_of<link_scope_lsa_ops>(row)) return add(row, record);
    if (auto *record = record_of<area_scope_lsa_ops>(row)) return add(row, record);
    Place place = places_.empty() ? Place{} : places_.back();
    const FieldReader read{session_};
    if (auto *record = record_of<ospf_instance_rev1_ops>(row)) {
      place.instance = row.key;
      place.router_id =
          read.value(ospf_instance_rev1_ops::get_key(session_.handle(), space, record),
                     ospf_instance_rev1_key_router_id_get_value);
      const auto told = session_.told().find(row.key);
      if (told != session_.told().end()) place.ages = told->second.ages;
    } else if (auto *area = record_of<ospf_area_ops>(row)) {
      place.area = read.value(ospf_area_ops::get(session_.handle(), space, area),
                              ospf_area_area_id_get_value);
    } else if (row.kind == ospf_interface_ops::kind) {
      place.interface = row.key;
    }
    places_.push_back(std::move(place));
    return true;
  }

  void leave() override { places_.pop_back(); }

 private:
  struct Place {
    std::string instance;
    std::uint32_t router_id = 0;
    std::optional<std::uint32_t> area;
    std::optional<std::string> interface;
    std::optional<Ages> ages;
  };

  template <typename Record>
  bool add(const RowView &row, Record *record) {
    const Place &place = places_.back();
    LsdbEntry entry{std::string(row.kind),
                    row.path,
                    place.instance,
                    place.router_id,
                    place.area,
                    std::nullopt,
                    place.ages,
                    read_lsa(session_, record)};
    // The place of a row is where the model has room for it: a traffic-engineering LSA of an area,
    // say, stands below an interface. What it belongs to is its scope's.
    entry.site = session_.named_site();
    if (entry.lsa.scope() == Scope::as) entry.area.reset();
    if (entry.lsa.scope() == Scope::link) entry.interface = place.interface;
    entries.push_back(std::move(entry));
    return false;
  }

  Session &session_;
  std::vector<Place> places_;
};

auto order(const LsdbEntry &entry) {
  return std::tuple(!entry.area.has_value(), entry.area.value_or(0), entry.interface.has_value(),
                    std::string_view(entry.interface ? *entry.interface : std::string_view()),
                    entry.lsa.type, entry.lsa.link_state_id, entry.lsa.adv_router);
}

}  // namespace

std::vector<LsdbEntry> read_lsdb(Session &session) {
  LsdbReader reader(session);
  walk_tree(session, reader);
  // The walk goes by instance already; where these change is where a range to sort ends.
  auto &entries = reader.entries;
  for (auto begin = entries.begin(); begin != entries.end();) {
    const auto end = std::find_if(begin, entries.end(), [&](const LsdbEntry &entry) {
      return entry.instance != begin->instance;
    });
    std::stable_sort(begin, end,
                     [](const LsdbEntry &a, const LsdbEntry &b) { return order(a) < order(b); });
    begin = end;
  }
  return std::move(entries);
}

}  // namespace ospf_tables
