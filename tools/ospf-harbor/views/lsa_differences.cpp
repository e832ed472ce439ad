#include "views/lsa_differences.hpp"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <tuple>

#include "ospf_tables/row_keys.hpp"
#include "views/json_lines.hpp"
#include "views/lsa_names.hpp"
#include "views/named_json.hpp"

namespace tool {

namespace {

using Json = nlohmann::ordered_json;
using ospf_tables::LsdbEntry;

constexpr std::size_t header_length = 20;

std::uint32_t instance_number(const LsdbEntry &entry) {
  return entry.router_id >> 16 == 0x00ff ? entry.router_id & 0xff : 0;
}

// An LSA of a link is known by its originator and ID: interfaces are called differently by each
// source.
auto key_of(const LsdbEntry &entry) {
  return std::tuple(entry.lsa.version, instance_number(entry), entry.area,
                    entry.lsa.scope() == ospf_tables::Scope::link, entry.lsa.type,
                    entry.lsa.link_state_id, entry.lsa.adv_router);
}
using Key = decltype(key_of(std::declval<const LsdbEntry &>()));

// What elements of a list are called by, as far as they have it.
std::string name_in_list(const Json &element) {
  if (!element.is_object()) return line_of(element);
  std::string name;
  for (const char *key :
       {"link_type", "link_id", "link_data", "interface_id", "neighbor_interface_id",
        "neighbor_router_id", "prefix", "mt_id", "type"}) {
    if (!element.contains(key)) continue;
    const Json &value = element[key];
    name +=
        (name.empty() ? "" : ",") + (value.is_string() ? value.get<std::string>() : line_of(value));
  }
  return name;
}

class Comparer {
 public:
  explicit Comparer(std::vector<FieldChange> &changes) : changes_(changes) {}

  void compare(const std::string &field, const Json &before, const Json &after) {
    if (before == after) return;
    if (before.is_object() && after.is_object()) {
      for (const auto &[key, value] : before.items()) {
        compare(field.empty() ? key : field + "." + key, value,
                after.contains(key) ? after[key] : Json());
      }
    } else if (before.is_array() && after.is_array()) {
      compare_lists(field, before, after);
    } else {
      changes_.push_back({field, line_of(before), line_of(after)});
    }
  }

 private:
  void compare_lists(const std::string &field, const Json &before, const Json &after) {
    std::map<std::string, std::pair<const Json *, const Json *>> elements;
    std::map<std::string, int> counts;
    const auto named = [&](const Json &element) {
      const std::string name = name_in_list(element);
      const int count = ++counts[name];
      return count == 1 ? name : name + "#" + std::to_string(count);
    };
    for (const Json &each : before) elements[named(each)].first = &each;
    counts.clear();
    for (const Json &each : after) elements[named(each)].second = &each;
    for (const auto &[name, both] : elements) {
      const auto &[old_one, new_one] = both;
      const std::string place = field + "[" + name + "]";
      if (old_one == nullptr) {
        changes_.push_back({place, "", line_of(*new_one)});
      } else if (new_one == nullptr) {
        changes_.push_back({place, line_of(*old_one), ""});
      } else {
        compare(place, *old_one, *new_one);
      }
    }
  }

