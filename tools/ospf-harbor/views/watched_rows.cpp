#include "views/watched_rows.hpp"

#include <chrono>
#include <ctime>
#include <nlohmann/json.hpp>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/lsa_view.hpp"
#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"
#include "views/lsa_names.hpp"
#include "views/show.hpp"

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

// Gives what is watched of a row; false for one that is not.
struct Facts : FieldReader {
  template <typename Record>
  bool of_lsa(Record *record, WatchedRow &to) const {
    const LsaView lsa = read_lsa(session, record);
    to.is_lsa = true;
    to.facts = {{"type", "type_name", type_name(lsa.version, lsa.type)},
                {"sequence", "seq_num", lsa.sequence},
                {"checksum", "checksum", lsa.checksum}};
    return (lsa.age & 0x7fff) < max_age;
  }
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
  Changes(bool json, std::FILE *out) : json_(json), out_(out), time_(time_now()) {}

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
      nlohmann::ordered_json line = {
          {"time", time_}, {"change", what}, {"kind", row.kind}, {"path", path}};
      for (std::size_t at = 0; at < row.facts.size(); ++at) {
        line[row.facts[at].key] = row.facts[at].value;
        if (was(at) != nullptr) line[std::string("was_") + row.facts[at].key] = *was(at);
      }
      constexpr auto replace = nlohmann::ordered_json::error_handler_t::replace;
      std::fprintf(out_, "%s\n", line.dump(-1, ' ', true, replace).c_str());
      return;
    }
    std::string line = time_ + " " + what + " " + path;
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
  std::string time_;
  std::size_t count_ = 0;
};

}  // namespace

WatchedRows watched_rows(Session &session, const std::string &path) {
  WatchedRows rows;
  visit_path(session, path, [&](const RowView &row) {
    if (row.path.empty()) return true;
    WatchedRow watched{std::string(row.kind), {}};
    const Facts facts{{session}};
    bool is_there = true;
    bool is_lsa = true;
    if (auto *lsa = record_of<link_scope_lsa_ops>(row)) {
      is_there = facts.of_lsa(lsa, watched);
    } else if (auto *area_lsa = record_of<area_scope_lsa_ops>(row)) {
      is_there = facts.of_lsa(area_lsa, watched);
    } else {
      is_lsa = false;
    }
    if (auto *record = record_of<ospf_interface_ops>(row)) {
      facts.of_interface(ospf_interface_ops::get(session.handle(), space, record), watched);
    } else if (auto *neighbor = record_of<ospf_neighbor_ops>(row)) {
      facts.of_neighbor(ospf_neighbor_ops::get(session.handle(), space, neighbor), watched);
    }
    if (is_there) rows.emplace(row.path, std::move(watched));
    return !is_lsa;
  });
  session.check("reading rows");
  return rows;
}

std::size_t print_changes(const WatchedRows &before, const WatchedRows &now, bool json,
                          std::FILE *out) {
  Changes changes(json, out);
  auto old_one = before.begin();
  auto new_one = now.begin();
  while (old_one != before.end() || new_one != now.end()) {
    const bool only_old =
        new_one == now.end() || (old_one != before.end() && old_one->first < new_one->first);
    const bool only_new =
        old_one == before.end() || (new_one != now.end() && new_one->first < old_one->first);
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
