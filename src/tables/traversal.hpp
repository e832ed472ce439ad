// How records are reached: steps and starts in the order of the table's tree, confined to the
// caller's tenant and filtered by source, walks over everything, and the neighbours of one key. A
// record that a step or a start hands out enters the replication cache, shadow records excepted.
// Nothing here takes a reference; a holder who keeps a record past the lock takes one.
//
// The many exported names are two steps and two starts with arguments fixed. No step sets the error
// word itself: the end of a table is a plain null.
#pragma once

#include <array>

#include "module/operation.hpp"
#include "tables/facts.hpp"

namespace harbor::traversal {

// --- the rows -----------------------------------------------------------------------------------

inline constexpr std::string_view step_arguments =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, $table_record *record, uint32_t "
    "*err";
inline constexpr std::string_view step_arguments_by_source =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, $table_record *record, uint32_t "
    "src, uint32_t *err";
inline constexpr std::string_view start_arguments =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, uint32_t *err";
inline constexpr std::string_view start_arguments_by_source =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, uint32_t src, uint32_t *err";

// What a traversal's name stands for, once for the name with the key part and once for the one that
// begins with pkey_.
struct Meaning {
  std::string_view arguments;
  std::string_view rule;
  std::string_view brief;
};

inline constexpr Meaning next{
    step_arguments,
    "traversal::step($bindings, harbor::traversal::Way::next, handle, space_id, table, record, "
    "{.src = KELP_SRC_DEFAULT, .filter_src = 1}, err)",
    "Gives the next record of the caller's tenant with the default source, null at the end."};
inline constexpr Meaning previous{
    step_arguments,
    "traversal::step($bindings, harbor::traversal::Way::previous, handle, space_id, table, record, "
    "{.src = KELP_SRC_DEFAULT, .filter_src = 1}, err)",
    "Gives the previous record of the caller's tenant with the default source, null at the end."};
inline constexpr Meaning next_by_source{
    step_arguments_by_source,
    "traversal::step($bindings, harbor::traversal::Way::next, handle, space_id, table, record, "
    "{.src = src, .filter_src = 1}, err)",
    "Gives the next record of the caller's tenant with the source src, null at the end."};
inline constexpr Meaning previous_by_source{
    step_arguments_by_source,
    "traversal::step($bindings, harbor::traversal::Way::previous, handle, space_id, table, record, "
    "{.src = src, .filter_src = 1}, err)",
    "Gives the previous record of the caller's tenant with the source src, null at the end."};
inline constexpr Meaning next_not_pending{
    step_arguments_by_source,
    "traversal::step($bindings, harbor::traversal::Way::next, handle, space_id, table, record, "
    "{.src = src, .filter_src = 1, .skip_pending = 1}, err)",
    "Gives the next record of the caller's tenant with the source src that does not wait for its "
    "destruction, null at the end."};
inline constexpr Meaning previous_not_pending{
    step_arguments_by_source,
    "traversal::step($bindings, harbor::traversal::Way::previous, handle, space_id, table, record, "
    "{.src = src, .filter_src = 1, .skip_pending = 1}, err)",
    "Gives the previous record of the caller's tenant with the source src that does not wait for "
    "its destruction, null at the end."};
inline constexpr Meaning next_any_source{
    step_arguments,
    "traversal::step($bindings, harbor::traversal::Way::next, handle, space_id, table, record, "
    "{.src = KELP_SRC_DEFAULT}, err)",
    "Gives the next record of the caller's tenant whatever its source, shadow records included; "
    "null at the end."};
inline constexpr Meaning previous_any_source{
    step_arguments,
    "traversal::step($bindings, harbor::traversal::Way::previous, handle, space_id, table, record, "
    "{.src = KELP_SRC_DEFAULT}, err)",
    "Gives the previous record of the caller's tenant whatever its source, shadow records "
    "included; null at the end."};

inline constexpr Meaning first{
    start_arguments,
    "traversal::start($bindings, harbor::traversal::Way::next, handle, space_id, table, "
    "{.src = KELP_SRC_DEFAULT, .filter_src = 1}, err)",
    "Gives the first record of the caller's tenant with the default source, null when it has "
    "none."};
inline constexpr Meaning last{
    start_arguments,
    "traversal::start($bindings, harbor::traversal::Way::previous, handle, space_id, table, "
    "{.src = KELP_SRC_DEFAULT, .filter_src = 1}, err)",
    "Gives the last record of the caller's tenant with the default source, null when it has none."};
inline constexpr Meaning first_by_source{
    start_arguments_by_source,
    "traversal::start($bindings, harbor::traversal::Way::next, handle, space_id, table, "
    "{.src = src, .filter_src = 1}, err)",
    "Gives the first record of the caller's tenant with the source src, null when it has none."};
inline constexpr Meaning last_by_source{
    start_arguments_by_source,
    "traversal::start($bindings, harbor::traversal::Way::previous, handle, space_id, table, "
    "{.src = src, .filter_src = 1}, err)",
    "Gives the last record of the caller's tenant with the source src, null when it has none."};
inline constexpr Meaning first_any_source{
    start_arguments,
    "traversal::start($bindings, harbor::traversal::Way::next, handle, space_id, table, "
    "{.src = KELP_SRC_DEFAULT}, err)",
    "Gives the first record of the caller's tenant whatever its source, shadow records included; "
    "null when it has none."};

inline constexpr Meaning same_key_next{
    step_arguments,
    "traversal::neighbour($bindings, harbor::traversal::Way::next, handle, space_id, table, "
    "record, err)",
    "Gives the record directly behind in the tree when it has the same key, else null. Neither "
    "tenant nor source is looked at."};
inline constexpr Meaning same_key_previous{
    step_arguments,
    "traversal::neighbour($bindings, harbor::traversal::Way::previous, handle, space_id, table, "
    "record, err)",
    "Gives the record directly before in the tree when it has the same key, else null. Neither "
    "tenant nor source is looked at."};
inline constexpr Meaning shadow{
    step_arguments, "traversal::shadow_of",
    "Gives the shadow record of the record's key: the record itself when it is one, null when "
    "there is none."};

inline constexpr std::string_view step_errors =
    "none of its own; what the replication cache reports stays in the error word, and the record "
    "is given all the same";
inline constexpr std::string_view step_ownership = "no reference is taken";

consteval Operation row(std::string_view suffix, const Meaning &meaning, bool unsafe_twin = false,
                        std::uint8_t vft_slot = 0) {
  return {
      .suffix = suffix,
      .result = "$table_record *",
      .arguments = meaning.arguments,
      .rule = meaning.rule,
      .brief = meaning.brief,
      .errors = step_errors,
      .ownership = step_ownership,
      .unsafe_twin = unsafe_twin,
      .vft_slot = vft_slot,
  };
}
consteval Operation pkey_row(std::string_view suffix, const Meaning &meaning,
                             std::uint8_t vft_slot = 0) {
  return row(suffix, meaning, true, vft_slot);
}

inline constexpr std::string_view internal_arguments =
    "kelp_handle *handle, uint32_t space_id, $table_table *table, $table_record *record, uint32_t "
    "src, uint32_t filter_src, uint32_t skip_pending, uint32_t same_key, uint32_t *err";
inline constexpr std::string_view internal_brief =
    "The step behind the others: the nearest record of the caller's tenant. filter_src non-zero "
    "takes only the source src, src 0 refuses shadow records, skip_pending non-zero passes over "
    "records that wait for their destruction, same_key non-zero ends at the first other key.";

inline constexpr Meaning internal_next{
    internal_arguments,
    "traversal::step($bindings, harbor::traversal::Way::next, handle, space_id, table, record, "
    "{.src = src, .filter_src = filter_src, .skip_pending = skip_pending, .same_key = same_key}, "
    "err)",
    internal_brief};
inline constexpr Meaning internal_previous{
    internal_arguments,
    "traversal::step($bindings, harbor::traversal::Way::previous, handle, space_id, table, record, "
    "{.src = src, .filter_src = filter_src, .skip_pending = skip_pending, .same_key = same_key}, "
    "err)",
    internal_brief};

// Required: with src 0 the first form takes any source but shadows, the last form only source 0.
inline constexpr Meaning first_not_pending{
    start_arguments_by_source,
    "traversal::start($bindings, harbor::traversal::Way::next, handle, space_id, table, "
    "{.src = src, .filter_src = harbor::traversal::names_a_source(src), .skip_pending = 1}, err)",
    "Gives the first record of the caller's tenant with the source src that does not wait for its "
    "destruction, null when it has none. src 0 takes any source but shadow records."};
inline constexpr Meaning last_not_pending{
    start_arguments_by_source,
    "traversal::start($bindings, harbor::traversal::Way::previous, handle, space_id, table, "
    "{.src = src, .filter_src = 1, .skip_pending = 1}, err)",
    "Gives the last record of the caller's tenant with the source src that does not wait for its "
    "destruction, null when it has none. src 0 takes only records whose source is 0."};

inline constexpr std::array key_operations{
    row("get_next_internal", internal_next),
    row("get_prev_internal", internal_previous),
    row("get_next", next),
    row("get_prev", previous),
    row("get_next_by_src", next_by_source),
    row("get_prev_by_src", previous_by_source),
    row("get_next_not_pending_destroy", next_not_pending),
    row("get_prev_not_pending_destroy", previous_not_pending),
    row("get_next_ignore_src", next_any_source),
    row("get_prev_ignore_src", previous_any_source),
    row("get_first", first),
    row("get_last", last),
    row("get_first_by_src", first_by_source),
    row("get_last_by_src", last_by_source),
    row("get_first_not_pending_destroy", first_not_pending),
    row("get_last_not_pending_destroy", last_not_pending),
    row("get_first_ignore_src", first_any_source),
    row("get_sub_next", same_key_next),
    row("get_sub_prev", same_key_previous),
    row("get_shadow", shadow),
    Operation{
        .suffix = "walk",
        .result = "void",
        .arguments = "$table_table *table, ospf_harbor_oper_record_callback callback, void "
                     "*argument, uint32_t *err",
        .rule = "traversal::walk",
        .brief = "Calls callback with each record of the table in order and with argument: of all "
                 "tenants and sources, waiting for destruction or not. A non-zero result of the "
                 "callback ends the walk. Nothing enters the replication cache.",
    },
    Operation{
        .suffix = "avl_internal_walk",
        .result = "uint32_t",
        .arguments = "e_avl_node *node, void *context",
        .rule = "traversal::visit(node, context)",
        .brief = "What the tree's walk calls with each node: calls the callback in context with "
                 "the node's record and gives its result.",
    },
    Operation{
        .suffix = "unordered_traversal",
        .result = "void",
        .arguments = "$table_table *table, ospf_harbor_oper_record_callback callback, void "
                     "*argument, uint32_t *err",
        .rule = "traversal::unordered",
        .brief = "Does nothing: $table has no unordered form.",
    },
    Operation{
        .suffix = "get_cr",
        .result = "$table_record *",
        .arguments = "kelp_handle *handle, $table_table *table, uint32_t get_op, $table_record "
                     "*record, uint8_t src, uint32_t get_flags",
        .rule = "traversal::get_cr",
        .brief = "Gives the first (get_op 0), last (1), previous (2) or next (3) record of the "
                 "caller's tenant with the source src, 0 for the default, with the handle's "
                 "cr_space_id and cr_err. Bit 0 of get_flags takes any source, bit 1 takes records "
                 "that wait for their destruction too. record is the reference of 2 and 3.",
        .errors = "KELP_ERR_INVALID as the handle's last error for another get_op, with cr_err "
                  "left alone",
        .ownership = step_ownership,
        .single_underscore = true,
    },
};
inline constexpr TableFamily key_family{"traversal", TableScope::per_key, key_operations};

inline constexpr std::array operations{
    pkey_row("pkey_get_next", next, KELP_VFT_PKEY_GET_NEXT),
    pkey_row("pkey_get_next_by_src", next_by_source, KELP_VFT_PKEY_GET_NEXT_BY_SRC),
    pkey_row("pkey_get_next_ignore_src", next_any_source, KELP_VFT_PKEY_GET_NEXT_IGNORE_SRC),
    pkey_row("pkey_get_prev", previous, KELP_VFT_PKEY_GET_PREV),
    pkey_row("pkey_get_prev_by_src", previous_by_source),
    pkey_row("pkey_get_prev_ignore_src", previous_any_source),
    pkey_row("pkey_get_first", first, KELP_VFT_PKEY_GET_FIRST),
    pkey_row("pkey_get_first_by_src", first_by_source, KELP_VFT_PKEY_GET_FIRST_BY_SRC),
    pkey_row("pkey_get_first_ignore_src", first_any_source, KELP_VFT_PKEY_GET_FIRST_IGNORE_SRC),
    pkey_row("pkey_get_last", last, KELP_VFT_PKEY_GET_LAST),
    pkey_row("pkey_get_last_by_src", last_by_source),
    pkey_row("pkey_get_sub_next", same_key_next),
    pkey_row("pkey_get_sub_prev", same_key_previous),
    pkey_row("pkey_get_shadow", shadow),
    Operation{
        .suffix = "record_walk_cr",
        .result = "uint32_t",
        .arguments = "kelp_handle *handle, $table_table *table, uint32_t key_index, "
                     "ospf_harbor_oper_record_callback callback, void *argument",
        .rule = "traversal::walk_cr",
        .brief = "Walks as the walk of the table's one key does, which has index 0, and gives what "
                 "the walk ended with: the first non-zero result of the callback, or 0. Any other "
                 "key_index, and a non-zero cr_err, gives 0 without a walk.",
    },
};
inline constexpr TableFamily family{"traversal", TableScope::table, operations};

// --- the rules --------------------------------------------------------------------------------

enum class Way : std::uint8_t { next, previous };

// Which records a traversal hands out. Only the low byte of src counts.
struct Filter {
  std::uint32_t src = KELP_SRC_ANY;
  std::uint32_t filter_src = 0;
  std::uint32_t skip_pending = 0;
  std::uint32_t same_key = 0;
};

using RecordCallback = std::uint32_t (*)(void *record, void *argument);

constexpr std::uint32_t names_a_source(std::uint32_t src) {
  return static_cast<std::uint8_t>(src) != KELP_SRC_ANY ? 1 : 0;
}

void *step(const TableFacts &facts, Way way, kelp_handle *handle, std::uint32_t space_id,
           void *table, void *record, const Filter &filter, std::uint32_t *err);
void *start(const TableFacts &facts, Way way, kelp_handle *handle, std::uint32_t space_id,
            void *table, const Filter &filter, std::uint32_t *err);
void *neighbour(const TableFacts &facts, Way way, kelp_handle *handle, std::uint32_t space_id,
                void *table, void *record, std::uint32_t *err);
void *shadow_of(const TableFacts &facts, kelp_handle *handle, std::uint32_t space_id, void *table,
                void *record, std::uint32_t *err);
void *get_cr(const TableFacts &facts, kelp_handle *handle, void *table, std::uint32_t get_op,
             void *record, std::uint8_t src, std::uint32_t get_flags);

void walk(const TableFacts &facts, void *table, RecordCallback callback, void *argument,
          const std::uint32_t *err);
std::uint32_t walk_cr(const TableFacts &facts, kelp_handle *handle, void *table,
                      std::uint32_t key_index, RecordCallback callback, void *argument);
std::uint32_t visit(e_avl_node *node, void *context);

template <typename... Arguments>
constexpr void unordered(const Arguments &...) {}

}  // namespace harbor::traversal
