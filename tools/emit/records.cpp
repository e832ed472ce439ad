// Type records, the ordered list of them, and the data symbols. A record's identity is the one that
// the schema states, or the MD5 of the type's definition in one canonical text.
#include <md5.h>

#include <algorithm>

#include "model/layout.hpp"
#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

std::string md5(const std::string &text) {
  char digits[MD5_DIGEST_STRING_LENGTH];
  MD5Data(reinterpret_cast<const std::uint8_t *>(text.data()), text.size(), digits);
  return digits;
}

std::string identity(const Enumeration &type) {
  if (!type.identity.empty()) return std::string(type.identity);
  std::string text =
      "enum " + std::string(type.name) + " variants " + std::to_string(type.variants) + "\n";
  for (const Member &member : type.members) {
    text += std::string(member.name) + " " + std::to_string(member.value) + "\n";
  }
  return md5(text);
}

std::string identity(const FlagSet &type) {
  std::string text = "flag " + std::string(type.name) + "\n";
  for (const Member &member : type.members) {
    text += std::string(member.name) + " " + std::to_string(member.value) + "\n";
  }
  return md5(text);
}

std::string identity(const Structure &type) {
  std::string text =
      "type " + std::string(type.name) + " variants " + std::to_string(type.variants) + "\n";
  for (const Field *field : type.fields) {
    text += std::string(field->name) + " " + storage_type(*field) + " " +
            std::to_string(static_cast<int>(field->kind)) + " since " +
            std::to_string(field->since);
    if (field->kind == Kind::arm) text += " selected by " + std::to_string(field->selector);
    if (field->structure != nullptr) text += " " + identity(*field->structure);
    if (field->enumeration != nullptr) text += " " + identity(*field->enumeration);
    if (field->flag_set != nullptr) text += " " + identity(*field->flag_set);
    text += "\n";
  }
  return md5(text);
}

struct Entry {
  std::uint32_t variant_id, used_length, alloc_slop;
};

struct Record {
  std::string symbol;  // without the leading underscore and the tail
  std::string type_name;
  std::string kind;
  std::string md5;
  std::string schema;   // the schema constant that it belongs to
  std::string mapping;  // which variable maps the constant to the record
  std::vector<Entry> entries;
};

std::vector<Record> records() {
  std::vector<Record> all;
  for (const Structure *type : structures) {
    Record record{std::string(type->name),
                  std::string(type->name),
                  "type",
                  identity(*type),
                  "types::" + std::string(type->name),
                  "type_record",
                  {}};
    for (int variant = 0; variant < type->variants; ++variant) {
      record.entries.push_back({static_cast<std::uint32_t>(variant), used_length(*type, variant),
                                alloc_slop(*type, variant)});
    }
    all.push_back(record);
  }
  for (const Enumeration *type : all_enumerations) {
    Record record{std::string(type->name),
                  std::string(type->name),
                  "enum",
                  identity(*type),
                  "enumerations::" + std::string(type->name),
                  "type_record",
                  {}};
    for (std::uint32_t variant = 0; variant < type->variants; ++variant) {
      record.entries.push_back({variant, enumeration_size, 0});
    }
    all.push_back(record);
  }
  for (const FlagSet *type : all_flag_sets) {
    all.push_back({std::string(type->name),
                   std::string(type->name),
                   "flag",
                   identity(*type),
                   "flag_sets::" + std::string(type->name),
                   "type_record",
                   {{0, flag_set_used_length, flag_set_size - flag_set_used_length}}});
  }
  for (const Table *table : all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    const std::string schema = "tables::" + std::string(table->name);
    all.push_back({name + "_table",
                   name,
                   "table",
                   std::string(table->luid),
                   schema,
                   "type_record",
                   {{1, 8, 0}}});
    all.push_back({name + "_table_record",
                   name + "_record",
                   "table_record",
                   std::string(table->record_md5),
                   schema,
                   "record_type_record",
                   {{1, 8, 0}}});
  }
  return all;
}

std::string bytes_of(std::string_view digits) {
  std::string text;
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    text += (at == 0 ? "0x" : ", 0x") + std::string(digits.substr(at, 2));
  }
  return text;
}

}  // namespace

std::vector<std::string> data_symbols() {
  std::vector<std::string> symbols{
      "g_kelp_ospf_harbor_oper_trace_module_id", "g_kelp_ospf_harbor_oper_stub_trace_module_id",
      "ospf_harbor_oper_bundle_registered_handler", "ospf_harbor_oper_table_lut"};
  for (const Record &record : records())
    symbols.push_back("_" + record.symbol + "_type_info_internal");
  for (const Table *table : all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    symbols.push_back("table_" + name + "_luid");
    symbols.push_back("table_" + name + "_luid_text");
    symbols.push_back("table_" + name + "_name");
    symbols.push_back(name + "_table_vft");
  }
  std::sort(symbols.begin(), symbols.end());
  return symbols;
}

void write_records(Writer &writer) {
  const std::vector<Record> all = records();
  std::string header =
      "#pragma once\n\n#include <ospf_harbor_oper/types.h>\n\n"
      "#include \"module/type_record.hpp\"\n\nnamespace harbor {\n\n";
  std::string source = "#include <ospf_harbor_oper/types.h>\n\n";
  std::string list =
      "extern kelp_type_record *const ospf_harbor_oper_type_records[];\n"
      "kelp_type_record *const ospf_harbor_oper_type_records[] = {\n";
  for (const Record &record : all) {
    const std::string symbol = "_" + record.symbol + "_type_info_internal";
    header += "template <>\ninline constexpr kelp_type_record *" + record.mapping +
              "<model::" + record.schema + "> = &" + symbol + ";\n";
    source += "static kelp_variant_entry entries_of_" + record.symbol + "[] = {";
    for (const Entry &entry : record.entries) {
      source += "{" + std::to_string(entry.variant_id) + ", " + std::to_string(entry.used_length) +
                ", " + std::to_string(entry.alloc_slop) + ", 0, 0, 0, 0}, ";
    }
    source += "};\nstatic kelp_variant_info variants_of_" + record.symbol + " = {" +
              std::to_string(record.entries.size()) + ", entries_of_" + record.symbol + "};\n";
    source += "kelp_type_record " + symbol + " = {KELP_TYPE_MAGIC, {" + bytes_of(record.md5) +
              "}, \"" + record.md5 + "\", \"" + record.type_name + "\", \"ospf_harbor_oper\", \"" +
              record.kind + "\", -1, 0, &variants_of_" + record.symbol + ", 0};\n\n";
    list += "    &" + symbol + ",\n";
  }
  writer.file("type_records.hpp", header + "\n}  // namespace harbor\n");
  writer.file("type_records.c", source + list + "    0,\n};\n");
}

}  // namespace emit
