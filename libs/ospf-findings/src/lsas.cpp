// LSAs one by one, and the copies that several routers hold of them.
#include <algorithm>
#include <charconv>
#include <set>
#include <tuple>

#include "evidence.hpp"
#include "ospf_decode/checksum.hpp"
#include "ospf_findings/databases.hpp"

namespace ospf_findings {

using namespace ospf_routes;
using ospf_tables::LsdbEntry;

namespace {

// A number that is this near to the last one is reached within days if the LSA goes on changing
// as often as it may, and never in a lifetime by refreshing alone.
constexpr std::uint32_t last_sequence = 0x7fffffff;
constexpr std::uint32_t few_left = 0x10000;

constexpr std::uint16_t age_mask = 0x7fff;  // without the DoNotAge bit

Finding finding_of(Severity severity, Kind kind, const LsdbEntry &entry) {
  Finding found;
  found.severity = severity;
  found.kind = kind;
  found.version = static_cast<std::uint8_t>(entry.lsa.version);
  found.instance = instance_id_of(entry);
  found.area = entry.area;
  found.routers = {entry.lsa.adv_router};
  found.lsas = {lsa_name(entry)};
  return found;
}

std::uint32_t number_of(const std::string &text) {
  std::uint32_t number = 0;
  if (text.size() > 2) std::from_chars(text.data() + 2, text.data() + text.size(), number, 16);
  return number;
}

void look_at_sequence(const LsdbEntry &entry, std::vector<Finding> &findings) {
  const std::uint32_t sequence = number_of(entry.lsa.sequence);
  if (sequence > last_sequence || last_sequence - sequence >= few_left) return;
  Finding found = finding_of(Severity::warning, Kind::sequence_near_end, entry);
  found.where = entry.lsa.sequence;
  const std::uint32_t left = last_sequence - sequence;
  found.what = std::to_string(left) + (left == 1 ? " number is left" : " numbers are left") +
               " before the LSA has to be flushed";
  findings.push_back(std::move(found));
}

using LsaKey = std::tuple<std::uint32_t, std::uint8_t, std::optional<std::uint32_t>, std::uint16_t,
                          std::uint32_t, std::uint32_t>;
using PlaceKey = std::tuple<std::uint32_t, std::uint8_t, std::optional<std::uint32_t>>;

PlaceKey place_of(const LsdbEntry &entry) {
  return {entry.lsa.version, instance_id_of(entry), entry.area};
}

// Databases of several routers, each an instance of its own in the tables.
void compare_copies(const std::vector<LsdbEntry> &lsas, std::vector<Finding> &findings) {
  std::map<PlaceKey, std::set<std::string>> holders;
  std::map<LsaKey, std::vector<const LsdbEntry *>> copies;
  for (const LsdbEntry &entry : lsas) {
    if (entry.interface) continue;
    holders[place_of(entry)].insert(entry.instance);
    copies[{entry.lsa.version, instance_id_of(entry), entry.area, entry.lsa.type,
            entry.lsa.link_state_id, entry.lsa.adv_router}]
        .push_back(&entry);
  }
  for (const auto &[key, those] : copies) {
    const std::set<std::string> &all = holders.at(place_of(*those.front()));
    std::set<std::string> lacking = all;
    std::set<std::string> instances;
    for (const LsdbEntry *entry : those) {
      lacking.erase(entry->instance);
      instances.insert(entry->lsa.sequence + " " + entry->lsa.checksum);
    }
    if (lacking.empty() && instances.size() == 1) continue;
    const bool is_old = std::ranges::all_of(
        those, [](const LsdbEntry *entry) { return (entry->lsa.age & age_mask) >= on_its_way; });
    Finding found = finding_of(is_old ? Severity::warning : Severity::notice,
                               Kind::databases_differ, *those.front());
    found.where = found.lsas.front();
    found.what = !lacking.empty()
                     ? *lacking.begin() + " lacks it, " + those.front()->instance + " has it"
                     : "routers hold " + std::to_string(instances.size()) + " instances of it";
    findings.push_back(std::move(found));
  }
}

}  // namespace

std::vector<Finding> findings_of(const std::vector<LsdbEntry> &lsas) {
  std::vector<Finding> findings;
  for (const LsdbEntry &entry : lsas) look_at_sequence(entry, findings);
  compare_copies(lsas, findings);
  return findings;
}

}  // namespace ospf_findings
