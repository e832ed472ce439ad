// The public headers: C, declarations only, one for each type and table, and the chief header.
#include <cctype>

#include "products.hpp"

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

std::string_view form_of(const Field &field) {
  switch (field.kind) {
    case Kind::enumeration:
      return "enumeration";
    case Kind::flags:
      return "flag set";
    case Kind::structure:
      return "embedded";
    case Kind::counter:
      return "counter";
    case Kind::array:
      return "array";
    case Kind::reference:
      return "reference";
    case Kind::arm:
      return "arm";
    default:
      return "scalar";
  }
}

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

void write_unit(Writer &writer, const Unit &unit, std::string comment,
                const std::filesystem::path &path) {
  const std::string guard = "OSPF_HARBOR_OPER_" + upper(unit.name) + "_H";
  writer.file(path, opening(comment, guard) +
                        "#include <ospf_harbor_oper/types.h>\n\nKELP_EXTERN_C_BEGIN\n\n" +
                        declarations(unit) + "KELP_EXTERN_C_END\n\n#endif\n");
}

std::string types_header() {
  std::string text = opening(
      std::string(
          "/* The types of the model: incomplete types for its objects, tables and records, "
          "the values\n * of enumerations and the bits of flag sets, the variants in which "
          "fields came, and the\n * exported type records.\n") +
          std::string(generated_note),
      "OSPF_HARBOR_OPER_TYPES_H");
  text +=
      "#include <kelp/handle.h>\n#include <kelp/primitive_layout.h>\n#include <kelp/table.h>\n"
      "#include <kelp/vft.h>\n\nKELP_EXTERN_C_BEGIN\n\n";
  for (const Structure *type : structures) {
    text += "/* " + std::string(type->meaning) + " */\ntypedef struct " + std::string(type->name) +
            " " + std::string(type->name) + ";\n";
  }
  for (const Enumeration *type : all_enumerations) {
    text += "/* " + std::string(type->meaning) + " */\ntypedef struct " + std::string(type->name) +
            " " + std::string(type->name) + ";\n";
  }
  for (const FlagSet *type : all_flag_sets) {
    text += "/* " + std::string(type->meaning) + " */\ntypedef struct " + std::string(type->name) +
            " " + std::string(type->name) + ";\n";
  }
  text += "\n/* Tables and their records. */\n";
  for (const Table *table : all_tables) {
    const std::string name = "tbl_" + std::string(table->name);
    text += "typedef struct " + name + "_table " + name + "_table;\ntypedef struct " + name +
            "_record " + name + "_record;\n";
  }
  text +=
      "\n/* Called by a walk with each record, a <table>_record, and the walk's argument; a "
      "non-zero\n * result ends the walk. */\n"
      "typedef uint32_t (*ospf_harbor_oper_record_callback)(void *record, void *argument);\n\n";
  for (const Enumeration *type : all_enumerations) {
    text += "/* Values of " + std::string(type->name) + ". */\nenum " + std::string(type->name) +
            "_value {\n";
    for (const Member &member : type->members) {
      text += "  " + std::string(member.name) + " = " + std::to_string(member.value) +
              (&member == &type->members.back() ? "" : ",") + " /* " + std::string(member.meaning) +
              " */\n";
    }
    text += "};\n\n";
  }
  for (const FlagSet *type : all_flag_sets) {
    text += "/* Bit numbers of " + std::string(type->name) +
            "; bit n has the mask 1 << n. */\nenum " + std::string(type->name) + "_bit {\n";
    for (const Member &member : type->members) {
      text += "  " + std::string(member.name) + " = " + std::to_string(member.value) +
              (&member == &type->members.back() ? "" : ",") + " /* " + std::string(member.meaning) +
              " */\n";
    }
    text += "};\n\n";
  }
  text += "/* The highest variant of each type, and the variant in which a later field came. */\n";
  for (const Structure *type : structures) {
    text += "#define " + upper(type->name) + "_HIGHEST_VARIANT " +
            std::to_string(type->variants - 1) + "\n";
    for (const Field *field : type->fields) {
      if (field->since == 0) continue;
      text += "#define " + upper(type->name) + "_" + upper(field->name) + "_SINCE " +
              std::to_string(field->since) + "\n";
    }
  }
  for (const Enumeration *type : all_enumerations) {
    text += "#define " + upper(type->name) + "_HIGHEST_VARIANT " +
            std::to_string(type->variants - 1) + "\n";
  }
  for (const FlagSet *type : all_flag_sets) {
    text += "#define " + upper(type->name) + "_HIGHEST_VARIANT " +
            std::to_string(type->variants - 1) + "\n";
  }
  text += "\n/* The type records. Objects point at these, or at the runtime's copies. */\n";
  const auto record = [&](const std::string &name) {
    text += "extern KELP_API kelp_type_record _" + name + "_type_info_internal;\n";
  };
  for (const Structure *type : structures) record(std::string(type->name));
  for (const Enumeration *type : all_enumerations) record(std::string(type->name));
  for (const FlagSet *type : all_flag_sets) record(std::string(type->name));
  for (const Table *table : all_tables) {
    record("tbl_" + std::string(table->name) + "_table");
    record("tbl_" + std::string(table->name) + "_table_record");
  }
  return text + "\nKELP_EXTERN_C_END\n\n#endif\n";
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

}  // namespace

