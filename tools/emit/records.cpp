#include "records.hpp"

#include <algorithm>

#include "definition.hpp"
#include "model/manifest.hpp"
#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

std::string stated_or(std::string_view stated, const std::string &derived) {
  return stated.empty() ? derived : std::string(stated);
}

Record record_of(const Structure &type) {
  const std::string name(type.name);
  const std::string text = definition(type);
  Record record{.symbol = name,
                .type_name = name,
                .kind = "type",
                .md5 = md5(text),
                .manifest_md5 = manifest_md5("type", text),
                .manifest_size = manifest_size(type),
                .schema = "types::" + name,
                .mapping = "type_record",
                .entries = {}};
  for (int variant = 0; variant < type.variants; ++variant) {
    record.entries.push_back({static_cast<std::uint32_t>(variant), used_length(type, variant),
                              alloc_slop(type, variant)});
  }
  return record;
}

Record record_of(const Enumeration &type) {
  const std::string name(type.name);
  const std::string text = definition(type);
  Record record{.symbol = name,
                .type_name = name,
                .kind = "enum",
                .md5 = stated_or(type.identity, md5(text)),
                .manifest_md5 = stated_or(stated_manifest_md5(type), manifest_md5("enum", text)),
                .manifest_size = manifest_size(type),
                .schema = "enumerations::" + name,
                .mapping = "type_record",
                .entries = {}};
  for (std::uint32_t variant = 0; variant < type.variants; ++variant) {
    record.entries.push_back({variant, enumeration_size, 0});
  }
  return record;
}

Record record_of(const FlagSet &type) {
  const std::string name(type.name);
  const std::string text = definition(type);
  Record record{.symbol = name,
                .type_name = name,
                .kind = "flag",
                .md5 = md5(text),
                .manifest_md5 = manifest_md5("flag", text),
                .manifest_size = manifest_size(type),
                .schema = "flag_sets::" + name,
                .mapping = "type_record",
                .entries = {}};
  for (std::uint32_t variant = 0; variant < type.variants; ++variant) {
    record.entries.push_back({variant, flag_set_used_length, flag_set_size - flag_set_used_length});
  }
  return record;
}

constexpr Entry table_entry{1, 8, 0};

Record record_of_table(const Table &table) {
  const std::string name = "tbl_" + std::string(table.name);
  return {.symbol = name + "_table",
          .type_name = name,
          .kind = "table",
          .md5 = std::string(table.luid),
          .manifest_md5 = manifest_md5("table", definition(table)),
          .manifest_size = 0,
          .schema = "tables::" + std::string(table.name),
          .mapping = "type_record",
          .entries = {table_entry}};
}

Record record_of_table_record(const Table &table) {
  const std::string name = "tbl_" + std::string(table.name);
  return {.symbol = name + "_table_record",
          .type_name = name + "_record",
          .kind = "table_record",
          .md5 = std::string(table.record_md5),
          .manifest_md5 = manifest_md5("table_record", definition(table)),
          .manifest_size = 0,
          .schema = "tables::" + std::string(table.name),
          .mapping = "record_type_record",
          .entries = {table_entry}};
}

}  // namespace

std::string bytes_of(std::string_view digits) {
  std::string text;
  for (std::size_t at = 0; at < digits.size(); at += 2) {
    text += (at == 0 ? "0x" : ", 0x") + std::string(digits.substr(at, 2));
  }
  return text;
}

std::vector<Record> records() {
  std::vector<Record> all;
  for (const Structure *type : structures) all.push_back(record_of(*type));
  for (const Enumeration *type : all_enumerations) all.push_back(record_of(*type));
  for (const FlagSet *type : all_flag_sets) all.push_back(record_of(*type));
  for (const Table *table : all_tables) {
    all.push_back(record_of_table(*table));
    all.push_back(record_of_table_record(*table));
  }
  return all;
}

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
