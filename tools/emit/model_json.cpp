// The model for programs that do not read C: every type, field, member and table with what it
// means, where it lies and since which variant, as JSON. One field or member stands on a line, so
// that a change reads well; docs/model.md says what the words mean.
#include "model/layout.hpp"
#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

std::string string_of(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + "\"";
}

std::string word(std::string_view name) { return string_of(name) + ": "; }

// An array of JSON texts, one on a line behind that margin.
std::string json_lines(const std::vector<std::string> &items, std::string_view margin) {
  std::string text = "[";
  for (const std::string &item : items) {
    text += (text.size() == 1 ? "\n" : ",\n") + std::string(margin) + item;
  }
  return text + "]";
}

// What every type begins with. Its own words and lists follow.
std::string type_head(std::string_view name, std::string_view meaning, int variants) {
  return "{" + word("name") + string_of(name) + ", " + word("meaning") + string_of(meaning) +
         ",\n     " + word("variants") + std::to_string(variants);
}

std::string json_members(std::span<const Member> members, std::string_view number) {
  std::vector<std::string> items;
  for (const Member &member : members) {
    items.push_back("{" + word("name") + string_of(member.name) + ", " + word(number) +
                    std::to_string(member.value) + ", " + word("since") +
                    std::to_string(member.since) + ", " + word("meaning") +
                    string_of(member.meaning) + "}");
  }
  return word("members") + json_lines(items, "      ") + "}";
}

std::string row_json(const Enumeration &type) {
  return type_head(type.name, type.meaning, type.variants) + ", " + word("size") +
         std::to_string(enumeration_size) + ", " + word("counts_from_one") +
         (type.has_internal_range ? "true" : "false") + ",\n     " +
         json_members(type.members, "value");
}

std::string row_json(const FlagSet &type) {
  return type_head(type.name, type.meaning, type.variants) + ", " + word("size") +
         std::to_string(flag_set_size) + ",\n     " + json_members(type.members, "bit");
}

std::string row_json(const Structure &type, const Field &field) {
  const bool refers = field.kind == Kind::reference;
  std::string text =
      "{" + word("name") + string_of(field.name) + ", " + word("type") +
      string_of(refers ? "tbl_" + std::string(table(field.table).name) : storage_type(field)) +
      ", " + word("form") + string_of(form_of(field)) + ", " + word("since") +
      std::to_string(field.since) + ", " + word("offset") + std::to_string(offset(type, field)) +
      ", " + word("width") + std::to_string(width(field));
  if (field.kind == Kind::array) {
    text += ", " + word("counter") + string_of(counter_of(type, field).name);
  }
  if (field.kind == Kind::arm) text += ", " + word("selector") + std::to_string(field.selector);
  return text + ", " + word("meaning") + string_of(field.meaning) + "}";
}

std::string row_json(const Structure &type) {
  std::vector<std::string> fields;
  for (const Field *field : type.fields) fields.push_back(row_json(type, *field));
  std::string used;
  for (int variant = 0; variant < type.variants; ++variant) {
    used += (variant == 0 ? "" : ", ") + std::to_string(used_length(type, variant));
  }
  std::string text = type_head(type.name, type.meaning, type.variants) + ", " + word("used") + "[" +
                     used + "], " + word("size") + std::to_string(object_size(type)) + ", " +
                     word("tracked_size") + std::to_string(tracked_size(type));
  if (type.is_choice()) text += ", " + word("selected_by") + string_of(selector_of(type).name);
  return text + ",\n     " + word("fields") + json_lines(fields, "      ") + "}";
}

std::string row_json(const Table &table) {
  const bool composite = table.shape() == Shape::composite_key;
  return "{" + word("name") + string_of("tbl_" + std::string(table.name)) + ", " + word("meaning") +
         string_of(table.meaning) + ",\n     " + word("record") + string_of(table.record->name) +
         ", " + word(composite ? "key_type" : "key_field") +
         string_of(composite ? table.key_structure->name : table.key->name) + ", " + word("luid") +
         string_of(table.luid) + "}";
}

template <typename List>
std::string json_list(std::string_view name, const List &rows) {
  std::vector<std::string> items;
  for (const auto *row : rows) items.push_back(row_json(*row));
  return " " + word(name) + json_lines(items, "    ");
}

}  // namespace

void write_model_json(Writer &writer) {
  writer.file("docs/model.json", "{" + word("library") + string_of("ospf_harbor_oper") + ",\n" +
                                     json_list("structures", structures) + ",\n" +
                                     json_list("enumerations", all_enumerations) + ",\n" +
                                     json_list("flag_sets", all_flag_sets) + ",\n" +
                                     json_list("tables", all_tables) + "}\n");
}

}  // namespace emit
