// The constant data of the tables: identities, vfts and the source list of vfts in lookup order, as
// C, where a function's address in a generic type is a constant. And, for each table, the optional
// handlers and the functions that its tree is given.
#include <algorithm>
#include <array>

#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

// What each slot from 2 on holds, behind tbl_<t>_; empty for null.
constexpr std::array<std::string_view, 46> slots{
    "table_open_unsafe",
    "table_open_by_id_unsafe",
    "table_open_by_ior_with_name_unsafe",
    "table_open_by_ior_with_id_unsafe",
    "table_close_unsafe",
    "table_free_unsafe",
    "table_record_create_cb_unsafe",
    "table_record_modify_cb_unsafe",
    "table_record_delete_cb_unsafe",
    "table_record_create_dm_cb_unsafe",
    "table_record_delete_dm_cb_unsafe",
    "table_record_grouping_cb_unsafe",
    "table_record_free_cb_unsafe",
    "search_unsafe",
    "search_w_src_unsafe",
    "create_record_unsafe",
    "record_add_ref_unsafe",
    "destroy_record_unsafe",
    "insert_unsafe",
    "delete_unsafe",
    "pkey_insert_unsafe",
    "pkey_get_next_unsafe",
    "pkey_get_prev_unsafe",
    "pkey_get_first_unsafe",
    "pkey_get_last_unsafe",
    "table_get_count_unsafe",
    "table_get_count_by_src_unsafe",
    "pkey_get_first_by_src_unsafe",
    "pkey_get_first_ignore_src_unsafe",
    "pkey_get_next_by_src_unsafe",
    "pkey_get_next_ignore_src_unsafe",
    "table_record_print_unsafe",
    "table_record_to_xml_unsafe",
    "table_record_from_xml_unsafe",
    "",
    "request_record_destroy_unsafe",
    "table_record_marshal_unsafe",
    "table_record_unmarshal_unsafe",
    "table_record_len_unsafe",
    "table_pkey_marshal_unsafe",
    "table_pkey_unmarshal_unsafe",
    "table_pkey_len_unsafe",
    "pkey_destroy_unsafe",
    "get_next_by_key_unsafe",
    "get_prev_by_key_unsafe",
    "pkey_print_unsafe",
};

std::string vft_words(const std::string &name) {
  std::string text = "{table_" + name + "_luid, table_" + name + "_name, {";
  for (std::string_view slot : slots) {
    text += slot.empty() ? "0, " : "(kelp_vft_word)" + name + "_" + std::string(slot) + ", ";
  }
  return text + "}}";
}

struct HandlerKind {
  std::string_view name;
  std::string_view arguments;
};
constexpr std::string_view event =
    "kelp_handle *handle, uint32_t space_id, void *context, $record *record, uint32_t *err";
constexpr std::string_view dm_event =
    "kelp_handle *handle, uint32_t space_id, $record *record, uint32_t *err";
constexpr std::array<HandlerKind, 7> handler_kinds{{
    {"create", event},
    {"modify", event},
    {"delete", event},
    {"create_dm", dm_event},
    {"delete_dm", dm_event},
    {"grouping",
     "kelp_handle *handle, uint32_t space_id, void *arg_a, uint32_t *err, void *arg_b, "
     "void *arg_c"},
    {"free",
     "kelp_handle *handle, uint32_t space_id, void *arg_a, uint32_t arg_u32, uint32_t *err, "
     "void *arg_b"},
}};

std::string handler_name(const Table &table, const HandlerKind &kind) {
  return "ospf_harbor_oper_tbl_" + std::string(table.name) + "_table_record_" +
         std::string(kind.name) + "_handler";
}

}  // namespace

std::vector<Handler> handlers() {
  std::vector<Handler> all;
  for (const Table *table : all_tables) {
    for (const HandlerKind &kind : handler_kinds) {
      all.push_back(
          {handler_name(*table, kind), replaced(std::string(kind.arguments), "$record",
                                                "tbl_" + std::string(table->name) + "_record")});
    }
  }
  return all;
}

void write_vfts(Writer &writer) {
  std::string text = "#include <ospf_harbor_oper.h>\n\n";
  std::vector<const Table *> by_luid(all_tables.begin(), all_tables.end());
  std::sort(by_luid.begin(), by_luid.end(),
            [](const Table *a, const Table *b) { return a->luid < b->luid; });
  for (const Table *table : by_luid) {
    const std::string name = "tbl_" + std::string(table->name);
    text += "const uint8_t table_" + name + "_luid[16] = {" + bytes_of(table->luid) + "};\n";
    text += "const char table_" + name + "_luid_text[33] = \"" + std::string(table->luid) + "\";\n";
    text += "const char table_" + name + "_name[64] = \"table " + name + "\";\n";
    text += "const kelp_table_vft " + name + "_table_vft = " + vft_words(name) + ";\n\n";
  }
  text +=
      "extern const kelp_table_vft ospf_harbor_oper_table_vfts[21];\n"
      "const kelp_table_vft ospf_harbor_oper_table_vfts[21] = {\n";
  for (const Table *table : by_luid) {
    text += "    " + vft_words("tbl_" + std::string(table->name)) + ",\n";
  }
  writer.file("vfts.c", text + "};\n");

  std::string symbols =
      "#pragma once\n\n#include \"model/tables.hpp\"\n#include \"tables/handler_addresses.hpp\"\n"
      "#include \"tables/tree_functions.hpp\"\n\n"
      "extern \"C\" {\n";
  std::string sets = "namespace harbor {\n";
  for (const Table *table : all_tables) {
    sets += "template <>\ninline constexpr HandlerAddresses handlers_of<model::tables::" +
            std::string(table->name) + ">{";
    for (const HandlerKind &kind : handler_kinds) {
      const std::string name = handler_name(*table, kind);
      symbols += "__attribute__((weak)) uint64_t " + name + "(" +
                 replaced(std::string(kind.arguments), "$record", "void") + ");\n";
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