  std::vector<FieldChange> &changes_;
};

// The octets behind the header; empty when there are none.
std::vector<std::uint8_t> content_of(const LsdbEntry &entry) {
  const auto &raw = entry.lsa.raw_data;
  const std::size_t skipped = std::min(header_length, raw.size());
  return {raw.begin() + static_cast<std::ptrdiff_t>(skipped), raw.end()};
}

std::vector<FieldChange> field_changes(const LsdbEntry &before, const LsdbEntry &after,
                                       bool every_field) {
  std::vector<FieldChange> changes;
  const auto old_octets = content_of(before);
  const auto new_octets = content_of(after);
  const bool both = !old_octets.empty() && !new_octets.empty();
  if (!every_field && both && old_octets == new_octets && before.lsa.options == after.lsa.options) {
    return changes;
  }
  Json one = Json::parse(json_line(before));
  Json other = Json::parse(json_line(after));
  for (Json *each : {&one, &other}) {
    for (const char *place : {"kind", "path", "instance", "router_id", "interface", "age_as",
                              "decoded_completed", "raw_data"}) {
      each->erase(place);
    }
    if (every_field) continue;
    for (const char *passing : {"age", "seq_num", "checksum", "length"}) each->erase(passing);
  }
  Comparer(changes).compare("", one, other);
  // What the fields do not hold is in the octets alone.
  if (changes.empty() && both && old_octets != new_octets) {
    changes.push_back(
        {"raw_data", "\"" + hex_text(old_octets) + "\"", "\"" + hex_text(new_octets) + "\""});
  }
  return changes;
}

const LsdbEntry &either(const LsaChange &change) {
  return change.after != nullptr ? *change.after : *change.before;
}

const char *name_of(const LsaChange &change) {
  return change.before == nullptr ? "came" : change.after == nullptr ? "went" : "changed";
}

}  // namespace

std::vector<LsaChange> lsa_changes(const std::vector<LsdbEntry> &before,
                                   const std::vector<LsdbEntry> &after, bool every_field) {
  std::map<Key, LsaChange> all;
  for (const LsdbEntry &entry : before) all[key_of(entry)].before = &entry;
  for (const LsdbEntry &entry : after) all[key_of(entry)].after = &entry;
  std::vector<LsaChange> changes;
  for (auto &[key, change] : all) {
    if (change.before != nullptr && change.after != nullptr) {
      change.fields = field_changes(*change.before, *change.after, every_field);
      if (change.fields.empty()) continue;
    }
    changes.push_back(std::move(change));
  }
  return changes;
}

std::string json_line(const LsaChange &change, const RouterNames &names) {
  const LsdbEntry &entry = either(change);
  const auto or_null = [](const std::string &json) {
    return json.empty() ? Json(nullptr) : Json::parse(json);
  };
  Json fields = Json::array();
  for (const FieldChange &field : change.fields) {
    fields.push_back({{"field", field.field},
                      {"before", or_null(field.before)},
                      {"after", or_null(field.after)}});
  }
  const Json line = {{"diff", "lsa"},
                     {"change", name_of(change)},
                     {"version", entry.lsa.version},
                     {"instance", instance_number(entry)},
                     {"area", entry.area ? Json(ospf_tables::dotted(*entry.area)) : Json(nullptr)},
                     {"scope", ospf_tables::scope_name(entry.lsa.scope())},
                     {"type", entry.lsa.type},
                     {"type_name", type_name(entry.lsa.version, entry.lsa.type)},
                     {"lsa_id", ospf_tables::dotted(entry.lsa.link_state_id)},
                     {"adv_router", ospf_tables::dotted(entry.lsa.adv_router)},
                     {"adv_router_name", name_or_null(entry.lsa.adv_router, names)},
                     {"fields", fields}};
  return line_of(line);
}

void print_lsa_change(const LsaChange &change, const RouterNames &names, std::FILE *out) {
  const LsdbEntry &entry = either(change);
  std::string place = "v" + std::to_string(entry.lsa.version);
  if (entry.area) place += " area " + ospf_tables::dotted(*entry.area);
  std::fprintf(out, "  %-7s  %s %s of %s (%s)\n", name_of(change),
               type_name(entry.lsa.version, entry.lsa.type).c_str(),
               ospf_tables::dotted(entry.lsa.link_state_id).c_str(),
               labelled(entry.lsa.adv_router, names).c_str(), place.c_str());
  for (const FieldChange &field : change.fields) {
    std::fprintf(out, "           %s\n", field.field.c_str());
    if (!field.before.empty()) std::fprintf(out, "             before  %s\n", field.before.c_str());
    if (!field.after.empty()) std::fprintf(out, "             after   %s\n", field.after.c_str());
  }
}

}  // namespace tool
