// The tables of the model for code that is generic over them: for each table its types and
// operations under common names, and for each row type the references that lead further down. What
// stands here is a list; it follows the model's tables one to one and holds no behaviour.
#pragma once

#include <ospf_harbor_oper.h>

#include <cstdint>
#include <tuple>
#include <type_traits>

namespace ospf_tables {

inline constexpr std::uint32_t space = 0;

// The key of a table whose rows keep it in the object itself.
struct InlineKey {};

#define TABLE_OPS(table_name, object_name, kind_text)                                     \
  struct table_name##_ops {                                                               \
    using Table = tbl_##table_name##_table;                                               \
    using Record = tbl_##table_name##_record;                                             \
    using Object = object_name;                                                           \
    static constexpr const char *name = "tbl_" #table_name;                               \
    static constexpr const char *kind = kind_text;                                        \
    static constexpr const std::uint8_t *luid() { return table_tbl_##table_name##_luid; } \
    static constexpr auto open = &tbl_##table_name##_table_open;                          \
    static constexpr auto open_auto_id = &tbl_##table_name##_table_open_auto_id;          \
    static constexpr auto free = &tbl_##table_name##_table_free;                          \
    static constexpr auto count = &tbl_##table_name##_table_get_count;                    \
    static constexpr auto create_record = &tbl_##table_name##_create_record;              \
    static constexpr auto destroy_record = &tbl_##table_name##_destroy_record;            \
    static constexpr auto insert = &tbl_##table_name##_insert;                            \
    static constexpr auto first = &tbl_##table_name##_pkey_get_first;                     \
    static constexpr auto next = &tbl_##table_name##_pkey_get_next;                       \
    static constexpr auto create = &object_name##_create;                                 \
    static constexpr auto destroy = &object_name##_destroy;                               \
    static constexpr auto get = &tbl_##table_name##_##object_name##_get_field;            \
    static constexpr auto put = &tbl_##table_name##_##object_name##_set_field;            \
    static constexpr auto print = &tbl_##table_name##_table_record_print;                 \
    static constexpr auto to_xml = &tbl_##table_name##_table_record_to_xml;               \
    static constexpr auto from_xml = &tbl_##table_name##_table_record_from_xml;           \
    static constexpr auto marshal = &tbl_##table_name##_table_record_marshal;             \
    static constexpr auto unmarshal = &tbl_##table_name##_table_record_unmarshal;         \
    static constexpr auto length = &tbl_##table_name##_table_record_len;

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

// In the order of their levels, from the root down; the kind is what a path calls a row.
TABLE_OPS(ospf_rev1, ospf_rev1, "ospf") INLINE_KEY;
TABLE_OPS(ospf, ospf, "ospf-rev0") INLINE_KEY;
TABLE_OPS(ospf_instance_rev1, ospf_instance_rev1, "instance")
KEY_OBJECT(ospf_instance_rev1, ospf_instance_rev1_key);
TABLE_OPS(ospf_instance, ospf_instance, "instance-rev0") INLINE_KEY;
TABLE_OPS(ospf_area, ospf_area, "area") INLINE_KEY;
TABLE_OPS(ospf_interface, ospf_interface, "interface") INLINE_KEY;
TABLE_OPS(ospf_neighbor, ospf_neighbor, "neighbor") INLINE_KEY;
TABLE_OPS(ospf_static_neighbor, ospf_static_neighbor, "static-neighbor") INLINE_KEY;
TABLE_OPS(area_scope_lsas, area_scope_lsas, "area-lsas") INLINE_KEY;
TABLE_OPS(link_scope_lsas, link_scope_lsas, "lsas") INLINE_KEY;
TABLE_OPS(area_scope_lsa, area_scope_lsa, "area-lsa")
KEY_OBJECT(area_scope_lsa, area_scope_lsa_key);
TABLE_OPS(link_scope_lsa, link_scope_lsa, "lsa")
KEY_OBJECT(link_scope_lsa, link_scope_lsa_key);
TABLE_OPS(ospfv2_link, ospfv2_link, "link") KEY_OBJECT(ospfv2_link, ospfv2_link_key);
TABLE_OPS(ospfv2_topology, ospfv2_topology, "topology") INLINE_KEY;
TABLE_OPS(ospfv2_external, ospfv2_external, "external") INLINE_KEY;
TABLE_OPS(ospfv2_unknown_tlv, ospfv2_unknown_tlv, "unknown-tlv") INLINE_KEY;
TABLE_OPS(ospfv2_unknown_sub_tlv, ospfv2_unknown_sub_tlv, "unknown-sub-tlv") INLINE_KEY;
TABLE_OPS(ospfv3_link, ospfv3_link, "link-v3") KEY_OBJECT(ospfv3_link, ospfv3_link_key);
TABLE_OPS(ospfv3_prefix_list, ospfv3_prefix_list, "prefix") INLINE_KEY;
TABLE_OPS(ospfv3_ia_prefix_list, ospfv3_prefix_list, "ia-prefix") INLINE_KEY;
TABLE_OPS(multi_topology, multi_topology, "multi-topology") INLINE_KEY;

#undef TABLE_OPS
#undef INLINE_KEY
#undef KEY_OBJECT

// All of them, in that order.
using AllTables =
    std::tuple<ospf_rev1_ops, ospf_ops, ospf_instance_rev1_ops, ospf_instance_ops, ospf_area_ops,
               ospf_interface_ops, ospf_neighbor_ops, ospf_static_neighbor_ops, area_scope_lsas_ops,
               link_scope_lsas_ops, area_scope_lsa_ops, link_scope_lsa_ops, ospfv2_link_ops,
               ospfv2_topology_ops, ospfv2_external_ops, ospfv2_unknown_tlv_ops,
               ospfv2_unknown_sub_tlv_ops, ospfv3_link_ops, ospfv3_prefix_list_ops,
               ospfv3_ia_prefix_list_ops, multi_topology_ops>;

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

#define REFERENCE_ROW(parent, field, child)                                \
  Reference<parent##_ops, child##_ops> {                                   \
#field, &parent##_##field##_get_by_ref, &parent##_##field##_set_by_ref \
  }

template <>
inline constexpr std::tuple references<ospf_rev1_ops>{
    REFERENCE_ROW(ospf_rev1, instance, ospf_instance_rev1)};
template <>
inline constexpr std::tuple references<ospf_ops>{REFERENCE_ROW(ospf, instance, ospf_instance)};
template <>
inline constexpr std::tuple references<ospf_instance_rev1_ops>{
    REFERENCE_ROW(ospf_instance_rev1, area, ospf_area),
    REFERENCE_ROW(ospf_instance_rev1, link_scope_lsas, link_scope_lsas),
    REFERENCE_ROW(ospf_instance_rev1, multi_topology, multi_topology)};
template <>
inline constexpr std::tuple references<ospf_instance_ops>{
    REFERENCE_ROW(ospf_instance, area, ospf_area),
    REFERENCE_ROW(ospf_instance, link_scope_lsas, link_scope_lsas),
    REFERENCE_ROW(ospf_instance, multi_topology, multi_topology)};
template <>
inline constexpr std::tuple references<ospf_area_ops>{
    REFERENCE_ROW(ospf_area, interfaces, ospf_interface),
    REFERENCE_ROW(ospf_area, area_scope_lsas, area_scope_lsas)};
template <>
inline constexpr std::tuple references<ospf_interface_ops>{
    REFERENCE_ROW(ospf_interface, static_neighbor, ospf_static_neighbor),
    REFERENCE_ROW(ospf_interface, neighbor, ospf_neighbor),
    REFERENCE_ROW(ospf_interface, link_scope_lsas, link_scope_lsas),
    REFERENCE_ROW(ospf_interface, multi_topology, multi_topology)};
template <>
inline constexpr std::tuple references<area_scope_lsas_ops>{
    REFERENCE_ROW(area_scope_lsas, area_scope_lsa, area_scope_lsa)};
template <>
inline constexpr std::tuple references<link_scope_lsas_ops>{
    REFERENCE_ROW(link_scope_lsas, link_scope_lsa_db, link_scope_lsa),
    REFERENCE_ROW(link_scope_lsas, area_scope_lsa_db, area_scope_lsa)};
template <>
inline constexpr std::tuple references<area_scope_lsa_ops>{
    REFERENCE_ROW(area_scope_lsa, links, ospfv2_link),
    REFERENCE_ROW(area_scope_lsa, summary, ospfv2_topology),
    REFERENCE_ROW(area_scope_lsa, external, ospfv2_external),
    REFERENCE_ROW(area_scope_lsa, ospfv3_links, ospfv3_link),
    REFERENCE_ROW(area_scope_lsa, prefix_list, ospfv3_prefix_list),
    REFERENCE_ROW(area_scope_lsa, ia_prefix_list, ospfv3_ia_prefix_list)};
template <>
inline constexpr std::tuple references<link_scope_lsa_ops>{
    REFERENCE_ROW(link_scope_lsa, ospfv2_links, ospfv2_link),
    REFERENCE_ROW(link_scope_lsa, summary, ospfv2_topology),
    REFERENCE_ROW(link_scope_lsa, external, ospfv2_external),
    REFERENCE_ROW(link_scope_lsa, unknown_tlv, ospfv2_unknown_tlv),
    REFERENCE_ROW(link_scope_lsa, ospfv3_links, ospfv3_link),
    REFERENCE_ROW(link_scope_lsa, prefix_list, ospfv3_prefix_list),
    REFERENCE_ROW(link_scope_lsa, ia_prefix_list, ospfv3_ia_prefix_list),
    REFERENCE_ROW(link_scope_lsa, multi_topology, multi_topology),
    REFERENCE_ROW(link_scope_lsa, unknown_sub_tlv, ospfv2_unknown_sub_tlv)};
template <>
inline constexpr std::tuple references<ospfv2_link_ops>{
    REFERENCE_ROW(ospfv2_link, topology, ospfv2_topology)};
template <>
inline constexpr std::tuple references<ospfv2_unknown_tlv_ops>{
    REFERENCE_ROW(ospfv2_unknown_tlv, unknown_sub_tlv, ospfv2_unknown_sub_tlv)};

#undef REFERENCE_ROW

// Calls act(reference) for each of them.
template <typename Ops, typename Act>
void for_each_reference(Act act) {
  std::apply([&](const auto &...each) { (act(each), ...); }, references<Ops>);
}

}  // namespace ospf_tables
