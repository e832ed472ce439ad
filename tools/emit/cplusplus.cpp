// The model of the C++ headers: a class for each type whose accessors name the C functions of its
// fields, and the rules of types and tables, which name theirs. What these functions are called
// with stands in the headers of cplusplus/include/ospf_harbor that are written by hand.
#include <stdexcept>

#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

// Where a type stands: what begins with a version of the protocol is in the namespace of that
// version, without it. Of the rest "ospf_" goes, where a word is left that says what it is.
struct Name {
  std::string space;  // "", "ospfv2" or "ospfv3"
  std::string name;

  std::string full() const { return "ospf_harbor::" + (space.empty() ? "" : space + "::") + name; }
};

Name name_of(std::string_view type) {
  for (const std::string_view space : {"ospfv2", "ospfv3"}) {
    if (type.starts_with(std::string(space) + "_")) {
      return {std::string(space), std::string(type.substr(space.size() + 1))};
    }
  }
  const std::string_view prefix = "ospf_";
  if (type.starts_with(prefix) && !type.starts_with("ospf_rev")) type.remove_prefix(prefix.size());
  return {"", std::string(type)};
}

std::string in_space(const Name &name, const std::string &text) {
  if (name.space.empty()) return text;
  return "namespace " + name.space + " {\n" + text + "}  // namespace " + name.space + "\n";
}

std::string rules_of(const Structure &type) { return "schema::" + std::string(type.name); }
std::string rules_of(const Table &table) { return "schema::tbl_" + std::string(table.name); }
std::string ref_of(const Structure &type) { return name_of(type.name).full() + "_ref"; }

// A line that stays within 100 columns: broken behind commas and opened lists.
std::string line(std::string text) {
  std::string result;
  const std::size_t margin = text.find_first_not_of(' ') + 4;
  while (text.size() > 100) {
    const std::size_t comma = text.rfind(", ", 98);
    const std::size_t open = text.find_last_of("<({", 99);
    const std::size_t end = comma != std::string::npos && comma > margin ? comma + 1 : open + 1;
    result += text.substr(0, end) + "\n";
    text = std::string(margin, ' ') + text.substr(text.find_first_not_of(' ', end));
  }
  return result + text + "\n";
}

std::string comment(std::string_view text, const std::string &margin) {
  std::string result;
  wrap(result, text, margin + "// ", margin + "// ");
  return result;
}

// A function of one statement.
std::string function(const std::string &head, const std::string &body) {
  const std::string whole = "  " + head + " { " + body + "; }";
  if (whole.size() <= 100) return whole + "\n";
  return line("  " + head + " {") + line("    " + body + ";") + "  }\n";
}

std::string number_in_cplusplus(Kind kind) {
  switch (kind) {
    case Kind::u8:
      return "std::uint8_t";
    case Kind::u16:
      return "std::uint16_t";
    case Kind::u32:
      return "std::uint32_t";
    case Kind::real:
      return "double";
    default:
      throw std::runtime_error("the C++ headers know no number of that kind");
  }
}

// --- enumerations and flag sets ---------------------------------------------------------------

std::string members(const Name &name, std::string_view meaning, std::string_view word,
                    std::span<const Member> all) {
  std::string text =
      comment(meaning, "") + "enum class " + name.name + " : " + std::string(word) + " {\n";
  std::string list;
  for (const Member &member : all) {
    text += comment(member.meaning, "  ") + "  " + std::string(member.name) + " = " +
            std::to_string(member.value) + ",\n";
    list += line("    named{" + name.full() + "::" + std::string(member.name) + ", \"" +
                 std::string(member.name) + "\"},");
  }
  return in_space(name, text + "};\n") + "template <>\ninline constexpr std::array members_of<" +
         name.full() + ">{\n" + list + "};\n\n";
}

// --- fields ------------------------------------------------------------------------------------

// An accessor: what it gives and takes, and its bodies; a field without setter has none.
struct Accessor {
  std::string result;
  std::string read;
  std::string argument;
  std::string write;
  std::string setter = "set_";  // in front of the field's name
};

