#include "views/watched_rows.hpp"

#include <chrono>
#include <ctime>
#include <nlohmann/json.hpp>
#include <optional>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/lsa_view.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/rows.hpp"
#include "ospf_tables/tree.hpp"
#include "views/lsa_names.hpp"
#include "views/named_json.hpp"
#include "views/show.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

constexpr std::uint16_t max_age = 3600;

constexpr const char *neighbor_states[] = {"",        "Down",     "Attempt", "Init", "TwoWay",
                                           "ExStart", "Exchange", "Loading", "Full"};

std::string neighbor_state(std::int32_t state) {
  const bool known = state > 0 && state < static_cast<std::int32_t>(std::size(neighbor_states));
  return known ? neighbor_states[state] : std::to_string(state);
}

// Gives what is watched of a row.
struct Facts : FieldReader {
  void of_interface(ospf_interface *interface, WatchedRow &to) const {
    to.facts = {{"state", "state", text(interface, ospf_interface_state_get)},
                {"dr", "dr", key_word(value(interface, ospf_interface_dr_get))},
                {"bdr", "bdr", key_word(value(interface, ospf_interface_bdr_get))}};
  }
  void of_neighbor(ospf_neighbor *neighbor, WatchedRow &to) const {
    nbr_state_type *state = value(neighbor, ospf_neighbor_state_get);
    to.facts = {{"state", "state", neighbor_state(value(state, nbr_state_type_get_value))}};
  }
};

std::string time_now() {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
  const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
  std::tm parts{};
  char text[40];
  char whole[48];
  gmtime_r(&seconds, &parts);
  std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
  std::snprintf(whole, sizeof whole, "%s.%03dZ", text, static_cast<int>(milliseconds % 1000));
  return whole;
}

// Prints the differences of one look.
class Changes {
 public:
  Changes(bool json, std::FILE *out, const std::optional<Site> &site)
      : json_(json), out_(out), site_(site), time_(time_now()) {}

  void came(const std::string &path, const WatchedRow &row) { print(path, row, "new", nullptr); }
  void went(const std::string &path, const WatchedRow &row) {
    print(path, row, row.is_lsa ? "aged out" : "gone", nullptr);
  }
  void changed(const std::string &path, const WatchedRow &before, const WatchedRow &row) {
    print(path, row, row.is_lsa ? "newer" : "changed", &before);
  }
  std::size_t count() const { return count_; }

 private:
  void print(const std::string &path, const WatchedRow &row, const char *what,
             const WatchedRow *before) {
    ++count_;
    const auto was = [&](std::size_t at) {
      const bool differs = before != nullptr && before->facts[at] != row.facts[at];
      return differs ? &before->facts[at].value : nullptr;
    };
    if (json_) {
      nlohmann::ordered_json line = {{"time", time_}};
      line.update(of_site(site_, {{"change", what}, {"kind", row.kind}, {"path", path}}));
      for (std::size_t at = 0; at < row.facts.size(); ++at) {
        line[row.facts[at].key] = row.facts[at].value;
        if (was(at) != nullptr) line[std::string("was_") + row.facts[at].key] = *was(at);
      }
      std::fprintf(out_, "%s\n", line_of(line).c_str());
      return;
    }
    std::string line = time_ + " " + site_part(site_) + what + " " + path;
    for (std::size_t at = 0; at < row.facts.size(); ++at) {
      const WatchedFact &fact = row.facts[at];
      if (fact.value.empty() && was(at) == nullptr) continue;
      line += std::string(at == 0 ? ": " : ", ") + fact.name + " " + fact.value;
      if (was(at) != nullptr) line += " (was " + *was(at) + ")";
    }
    std::fprintf(out_, "%s\n", in_one_line(line).c_str());
  }

  bool json_;
  std::FILE *out_;
  const std::optional<Site> &site_;
  std::string time_;
  std::size_t count_ = 0;
};

// Nothing for one that is none any more.
template <typename Ops>
std::optional<WatchedLsa> lsa_of(Session &session, typename Ops::Record *record) {
  const LsaView lsa = read_lsa_front(session, record);
  if ((lsa.age & 0x7fff) >= max_age) return {};
  WatchedLsa watched{.id = lsa.link_state_id,
                     .version = static_cast<std::uint8_t>(lsa.version),
                     .type = lsa.type,
                     .sequence = lsa.sequence,
                     .checksum = lsa.checksum};
  auto *key = Ops::get_key(session.handle(), space, record);
  const FieldReader read{session};
  if constexpr (std::is_same_v<Ops, link_scope_lsa_ops>) {
    watched.router = *read.value(key, link_scope_lsa_key_adv_router_get);
  } else {
    watched.router = *read.value(key, area_scope_lsa_key_adv_router_get);
  }
  return watched;
}

WatchedRow row_of(const char *kind, const WatchedLsa &lsa) {
  return {kind,
          {{"type", "type_name", type_name(lsa.version, lsa.type)},
           {"sequence", "seq_num", lsa.sequence},
           {"checksum", "checksum", lsa.checksum}},
          true};
}

template <typename Ops>
void watch_lsas(Session &session, typename Ops::Table *table, WatchedLsas &to) {
  to.kind = Ops::kind;
  if (table == nullptr) return;
  for_each_record<Ops>(session, table, [&](typename Ops::Record *record) {
    if (auto lsa = lsa_of<Ops>(session, record)) to.list.push_back(*std::move(lsa));
  });
}

