#include "subject.hpp"

namespace ospf_harbor_check {

namespace {

template <typename Rows>
auto named(const Rows &rows, std::string_view name) -> typename Rows::value_type {
  for (const auto *row : rows) {
    if (row->name == name) return row;
  }
  return nullptr;
}

constexpr std::uint8_t digit(char c) {
  return static_cast<std::uint8_t>(c <= '9' ? c - '0' : c - 'a' + 10);
}

constexpr std::string_view table_prefix = "tbl_";

constexpr auto table_names = [] {
  std::array<std::array<char, 48>, model::all_tables.size()> names{};
  for (std::size_t at = 0; at < names.size(); ++at) {
    std::size_t length = 0;
    for (const char c : table_prefix) names[at][length++] = c;
    for (const char c : model::all_tables[at]->name) names[at][length++] = c;
  }
  return names;
}();

}  // namespace

const char *table_name(const model::Table &table) {
  return table_names[static_cast<std::size_t>(table.id)].data();
}

Subject find_subject(std::uint32_t kind, std::string_view name) {
  Subject found;
  if (kind == OSPF_HARBOR_CHECK_OBJECT) {
    found.structure = named(model::structures, name);
    if (!found.is_known()) found.enumeration = named(model::all_enumerations, name);
    if (!found.is_known()) found.flag_set = named(model::all_flag_sets, name);
  } else if (name.starts_with(table_prefix) &&
             (kind == OSPF_HARBOR_CHECK_RECORD || kind == OSPF_HARBOR_CHECK_KEY)) {
    found.table = named(model::all_tables, name.substr(table_prefix.size()));
  }
  return found;
}

bool has_luid(const model::Table &table, const std::uint8_t *luid) {
  for (std::size_t at = 0; at < table.luid.size() / 2; ++at) {
    if (luid[at] != (digit(table.luid[2 * at]) << 4 | digit(table.luid[2 * at + 1]))) return false;
  }
  return true;
}

const model::Table *table_with(const std::uint8_t *luid) {
  for (const model::Table *table : model::all_tables) {
    if (has_luid(*table, luid)) return table;
  }
  return nullptr;
}

}  // namespace ospf_harbor_check