Accessor accessor_of(const Structure &type, const Field &field, const Field *before) {
  const std::string at = "&::" + std::string(type.name) + "_" + std::string(field.name) + "_";
  const std::string by_name = "(\"" + std::string(field.name) + "\"";  // and what else it takes
  const std::string read = by_name + ")";
  switch (field.kind) {
    case Kind::boolean:
      return {"bool", "read_<" + at + "get_value>" + read + " != 0", "bool value",
              "write_<" + at + "set_value>" + by_name + ", value ? 1u : 0u)"};
    case Kind::address:
      return {"ospf_harbor::address", "address_<" + at + "get>" + read,
              "const ospf_harbor::address &value",
              "write_address_<" + at + "get, " + at + "set>" + by_name + ", value)"};
    case Kind::text:
      return {"std::string_view", "text_<" + at + "get>" + read, "std::string_view value",
              "write_text_<" + at + "set>" + by_name + ", value)"};
    case Kind::enumeration: {
      const std::string word = name_of(field.enumeration->name).full();
      return {word, "static_cast<" + word + ">(read_<" + at + "get_value>" + read + ")",
              word + " value",
              "write_<" + at + "set_value>" + by_name + ", static_cast<std::uint32_t>(value))"};
    }
    case Kind::flags: {
      const std::string bit = name_of(field.flag_set->name).full();
      const std::string set = "&::" + std::string(field.flag_set->name) + "_";
      const std::string bits =
          bit + ", " + std::to_string(field.flag_set->members.size()) + ", " + at + "get, " + set;
      return {"ospf_harbor::flags<" + bit + ">",
              "this->template flags_<" + bits + "get_value>" + read,
              "ospf_harbor::flags<" + bit + "> value",
              "write_flags_<" + bits + "set_value>" + by_name + ", value)"};
    }
    case Kind::structure:
      return {ref_of(*field.structure),
              "part_<" + ref_of(*field.structure) + ", " + at + "get>" + read, "", ""};
    case Kind::array: {
      const std::string count =
          "&::" + std::string(type.name) + "_" + std::string(before->name) + "_get_value, ";
      if (field.held == Kind::address) {
        return {
            "std::vector<ospf_harbor::address>", "addresses_<" + count + at + "get>" + read,
            "std::span<const ospf_harbor::address> elements",
            "write_addresses_<" + at + "remove_elements, " + at + "set>" + by_name + ", elements)"};
      }
      const std::string span = "std::span<const " + number_in_cplusplus(field.held) + ">";
      return {span, "elements_<" + count + at + "get>" + read, span + " elements",
              "write_elements_<" + at + "set_mem>" + by_name + ", elements)"};
    }
    case Kind::reference: {
      const std::string table = name_of(harbor::model::table(field.table).name).full() + "_table";
      return {table, table + "(*session_, read_<" + at + "get_by_ref>" + read + ")",
              table + " target", "write_<" + at + "set_by_ref>" + by_name + ", target.get())"};
    }
    default:
      return {number_in_cplusplus(field.kind), "read_<" + at + "get_value>" + read,
              number_in_cplusplus(field.kind) + " value",
              "write_<" + at + "set_value>" + by_name + ", value)"};
  }
}

// An arm is read whether it is selected or not, and written by selecting it.
Accessor accessor_of_arm(const Structure &type, const Field &field) {
  const std::string at = "&::" + std::string(type.name) + "_" + std::string(field.name) + "_";
  const std::string select = at + "get, " + at + "set, ";
  const std::string by_name = "(\"" + std::string(field.name) + "\"";
  const std::string read = by_name + ")";
  switch (field.held) {
    case Kind::text:
      return {"std::optional<std::string_view>", "text_arm_<" + at + "get>" + read,
              "std::string_view value",
              "select_text_<" + at + "get, " + at + "set>" + by_name + ", value)", "select_"};
    case Kind::structure: {
      const std::string held = "&::" + std::string(field.structure->name) + "_";
      return {ref_of(*field.structure),
              "part_<" + ref_of(*field.structure) + ", " + at + "get>" + read, "",
              "select_<" + select + held + "create, " + held + "destroy>" + by_name +
                  ", [](auto *) {})",
              "select_"};
    }
    case Kind::u32:
      return {"std::optional<std::uint32_t>", "number_arm_<" + at + "get>" + read,
              "std::uint32_t value = 0",
              "select_number_<" + at + "get, " + at + "set>" + by_name + ", value)", "select_"};
    default:
      throw std::runtime_error("the C++ headers know no arm of that kind");
  }
}

// Rows are called by the word of one of them, where the field says many.
std::string one_of(const Field &field) {
  std::string name(field.name);
  if (name.back() == 's' && field.name != harbor::model::table(field.table).name) name.pop_back();
  return name;
}