// The table of LSAs below a row, if it is one with such a table.
template <typename AboveOps>
bool watch_below(Session &session, const RowView &row, WatchedRows &rows) {
  auto *record = record_of<AboveOps>(row);
  if (record == nullptr) return false;
  const auto &reference = std::get<0>(references<AboveOps>);
  using Ops = typename std::remove_cvref_t<decltype(reference)>::Child;
  watch_lsas<Ops>(session,
                  table_below(session, reference, AboveOps::get(session.handle(), space, record)),
                  rows.lsas[row.path]);
  return true;
}

template <typename Ops>
bool watch_one(Session &session, const RowView &row, WatchedRows &rows) {
  auto *record = record_of<Ops>(row);
  if (record == nullptr) return false;
  if (const auto lsa = lsa_of<Ops>(session, record)) {
    rows.rows.emplace(row.path, row_of(Ops::kind, *lsa));
  }
  return true;
}

// Negative, 0 or positive, as the keys of two LSAs of a table are ordered.
int order_of(const WatchedLsa &a, const WatchedLsa &b) {
  if (a.id != b.id) return a.id < b.id ? -1 : 1;
  return ip_address_compare(&a.router, &b.router);
}

// Puts those that one of two lists has and the other has not, or has otherwise, to the rows of
// each.
void spread_changes(const std::string &above, const WatchedLsas &before, const WatchedLsas &now,
                    std::map<std::string, WatchedRow> &old_rows,
                    std::map<std::string, WatchedRow> &new_rows) {
  const auto put = [&](std::map<std::string, WatchedRow> &rows, const char *kind,
                       const WatchedLsa &lsa) {
    const std::string key = dotted(lsa.id) + "," + key_word(&lsa.router);
    rows.emplace(above + "/" + kind + "/" + key, row_of(kind, lsa));
  };
  auto old_one = before.list.begin();
  auto new_one = now.list.begin();
  while (old_one != before.list.end() || new_one != now.list.end()) {
    const int order = old_one == before.list.end() ? 1
                      : new_one == now.list.end()  ? -1
                                                   : order_of(*old_one, *new_one);
    const bool same = order == 0 && old_one->sequence == new_one->sequence &&
                      old_one->checksum == new_one->checksum && old_one->type == new_one->type;
    if (order <= 0 && !same) put(old_rows, before.kind, *old_one);
    if (order >= 0 && !same) put(new_rows, now.kind, *new_one);
    if (order <= 0) ++old_one;
    if (order >= 0) ++new_one;
  }
}

}  // namespace

std::size_t WatchedRows::size() const {
  std::size_t count = rows.size();
  for (const auto &[above, each] : lsas) count += each.list.size();
  return count;
}

WatchedRows watched_rows(Session &session, const std::string &path) {
  WatchedRows rows;
  visit_path(session, path, [&](const RowView &row) {
    if (row.path.empty()) return true;
    if (watch_one<link_scope_lsa_ops>(session, row, rows) ||
        watch_one<area_scope_lsa_ops>(session, row, rows)) {
      return false;
    }
    WatchedRow watched{std::string(row.kind), {}};
    const Facts facts{{session}};
    if (auto *record = record_of<ospf_interface_ops>(row)) {
      facts.of_interface(ospf_interface_ops::get(session.handle(), space, record), watched);
    } else if (auto *neighbor = record_of<ospf_neighbor_ops>(row)) {
      facts.of_neighbor(ospf_neighbor_ops::get(session.handle(), space, neighbor), watched);
    }
    rows.rows.emplace(row.path, std::move(watched));
    return !watch_below<link_scope_lsas_ops>(session, row, rows) &&
           !watch_below<area_scope_lsas_ops>(session, row, rows);
  });
  session.check("reading rows");
  return rows;
}

std::size_t print_changes(const WatchedRows &before, const WatchedRows &now, bool json,
                          std::FILE *out, const std::optional<Site> &site) {
  Changes changes(json, out, site);
  std::map<std::string, WatchedRow> old_rows = before.rows;
  std::map<std::string, WatchedRow> new_rows = now.rows;
  static const WatchedLsas none;
  for (const auto &[above, lsas] : before.lsas) {
    const auto place = now.lsas.find(above);
    spread_changes(above, lsas, place == now.lsas.end() ? none : place->second, old_rows, new_rows);
  }
  for (const auto &[above, lsas] : now.lsas) {
    if (!before.lsas.contains(above)) spread_changes(above, none, lsas, old_rows, new_rows);
  }
  auto old_one = old_rows.begin();
  auto new_one = new_rows.begin();
  while (old_one != old_rows.end() || new_one != new_rows.end()) {
    const bool only_old =
        new_one == new_rows.end() || (old_one != old_rows.end() && old_one->first < new_one->first);
    const bool only_new =
        old_one == old_rows.end() || (new_one != new_rows.end() && new_one->first < old_one->first);
    if (only_old) {
      changes.went(old_one->first, old_one->second);
    } else if (only_new) {
      changes.came(new_one->first, new_one->second);
    } else if (old_one->second.facts != new_one->second.facts) {
      changes.changed(new_one->first, old_one->second, new_one->second);
    }
    if (!only_new) ++old_one;
    if (!only_old) ++new_one;
  }
  return changes.count();
}

}  // namespace tool
