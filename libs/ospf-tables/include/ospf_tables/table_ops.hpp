// The tables of the model for code that is generic over them: for each table its types and
// operations under common names, and for each row type the references that lead further down. What
// stands here is a list without behaviour. The tables, their keys and references are emitted from
// the rows of the schema; what a table's rows are called in a path, and which table is above which,
// is said here, and a table without it does not compile.
#pragma once

#include <ospf_harbor_oper.h>

#include <cstdint>
#include <tuple>
#include <type_traits>

namespace ospf_tables {

inline constexpr std::uint32_t space = 0;

// The key of a table whose rows keep it in the object itself.
struct InlineKey {};

// What a path calls a row of each table, from the root down.
#define LEVELS(ROW)                              \
  ROW(ospf_rev1, "ospf")                         \
  ROW(ospf, "ospf-rev0")                         \
  ROW(ospf_instance_rev1, "instance")            \
  ROW(ospf_instance, "instance-rev0")            \
  ROW(ospf_area, "area")                         \
  ROW(ospf_interface, "interface")               \
  ROW(ospf_neighbor, "neighbor")                 \
  ROW(ospf_static_neighbor, "static-neighbor")   \
  ROW(area_scope_lsas, "area-lsas")              \
  ROW(link_scope_lsas, "lsas")                   \
  ROW(area_scope_lsa, "area-lsa")                \
  ROW(link_scope_lsa, "lsa")                     \
  ROW(ospfv2_link, "link")                       \
  ROW(ospfv2_topology, "topology")               \
  ROW(ospfv2_external, "external")               \
  ROW(ospfv2_unknown_tlv, "unknown-tlv")         \
  ROW(ospfv2_unknown_sub_tlv, "unknown-sub-tlv") \
  ROW(ospfv3_link, "link-v3")                    \
  ROW(ospfv3_prefix_list, "prefix")              \
  ROW(ospfv3_ia_prefix_list, "ia-prefix")        \
  ROW(multi_topology, "multi-topology")

namespace row_kinds {
#define KIND(table_name, text) inline constexpr const char *table_name = text;
LEVELS(KIND)
#undef KIND
}  // namespace row_kinds

#define TABLE_OPS(table_name, object_name)                                                \
  struct table_name##_ops {                                                               \
    using Table = tbl_##table_name##_table;                                               \
    using Record = tbl_##table_name##_record;                                             \
    using Object = object_name;                                                           \
    static constexpr const char *name = "tbl_" #table_name;                               \
    static constexpr const char *kind = row_kinds::table_name;                            \
    static constexpr const std::uint8_t *luid() { return table_tbl_##table_name##_luid; } \
    static constexpr auto open = &tbl_##table_name##_table_open;                          \
    static constexpr auto open_auto_id = &tbl_##table_name##_table_open_auto_id;          \
    static constexpr auto free = &tbl_##table_name##_table_free;                          \
    static constexpr auto count = &tbl_##table_name##_table_get_count;                    \
    static constexpr auto create_record_of = &tbl_##table_name##_create_record_w_src;     \
    static constexpr auto destroy_record = &tbl_##table_name##_destroy_record;            \
    static constexpr auto insert = &tbl_##table_name##_insert;                            \
    static constexpr auto first_of = &tbl_##table_name##_pkey_get_first_by_src;           \
    static constexpr auto next_of = &tbl_##table_name##_pkey_get_next_by_src;             \
    static constexpr auto create = &object_name##_create;                                 \
    static constexpr auto destroy = &object_name##_destroy;                               \
    static constexpr auto get = &tbl_##table_name##_##object_name##_get_field;            \
    static constexpr auto put = &tbl_##table_name##_##object_name##_set_field;            \
    static constexpr auto print = &tbl_##table_name##_table_record_print;                 \
    static constexpr auto to_xml = &tbl_##table_name##_table_record_to_xml;               \
    static constexpr auto from_xml = &tbl_##table_name##_table_record_from_xml;           \
    static constexpr auto marshal = &tbl_##table_name##_table_record_marshal;             \
    static constexpr auto unmarshal = &tbl_##table_name##_table_record_unmarshal;         \
    static constexpr auto length = &tbl_##table_name##_table_record_len;                  \
    static constexpr auto marshal_key = &tbl_##table_name##_table_pkey_marshal;           \
    static constexpr auto key_length = &tbl_##table_name##_table_pkey_len;

#define INLINE_KEY       \
  using Key = InlineKey; \
  }

#define KEY_OBJECT(table_name, key_name)                                      \
  using Key = key_name;                                                       \
  static constexpr auto create_key = &key_name##_create;                      \
  static constexpr auto destroy_key = &key_name##_destroy;                    \
  static constexpr auto compare_keys = &key_name##_compare;                   \
  static constexpr auto get_key = &tbl_##table_name##_##key_name##_get_field; \
  static constexpr auto put_key = &tbl_##table_name##_##key_name##_set_field; \
  }

#define TABLE(table_name, object_name) TABLE_OPS(table_name, object_name) INLINE_KEY;
#define KEYED_TABLE(table_name, object_name, key_name) \
  TABLE_OPS(table_name, object_name) KEY_OBJECT(table_name, key_name);
#define REFERENCES(...)
#include "table_rows.inc"
#undef TABLE
#undef KEYED_TABLE
#undef REFERENCES
#undef TABLE_OPS
#undef INLINE_KEY
#undef KEY_OBJECT

template <typename, typename... Ops>
using Behind = std::tuple<Ops...>;

// All of them, from the root down.
#define OPS(table_name, text) , table_name##_ops
using AllTables = Behind<void LEVELS(OPS)>;
#undef OPS
#undef LEVELS

template <typename Ops>
inline constexpr bool has_key_object = !std::is_same_v<typename Ops::Key, InlineKey>;

// A field of a row by which it refers to a table of the next level.
template <typename ParentOps, typename ChildOps>
struct Reference {
  using Child = ChildOps;
  using Object = typename ParentOps::Object;
  using Table = typename ChildOps::Table;
  const char *name;
  Table *(*get)(kelp_handle *, std::uint32_t, Object *, std::uint32_t *);
  void (*set)(kelp_handle *, std::uint32_t, Object *, Table *, std::uint32_t *);
};

// The references of a table's rows, in field order.
template <typename Ops>
inline constexpr std::tuple<> references{};

#define REFERENCE(parent, object_name, field, child)                                 \
  Reference<parent##_ops, child##_ops> {                                             \
#field, &object_name##_##field##_get_by_ref, &object_name##_##field##_set_by_ref \
  }

#define TABLE(...)
#define KEYED_TABLE(...)
#define REFERENCES(parent, ...) \
  template <>                   \
  inline constexpr std::tuple references<parent##_ops>{__VA_ARGS__};
#include "table_rows.inc"
#undef TABLE
#undef KEYED_TABLE
#undef REFERENCES
#undef REFERENCE

// Calls act(reference) for each of them.
template <typename Ops, typename Act>
void for_each_reference(Act act) {
  std::apply([&](const auto &...each) { (act(each), ...); }, references<Ops>);
}

}  // namespace ospf_tables