std::string references_of(const Structure &type) {
  std::string list;
  for (const Field *field : type.fields) {
    if (field->kind != Kind::reference) continue;
    const std::string at = "&::" + std::string(type.name) + "_" + std::string(field->name) + "_";
    list += line("    act(reference_field<" + rules_of(harbor::model::table(field->table)) + ", " +
                 at + "get_by_ref, " + at + "set_by_ref>{\"" + std::string(field->name) + "\"});");
  }
  return "  // Calls act with the reference_field of each field that refers to a table.\n"
         "  template <typename Act>\n  static void for_each_reference([[maybe_unused]] Act act) "
         "{\n" +
         list + "  }\n";
}

std::string fields_of(const Structure &type) {
  const std::string ref = name_of(type.name).name + "_ref";
  std::string accessors;
  std::string list;
  const Field *before = nullptr;
  for (const Field *field : type.fields) {
    const std::string name(field->name);
    if (field->kind != Kind::counter) {
      const Accessor accessor = field->kind == Kind::arm ? accessor_of_arm(type, *field)
                                                         : accessor_of(type, *field, before);
      accessors += comment(field->meaning, "  ") +
                   function(accessor.result + " " + name + "() const", "return " + accessor.read);
      const bool has_setter = !accessor.write.empty();
      if (has_setter) {
        accessors += function(
            "void " + accessor.setter + name + "(" + accessor.argument + ") const", accessor.write);
      }
      if (field->kind == Kind::reference) {
        const std::string table = rules_of(harbor::model::table(field->table));
        const std::string rows = name_of(harbor::model::table(field->table).name).full();
        const std::string at = "&::" + std::string(type.name) + "_" + name + "_";
        accessors += comment("Adds a row to that table, which is made where there is none.", "  ") +
                     function(rows + "_row add_" + one_of(*field) + "(const " + rows +
                                  "_table::key_type &key) const",
                              "return detail::add_below<" + table + ", " + at + "get_by_ref, " +
                                  at + "set_by_ref>(*session_, object_, key)");
      }
      list += line("    act(field{\"" + name + "\", " + std::to_string(field->since) + ", &" + ref +
                   "::" + name + ", " +
                   (has_setter ? "&" + ref + "::" + accessor.setter + name : "nullptr") + "});");
    }
    before = field;
  }
  return accessors +
         "  // Calls act with a field of each of them: its name, the variant it came in, and its\n"
         "  // accessors.\n"
         "  template <typename Act>\n  static void for_each_field(Act act) {\n" +
         list + "  }\n" + references_of(type);
}

// --- types -------------------------------------------------------------------------------------

std::string rules_text(const Structure &type) {
  const std::string name(type.name);
  std::string text = "struct " + name + " {\n  using c_type = ::" + name +
                     ";\n  static constexpr const char *name = \"" + name + "\";\n";
  struct Entry {
    const char *name, *suffix;
  };
  constexpr Entry entries[] = {{"create", "create"},
                               {"destroy", "destroy"},
                               {"compare", "compare"},
                               {"hash", "hash"},
                               {"print", "print"},
                               {"to_xml", "to_xml"},
                               {"from_xml", "from_xml"},
                               {"marshal", "marshal"},
                               {"unmarshal", "unmarshal"},
                               {"length", "len"},
                               {"adjust_variant", "adjust_variant"}};
  for (const Entry &entry : entries) {
    text += line("  static constexpr auto " + std::string(entry.name) + " = &::" + name + "_" +
                 entry.suffix + ";");
  }
  return text + "};\n";
}

std::string class_text(const Structure &type) {
  const Name name = name_of(type.name);
  const std::string ref = name.name + "_ref";
  return in_space(name, comment(type.meaning, "") + "class " + ref + " : public object_ref<" +
                            rules_of(type) + "> {\n public:\n  using object_ref::object_ref;\n\n" +
                            fields_of(type) + "};\nusing " + name.name + " = owned<" + ref +
                            ">;\n") +
         "\n";
}

// --- tables ------------------------------------------------------------------------------------

std::string key_value_type(const Field &field) {
  switch (field.kind) {
    case Kind::address:
      return "ospf_harbor::address";
    case Kind::text:
      return "std::string_view";
    case Kind::enumeration:
      return name_of(field.enumeration->name).full();
    default:
      return number_in_cplusplus(field.kind);
  }
}

