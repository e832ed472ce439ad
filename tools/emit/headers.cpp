// The public headers: C, declarations only, one for each type and table, and the chief header.
#include <cctype>
#include <type_traits>

#include "products.hpp"
#include "records.hpp"

namespace emit {

namespace {

using namespace harbor::model;

std::string upper(std::string_view text) {
  std::string result;
  for (char c : text) {
    result += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  }
  return result;
}

std::string opening(std::string_view comment, std::string_view guard) {
  return std::string(comment) + "#ifndef " + std::string(guard) + "\n#define " +
         std::string(guard) + "\n\n";
}

constexpr std::string_view generated_note =
    " * Written by the emitter from the schema; `make emit` renews it. */\n";

std::string field_table(const Structure &type) {
  std::string text = " *\n * Fields (name: type, form, first variant):\n";
  for (const Field *field : type.fields) {
    text += " *   " + std::string(field->name) + ": " + storage_type(*field) + ", " +
            std::string(form_of(*field)) + ", " + std::to_string(field->since) + ". " +
            std::string(field->meaning) + "\n";
  }
  return text;
}

// A prototype, broken behind commas so that it stays within 100 columns.
std::string prototype(const Function &function) {
  std::string text;
  std::string line = "KELP_API " + function.result + (function.result.back() == '*' ? "" : " ") +
                     function.name + "(";
  const std::string margin(line.size() <= 60 ? line.size() : 4, ' ');
  std::size_t at = 0;
  while (at < function.arguments.size()) {
    std::size_t end = function.arguments.find(", ", at);
    end = end == std::string::npos ? function.arguments.size() : end + 1;
    const std::string argument = function.arguments.substr(at, end - at);
    at = end + 1;
    const bool opens = line.back() == '(' || line == margin;
    if (line.size() + argument.size() + 3 > 100) {
      text += line + "\n";
      line = margin + argument;
    } else {
      line += (opens ? "" : " ") + argument;
    }
  }
  return text + line + ");\n";
}

std::string declarations(const Unit &unit) {
  std::string text;
  for (const Function &function : unit.functions) {
    text += function.doc + prototype(function) + "\n";
  }
  return text;
}

// Structures, enumerations and flag sets: the order of the type records.
template <typename Act>
void for_each_type(Act act) {
  for (const Structure *type : structures) act(*type);
  for (const Enumeration *type : all_enumerations) act(*type);
  for (const FlagSet *type : all_flag_sets) act(*type);
}

std::string incomplete_types() {
  std::string text;
  for_each_type([&](const auto &type) {
    text += "/* " + std::string(type.meaning) + " */\ntypedef struct " + std::string(type.name) +
            " " + std::string(type.name) + ";\n";
  });
  text += "\n/* Tables and their records. */\n";
  for (const Table *table : all_tables) {
    for (const std::string_view end : {"_table", "_record"}) {
      const std::string name = "tbl_" + std::string(table->name) + std::string(end);
      text += "typedef struct " + name + " " + name + ";\n";
    }
  }
  return text;
}

// The members of an enumeration or flag set as a C enumeration.
std::string members_of(const std::string &comment, const std::string &name,
                       std::span<const Member> members) {
  std::string text = "/* " + comment + ". */\nenum " + name + " {\n";
  for (const Member &member : members) {
    text += "  " + std::string(member.name) + " = " + std::to_string(member.value) +
            (&member == &members.back() ? "" : ",") + " /* " + std::string(member.meaning) +
            " */\n";
  }
  return text + "};\n\n";
}

std::string values_and_bits() {
  std::string text;
  for (const Enumeration *type : all_enumerations) {
    const std::string name(type->name);
    text += members_of("Values of " + name, name + "_value", type->members);
  }
  for (const FlagSet *type : all_flag_sets) {
    const std::string name(type->name);
    text += members_of("Bit numbers of " + name + "; bit n has the mask 1 << n", name + "_bit",
                       type->members);
  }
  return text;
}

std::string variant_numbers() {
  std::string text =
      "/* The highest variant of each type, and the variant in which a later field came. */\n";
  for_each_type([&]<typename Type>(const Type &type) {
    text += "#define " + upper(type.name) + "_HIGHEST_VARIANT " +
            std::to_string(type.variants - 1) + "\n";
    if constexpr (std::is_same_v<Type, Structure>) {
      for (const Field *field : type.fields) {
        if (field->since == 0) continue;
        text += "#define " + upper(type.name) + "_" + upper(field->name) + "_SINCE " +
                std::to_string(field->since) + "\n";
      }
    }
  });
  return text;
}

std::string record_declarations() {
  std::string text =
      "\n/* The type records. Objects point at these, or at the runtime's copies. */\n";
  for (const Record &record : records()) {
    text += "extern KELP_API kelp_type_record _" + record.symbol + "_type_info_internal;\n";
  }
  return text;
}

std::string types_header() {
  const std::string comment =
      "/* The types of the model: incomplete types for its objects, tables and records, the "
      "values\n * of enumerations and the bits of flag sets, the variants in which fields came, "
      "and the\n * exported type records.\n";
  return opening(comment + std::string(generated_note), "OSPF_HARBOR_OPER_TYPES_H") +
         "#include <kelp/handle.h>\n#include <kelp/primitive_layout.h>\n#include "
         "<kelp/table.h>\n#include <kelp/vft.h>\n\nKELP_EXTERN_C_BEGIN\n\n" +
         incomplete_types() +
         "\n/* Called by a walk with each record, a <table>_record, and the walk's argument; a "
         "non-zero\n * result ends the walk. */\n"
         "typedef uint32_t (*ospf_harbor_oper_record_callback)(void *record, void *argument);\n\n" +
         values_and_bits() + variant_numbers() + record_declarations() +
         "\nKELP_EXTERN_C_END\n\n#endif\n";
}

std::string table_data(const Table &table) {
  const std::string name = "tbl_" + std::string(table.name);
  return "/* The table's identity: 16 bytes, the same as 32 hexadecimal digits, and its name. */\n"
         "extern KELP_API const uint8_t table_" +
         name +
         "_luid[16];\n"
         "extern KELP_API const char table_" +
         name +
         "_luid_text[33];\n"
         "extern KELP_API const char table_" +
         name +
         "_name[64];\n\n"
         "/* The table's operations, for those who know it only by its identity. */\n"
         "extern KELP_API const kelp_table_vft " +
         name + "_table_vft;\n\n";
}

std::string module_data() {
  const std::string tables = std::to_string(all_tables.size());
  return "/* The module's trace identities; the first is read as a 16-bit value, the second by\n"
         " * nothing here. */\n"
         "extern KELP_API uint32_t g_kelp_ospf_harbor_oper_trace_module_id;\n"
         "extern KELP_API uint32_t g_kelp_ospf_harbor_oper_stub_trace_module_id;\n\n"
         "/* The bundle handler registered last; null for none. */\n"
         "extern KELP_API void *ospf_harbor_oper_bundle_registered_handler;\n\n"
         "/* The copies of the " +
         tables +
         " table vfts that callers are handed, in the order of their\n"
         " * identities; filled once. */\n"
         "extern KELP_API kelp_table_vft ospf_harbor_oper_table_lut[" +
         tables + "];\n\n";
}

// What a unit exports beside its functions.
std::string data_of(const Unit &unit) {
  if (unit.name == "module") return module_data();
  for (const Table *table : all_tables) {
    if ("tbl_" + std::string(table->name) == unit.name) return table_data(*table);
  }
  return {};
}

std::string unit_header(const Unit &unit) {
  std::string comment = "/* " + unit.name + ": " + unit.meaning + "\n";
  for (const Structure *type : structures) {
    if (type->name == unit.name) comment += field_table(*type);
  }
  return opening(comment + std::string(generated_note),
                 "OSPF_HARBOR_OPER_" + upper(unit.name) + "_H") +
         "#include <ospf_harbor_oper/types.h>\n\nKELP_EXTERN_C_BEGIN\n\n" + data_of(unit) +
         declarations(unit) + "KELP_EXTERN_C_END\n\n#endif\n";
}

std::string handlers_header() {
  const std::string comment =
      "/* The optional handlers. An application defines those it cares about, by these names; "
      "the\n * library finds out at each call whether one is there.\n";
  std::string text = opening(comment + std::string(generated_note), "OSPF_HARBOR_OPER_HANDLERS_H") +
                     "#include <ospf_harbor_oper/types.h>\n\nKELP_EXTERN_C_BEGIN\n\n";
  for (const Handler &handler : handlers()) {
    text += "uint64_t " + handler.name + "(" + handler.arguments + ");\n";
  }
  return text + "\nKELP_EXTERN_C_END\n\n#endif\n";
}

}  // namespace

void write_headers(Writer &writer, const std::vector<Unit> &units) {
  const std::filesystem::path folder = "include/ospf_harbor_oper";
  std::string chief =
      opening("/* The operational data model of OSPF: the chief header, which includes all.\n" +
                  std::string(generated_note),
              "OSPF_HARBOR_OPER_H") +
      "#include <ospf_harbor_oper/types.h>\n";
  writer.file(folder / "types.h", types_header());
  for (const Unit &unit : units) {
    const bool is_table = unit.name.starts_with("tbl_");
    const auto path = (is_table ? folder / "tables" : folder) / (unit.name + ".h");
    chief += "#include <" + path.lexically_relative("include").string() + ">\n";
    writer.file(path, unit_header(unit));
  }
  writer.file(folder / "handlers.h", handlers_header());
  writer.file("include/ospf_harbor_oper.h",
              chief + "#include <ospf_harbor_oper/handlers.h>\n\n#endif\n");
  writer.note_strangers("include");
}

}  // namespace emit
