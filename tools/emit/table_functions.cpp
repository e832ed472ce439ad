// The functions that a table's facts hold by address: the optional handlers, which an application
// may define, and the exported functions that its tree is given.
#include "families.hpp"
#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

// An event's name, from that of the operation that hands it on: table_record_<event>_cb.
std::string handler_name(const Table &table, const Operation &operation) {
  return "ospf_harbor_oper_tbl_" + std::string(table.name) + "_" +
         replaced(std::string(operation.suffix), "_cb", "_handler");
}

}  // namespace

// A handler has the arguments of the operation that calls it.
std::vector<Handler> handlers() {
  std::vector<Handler> all;
  for (const Table *table : all_tables) {
    for (const Operation &operation : harbor::handlers::operations) {
      all.push_back(
          {handler_name(*table, operation), replaced(std::string(operation.arguments), "$table",
                                                     "tbl_" + std::string(table->name))});
    }
  }
  return all;
}

void write_table_functions(Writer &writer) {
  std::string symbols =
      "#pragma once\n\n#include \"model/tables.hpp\"\n#include \"tables/handler_addresses.hpp\"\n"
      "#include \"tables/tree_functions.hpp\"\n\n"
      "extern \"C\" {\n";
  std::string sets = "namespace harbor {\n";
  for (const Table *table : all_tables) {
    sets += "template <>\ninline constexpr HandlerAddresses handlers_of<model::tables::" +
            std::string(table->name) + ">{";
    for (const Operation &operation : harbor::handlers::operations) {
      const std::string name = handler_name(*table, operation);
      symbols += "__attribute__((weak)) uint64_t " + name + "(" +
                 replaced(std::string(operation.arguments), "$table_record", "void") + ");\n";
      sets += "&" + name + ", ";
    }
    sets += "};\n";
    const std::string key_prefix = "tbl_" + std::string(table->name) + "_" + key_part(*table) + "_";
    symbols += "KELP_API uint32_t " + key_prefix +
               "avl_compare(const e_avl_node *a, const e_avl_node *b);\nKELP_API uint32_t " +
               key_prefix + "avl_internal_walk(e_avl_node *node, void *context);\n";
    sets += "template <>\ninline constexpr TreeFunctions tree_functions_of<model::tables::" +
            std::string(table->name) + ">{&" + key_prefix + "avl_compare, &" + key_prefix +
            "avl_internal_walk};\n";
  }
  writer.file("handler_symbols.hpp", symbols + "}\n\n" + sets + "}  // namespace harbor\n");
}

}  // namespace emit