Name key_name(const Table &table) {
  Name name = name_of(table.key_structure->name);
  name.name += "_value";
  return name;
}

std::string key_text(const Table &table) {
  if (table.key_structure == nullptr) return {};
  const Name name = key_name(table);
  std::string text = comment(table.key_structure->meaning, "") + "struct " + name.name + " {\n";
  for (const Field *field : table.key_structure->fields) {
    text += comment(field->meaning, "  ") + "  " + key_value_type(*field) + " " +
            std::string(field->name) + "{};\n";
  }
  return in_space(name, text + "\n" +
                            line("  friend bool operator==(const " + name.name + " &, const " +
                                 name.name + " &) = default;") +
                            "};\n");
}

std::string rules_text(const Table &table) {
  const std::string c = "tbl_" + std::string(table.name);
  const bool composite = table.key_structure != nullptr;
  std::string text = "struct " + c + " {\n  using c_type = ::" + c +
                     "_table;\n  using record_type = ::" + c +
                     "_record;\n  using object_type = " + ref_of(*table.record) + ";\n";
  if (composite) text += "  using key_ref = " + ref_of(*table.key_structure) + ";\n";
  text +=
      "  using key_type = " + (composite ? key_name(table).full() : key_value_type(*table.key)) +
      ";\n  static constexpr bool has_key_object = " + (composite ? "true" : "false") +
      ";\n  static constexpr const char *name = \"" + c + "\";\n";
  struct Entry {
    const char *name, *suffix;
  };
  constexpr Entry entries[] = {{"open", "table_open"},
                               {"make", "table_open_auto_id"},
                               {"free", "table_free"},
                               {"count", "table_get_count"},
                               {"create_record", "create_record_w_src"},
                               {"destroy_record", "destroy_record"},
                               {"request_destroy", "request_record_destroy"},
                               {"insert", "insert"},
                               {"first", "pkey_get_first"},
                               {"first_of", "pkey_get_first_by_src"},
                               {"first_of_all", "pkey_get_first_ignore_src"},
                               {"last", "pkey_get_last"},
                               {"last_of", "pkey_get_last_by_src"},
                               {"next", "pkey_get_next"},
                               {"next_of", "pkey_get_next_by_src"},
                               {"next_of_all", "pkey_get_next_ignore_src"},
                               {"previous", "pkey_get_prev"},
                               {"previous_of", "pkey_get_prev_by_src"},
                               {"print", "table_record_print"},
                               {"to_xml", "table_record_to_xml"},
                               {"from_xml", "table_record_from_xml"},
                               {"marshal", "table_record_marshal"},
                               {"unmarshal", "table_record_unmarshal"},
                               {"length", "table_record_len"}};
  for (const Entry &entry : entries) {
    text += line("  static constexpr auto " + std::string(entry.name) + " = &::" + c + "_" +
                 entry.suffix + ";");
  }
  const auto field = [&](const std::string &word, const Structure &type) {
    text += "  static constexpr auto get" + word + " = &::" + c + "_" + std::string(type.name) +
            "_get_field;\n  static constexpr auto put" + word + " = &::" + c + "_" +
            std::string(type.name) + "_set_field;\n";
  };
  field("", *table.record);
  if (composite) field("_key", *table.key_structure);
  return text + "  static key_type key_of(const row<" + c +
         "> &of);\n  static void set_key(const row<" + c +
         "> &of, const key_type &key);\n  static void complete(const row<" + c + "> &made);\n};\n";
}

