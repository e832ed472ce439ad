// The comparator of each table, and the lookups by key. The lookups exist as exported names and as
// vft slots and find nothing: a record is reached by walking the table.
//
// Required: no lookup gets a body. Each gives null at once; it reads no argument, looks at no error
// word and traces nothing.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::order {

// A lookup that finds nothing; what stands behind its first three arguments is its own.
consteval Operation lookup(std::string_view suffix, std::string_view arguments,
                           bool unsafe_twin = false, std::uint8_t vft_slot = 0) {
  return {
      .suffix = suffix,
      .result = "$table_record *",
      .arguments = arguments,
      .rule = "order::nothing",
      .brief =
          "Gives null: records of $table are not found by key. Walk the table instead. No "
          "argument is looked at, the error word included.",
      .unsafe_twin = unsafe_twin,
      .vft_slot = vft_slot,
  };
}

inline constexpr std::string_view by_key =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, const void *key, uint32_t *err";
inline constexpr std::string_view by_key_and_source =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, const void *key, uint32_t src, "
    "uint32_t *err";

inline constexpr std::array key_operations{
    Operation{
        .suffix = "avl_compare",
        .result = "uint32_t",
        .arguments = "const e_avl_node *a, const e_avl_node *b",
        .rule = "order::avl_compare<$bindings>(a, b)",
        .brief = "The order of $table, by the avl_node of two records: 0 when a sorts before b, 1 "
                 "when they are equal, 2 when a sorts after b. Records are ordered by tenant, key "
                 "and source, ascending; a null node sorts first.",
    },
    lookup("search", by_key, true),
    lookup("search_w_src", by_key_and_source),
    lookup("search_not_pending_destroy", by_key_and_source),
    lookup("search_nearest", by_key),
    lookup("search_sub_first", by_key),
    lookup("search_internal", by_key_and_source),
    lookup("get_next_by_key", by_key),
    lookup("get_next_by_key_not_pending_destroy", by_key_and_source),
    lookup("get_next_by_key_w_src", by_key_and_source),
    lookup("get_prev_by_key", by_key),
    lookup("get_prev_by_key_not_pending_destroy", by_key_and_source),
    Operation{
        .suffix = "search_cr",
        .result = "$table_record *",
        .arguments = "kelp_handle *handle, $table_table *table, const void *key, uint32_t src, "
                     "uint32_t get_flags",
        .rule = "order::nothing",
        .brief = "Gives null: records of $table are not found by key. Walk the table instead. No "
                 "argument is looked at, cr_err included.",
        .single_underscore = true,
    },
};
inline constexpr TableFamily key_family{"order", TableScope::per_key, key_operations};

inline constexpr std::array operations{
    lookup("search", by_key, true, KELP_VFT_SEARCH),
    lookup("search_w_src", by_key_and_source, true, KELP_VFT_SEARCH_W_SRC),
    lookup("get_next_by_key", by_key, true, KELP_VFT_GET_NEXT_BY_KEY),
    lookup("get_next_by_key_w_src", by_key_and_source),
    lookup("get_prev_by_key", by_key, true, KELP_VFT_GET_PREV_BY_KEY),
    Operation{
        .suffix = "pkey_print",
        .result = "const char *",
        .arguments = "kelp_handle *handle, uint32_t space_id, const $K *pkey, char *buffer, "
                     "uint32_t size, uint32_t *err",
        .rule = "order::nothing",
        .brief = "Gives null: a primary key object is not printed as such; $K_print prints it. No "
                 "argument is looked at, the error word included.",
        .unsafe_twin = true,
        .vft_slot = KELP_VFT_PKEY_PRINT,
    },
};
inline constexpr TableFamily family{"order", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

template <const TableFacts &facts>
std::uint32_t avl_compare(const e_avl_node *a, const e_avl_node *b) {
  return static_cast<std::uint32_t>(key_order::compare_nodes<*facts.table>(a, b, false) + 1);
}

template <typename... Arguments>
constexpr std::nullptr_t nothing(const Arguments &...) {
  return nullptr;
}

}  // namespace harbor::order
