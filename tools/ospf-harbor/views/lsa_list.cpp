#include "views/lsa_list.hpp"

#include <algorithm>
#include <map>
#include <string>

#include "ospf_tables/input_error.hpp"
#include "ospf_tables/row_keys.hpp"
#include "views/lsa_detail.hpp"
#include "views/lsa_names.hpp"
#include "views/network_lists.hpp"
#include "views/text_forms.hpp"

namespace tool {

using namespace ospf_tables;

namespace {

// ", ages as of 2026-11-21T04:27:36Z"
std::string ages_part(const LsdbEntry &entry) {
  const std::string text = ages_text(entry);
  return text.empty() ? "" : ", ages as " + text;
}

std::string heading(const LsdbEntry &entry) {
  std::string text = site_part(entry.site);
  if (is_observed(entry.router_id)) {
    text += title_of(instance_name(entry.router_id, entry.lsa.version == 2));
  } else {
    text += "OSPFv" + std::to_string(entry.lsa.version) + " of router " + dotted(entry.router_id);
  }
  if (!entry.area) return text + ", autonomous system" + ages_part(entry);
  text += ", area " + dotted(*entry.area);
  if (entry.interface) text += ", link " + in_one_line(*entry.interface);
  return text + ages_part(entry);
}

// Calls act(first, last) for each run of entries under one heading, with the heading printed.
template <typename Act>
void by_heading(const std::vector<LsdbEntry> &entries, std::FILE *out, Act act) {
  for (auto first = entries.begin(); first != entries.end();) {
    const std::string title = heading(*first);
    const auto last = std::find_if(first, entries.end(),
                                   [&](const LsdbEntry &entry) { return heading(entry) != title; });
    std::fprintf(out, "%s%s\n", first == entries.begin() ? "" : "\n", title.c_str());
    act(first, last);
    first = last;
  }
}

void print_counts(const std::vector<LsdbEntry> &entries, std::FILE *out) {
  // By instance, then by LS type as the headings' order has them.
  std::map<InstanceName, std::map<std::uint16_t, std::size_t>> counts;
  for (const LsdbEntry &entry : entries) {
    ++counts[instance_name(entry.router_id, entry.lsa.version == 2)][entry.lsa.type];
  }
  std::fprintf(out, "\n");
  for (const auto &[instance, types] : counts) {
    std::size_t total = 0;
    std::string parts;
    for (const auto &[type, count] : types) {
      total += count;
      parts += (parts.empty() ? "" : ", ") + std::to_string(count) + " " +
               type_name(instance.version, type);
    }
    std::fprintf(out, "%s%s: %zu %s (%s)\n", site_part(entries.front().site).c_str(),
                 title_of(instance).c_str(), total, total == 1 ? "LSA" : "LSAs", parts.c_str());
  }
}

}  // namespace

void print_lsa_table(const std::vector<LsdbEntry> &entries, const RouterNames &names,
                     std::FILE *out) {
  std::size_t width = 15;
  std::size_t type_width = 12;
  for (const LsdbEntry &entry : entries) {
    width = std::max(width, labelled(entry.lsa.adv_router, names).size());
    type_width = std::max(type_width, type_name(entry.lsa.version, entry.lsa.type).size());
  }
  const int column = static_cast<int>(width);
  const int types = static_cast<int>(type_width);
  by_heading(entries, out, [&](auto first, auto last) {
    std::fprintf(out, "  %-*s  %-15s  %-*s  %8s  %-10s  %-8s  %6s\n", types, "Type",
                 "Link-state ID", column, "Adv. router", "Age", "Sequence", "Checksum", "Length");
    for (; first != last; ++first) {
      const LsaView &lsa = first->lsa;
      std::fprintf(out, "  %-*s  %-15s  %-*s  %8s  %-10s  %-8s  %6u\n", types,
                   type_name(lsa.version, lsa.type).c_str(), dotted(lsa.link_state_id).c_str(),
                   column, labelled(lsa.adv_router, names).c_str(), age_text(lsa.age).c_str(),
                   in_one_line(lsa.sequence).c_str(), in_one_line(lsa.checksum).c_str(),
                   lsa.length);
    }
  });
  print_counts(entries, out);
}

void print_lsa_details(const std::vector<LsdbEntry> &entries, const RouterNames &names,
                       std::FILE *out) {
  by_heading(entries, out, [&](auto first, auto last) {
    for (; first != last; ++first)
      std::fprintf(out, "\n%s", in_lines(detail_of(first->lsa, names)).c_str());
  });
  print_counts(entries, out);
}

}  // namespace tool