// A fresh object of some types cannot be written as it is: its number has no name, or its choice
// selects an arm that is not there. complete() gives it the first name and the arm that is none.
std::string row_functions(const Table &table) {
  const std::string rules = rules_of(table);
  const std::string key = key_value_type(
      table.key_structure == nullptr ? *table.key : *table.key_structure->fields.front());
  std::string get, set;
  if (table.key_structure == nullptr) {
    get = "  return of.object()." + std::string(table.key->name) + "();\n";
    set = "  of.object().set_" + std::string(table.key->name) + "(key);\n";
  } else {
    const std::string object =
        "  const key_ref part(of.at(), get_key(of.at().handle(), 0, of.get()));\n";
    get = object + "  return {";
    set = object;
    for (const Field *field : table.key_structure->fields) {
      get += (field == table.key_structure->fields.front() ? "" : ", ") +
             ("part." + std::string(field->name)) + "()";
      set += "  part.set_" + std::string(field->name) + "(key." + std::string(field->name) + ");\n";
    }
    get += "};\n";
  }
  std::string complete;
  for (const Field *field : table.record->fields) {
    if (field->kind == Kind::enumeration && field->enumeration->has_internal_range) {
      complete += "  made.object().set_" + std::string(field->name) + "(" +
                  name_of(field->enumeration->name).full() +
                  "::" + std::string(field->enumeration->members.front().name) + ");\n";
    }
    if (field->kind != Kind::structure || !field->structure->is_choice()) continue;
    for (std::size_t number = 0; number < field->structure->fields.size(); ++number) {
      const Field &arm = *field->structure->fields[number];
      if (arm.kind != Kind::arm || arm.held != Kind::u32) continue;
      complete += "  const auto choice = made.object()." + std::string(field->name) +
                  "();\n  if (::" + std::string(field->structure->name) +
                  "_is_valid_cr(made.at().handle(), choice.get(), " + std::to_string(number) +
                  ") != 0) {\n    choice.select_" + std::string(arm.name) + "();\n  }\n";
    }
  }
  const std::string row = name_of(table.name).full() + "_row";
  return line("inline " + rules + "::key_type " + rules + "::key_of(const " + row + " &of) {") +
         get + "}\n" +
         line("inline void " + rules + "::set_key(const " + row + " &of, const key_type &key) {") +
         set + "}\n" +
         line("inline void " + rules + "::complete([[maybe_unused]] const " + row + " &made) {") +
         complete + "}\n\n";
}

// What users call a table, its rows and a table that is its own.
std::string table_names(const Table &table) {
  const std::string rules = rules_of(table);
  const Name name = name_of(table.name);
  return in_space(name, comment(table.meaning, "") + "using " + name.name + "_table = table_ref<" +
                            rules + ">;\nusing " + name.name + "_row = row<" + rules +
                            ">;\nusing " + name.name + "_tree = tree<" + rules + ">;\n");
}

template <typename List, typename Text>
std::string each(const List &list, Text text) {
  std::string result;
  for (const auto *item : list) result += text(*item);
  return result;
}

template <typename List, typename Text>
std::string tuple(const char *name, const List &list, Text text) {
  std::string items;
  for (const auto *item : list) items += (items.empty() ? "" : ",\n    ") + text(*item);
  return std::string("using ") + name + " = std::tuple<\n    " + items + ">;\n";
}

}  // namespace

void write_cplusplus(Writer &writer) {
  const std::string opening =
      "// The types and tables of the model. Written by the emitter from the schema; `make emit`\n"
      "// renews it. An accessor that finds the object's variant too low fails with code 43.\n"
      "#pragma once\n\n"
      "// clang-format off\n\n"
      "#include <ospf_harbor_oper.h>\n\n"
      "#include <array>\n#include <tuple>\n\n"
      "#include <ospf_harbor/table.hpp>\n\n"
      "namespace ospf_harbor {\n\n";
  const std::string text =
      opening +
      each(all_enumerations,
           [](const Enumeration &type) {
             return members(name_of(type.name), type.meaning, "std::uint32_t", type.members);
           }) +
      each(all_flag_sets,
           [](const FlagSet &type) {
             return members(name_of(type.name), type.meaning, "std::uint8_t", type.members);
           }) +
      each(structures,
           [](const Structure &type) {
             const Name name = name_of(type.name);
             return in_space(name, "class " + name.name + "_ref;\n");
           }) +
      each(all_tables, key_text) + "\nnamespace schema {\n\n" +
      each(structures, [](const Structure &type) { return rules_text(type); }) +
      each(all_tables, [](const Table &table) { return rules_text(table); }) +
      "\n}  // namespace schema\n\n" + each(all_tables, table_names) + "\n" +
      each(structures, class_text) + each(all_tables, row_functions) +
      "// Everything, for code that is generic over it.\n" +
      tuple("all_enumerations", all_enumerations,
            [](const Enumeration &type) { return name_of(type.name).full(); }) +
      tuple("all_flag_sets", all_flag_sets,
            [](const FlagSet &type) { return name_of(type.name).full(); }) +
      tuple("all_types", structures, [](const Structure &type) { return ref_of(type); }) +
      tuple("all_tables", all_tables, [](const Table &table) { return rules_of(table); }) +
      "\n}  // namespace ospf_harbor\n";
  writer.file("cplusplus/include/ospf_harbor/model.hpp", text);
}

}  // namespace emit
