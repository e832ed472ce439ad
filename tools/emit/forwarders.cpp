// The forwarders: for each exported function one line that calls its rule with the schema's
// constants. Whatever decides anything belongs in the rule.
#include "products.hpp"

namespace emit {

void write_forwarders(Writer &writer, const std::vector<Unit> &units) {
  for (const Unit &unit : units) {
    const bool is_table = unit.name.starts_with("tbl_");
    std::string text = "#include \"families.hpp\"\n#include \"type_records.hpp\"\n";
    if (is_table) text += "#include \"tables/facts.hpp\"\n#include \"handler_symbols.hpp\"\n";
    text += "#include <ospf_harbor_oper/" + std::string(is_table ? "tables/" : "") + unit.name +
            ".h>\n\nextern \"C\" {\n\n";
    for (const Function &function : unit.functions) {
      text += function.result + " " + function.name + "(" + function.arguments + ") {\n  ";
      if (function.result == "void") {
        text += function.call + ";\n}\n";
      } else {
        text += "return static_cast<" + function.result + ">(" + function.call + ");\n}\n";
      }
    }
    text += "\n}  // extern \"C\"\n";
    writer.file("forwarders/" + unit.name + ".cpp", text);
  }
}

void write_version_script(Writer &writer, const std::vector<Unit> &units) {
  std::string text = "OSPF_HARBOR_OPER_1 {\n  global:\n";
  for (const Unit &unit : units) {
    for (const Function &function : unit.functions) text += "    " + function.name + ";\n";
  }
  for (const std::string &symbol : data_symbols()) text += "    " + symbol + ";\n";
  writer.file("exports.map", text + "  local: *;\n};\n");
}

}  // namespace emit