void write_headers(Writer &writer, const std::vector<Unit> &units) {
  const std::filesystem::path folder = "include/ospf_harbor_oper";
  std::string chief =
      std::string(
          "/* The operational data model of OSPF: the chief header, which includes all.\n") +
      std::string(generated_note) +
      "#ifndef OSPF_HARBOR_OPER_H\n#define OSPF_HARBOR_OPER_H\n\n"
      "#include <ospf_harbor_oper/types.h>\n";
  writer.file(folder / "types.h", types_header());
  for (const Unit &unit : units) {
    const bool is_table = unit.name.starts_with("tbl_");
    std::string comment = "/* " + unit.name + ": " + unit.meaning + "\n";
    for (const Structure *type : structures) {
      if (type->name == unit.name) comment += field_table(*type);
    }
    comment += generated_note;
    Unit written = unit;
    const std::filesystem::path path =
        is_table ? folder / "tables" / (unit.name + ".h") : folder / (unit.name + ".h");
    chief += "#include <" + path.lexically_relative("include").string() + ">\n";
    if (is_table) {
      for (const Table *table : all_tables) {
        if ("tbl_" + std::string(table->name) == unit.name && !written.functions.empty()) {
          written.functions.front().doc = table_data(*table) + written.functions.front().doc;
        }
      }
    } else if (unit.name == "module" && !written.functions.empty()) {
      written.functions.front().doc =
          "/* The module's trace identities; the first is read as a 16-bit value, the second by\n"
          " * nothing here. */\n"
          "extern KELP_API uint32_t g_kelp_ospf_harbor_oper_trace_module_id;\n"
          "extern KELP_API uint32_t g_kelp_ospf_harbor_oper_stub_trace_module_id;\n\n"
          "/* The bundle handler registered last; null for none. */\n"
          "extern KELP_API void *ospf_harbor_oper_bundle_registered_handler;\n\n"
          "/* The copies of the 21 table vfts that callers are handed, in the order of their\n"
          " * identities; filled once. */\n"
          "extern KELP_API kelp_table_vft ospf_harbor_oper_table_lut[21];\n\n" +
          written.functions.front().doc;
    }
    write_unit(writer, written, comment, path);
  }
  std::string text = opening(
      std::string("/* The optional handlers. An application defines those it cares about, by these "
                  "names; the\n * library finds out at each call whether one is there.\n") +
          std::string(generated_note),
      "OSPF_HARBOR_OPER_HANDLERS_H");
  text += "#include <ospf_harbor_oper/types.h>\n\nKELP_EXTERN_C_BEGIN\n\n";
  for (const Handler &handler : handlers()) {
    text += "uint64_t " + handler.name + "(" + handler.arguments + ");\n";
  }
  writer.file(folder / "handlers.h", text + "\nKELP_EXTERN_C_END\n\n#endif\n");
  writer.file("include/ospf_harbor_oper.h",
              chief + "#include <ospf_harbor_oper/handlers.h>\n\n#endif\n");
  writer.note_strangers("include");
}

}  // namespace emit
