// The schema as people agreed on it, written out as data for tests that read a built library back:
// each type with its kind, variants and manifest size, each table with what its messages are made
// of, each reference. Nothing here is taken from the model that the library is built from.
#pragma once

#include <array>
#include <string_view>

namespace agreed {

struct Type {
  std::string_view name;
  std::string_view kind;
  int variants;
  unsigned size;
};

inline constexpr std::array<Type, 61> types{{
    {"ospfv2_unknown_sub_tlv", "type", 1, 32},
    {"ospfv2_link_tlv", "type", 1, 88},
    {"ospfv2_unknown_tlv", "type", 1, 232},
    {"ospfv2_external", "type", 1, 80},
    {"ospfv2_topology", "type", 1, 24},
    {"ospfv2_link_key", "type", 1, 24},
    {"ospfv2_link", "type", 1, 64},
    {"link_scope_lsa_key", "type", 1, 64},
    {"lsa_options", "type", 1, 48},
    {"ospfv2_lsa_body_flags", "type", 1, 24},
    {"ospfv2_network", "type", 1, 80},
    {"ospfv2_lsa_body", "type", 2, 272},
    {"lsa_header", "type", 1, 64},
    {"ospfv2_header", "type", 2, 200},
    {"ospfv2_lsa", "type", 1, 520},
    {"ospfv3_lsa_options", "type", 1, 40},
    {"ospfv3_header", "type", 2, 208},
    {"ospfv3_lsa_body_flags", "type", 1, 32},
    {"ospfv3_network", "type", 2, 104},
    {"ospfv3_inter_area_prefix", "type", 1, 48},
    {"ospfv3_inter_area_router", "type", 2, 96},
    {"ospfv3_lsa_external_flags", "type", 1, 16},
    {"ospfv3_lsa_external", "type", 1, 136},
    {"ospfv3_nssa", "type", 1, 168},
    {"ospfv3_link_data", "type", 2, 144},
    {"ospfv3_intra_area_prefix", "type", 1, 80},
    {"ospfv3_lsa_body", "type", 2, 1032},
    {"ospfv3_lsa", "type", 1, 1288},
    {"ospfv3_link_key", "type", 1, 24},
    {"ospfv3_link", "type", 1, 16},
    {"ospfv3_prefix_list", "type", 1, 48},
    {"multi_topology", "type", 1, 32},
    {"link_scope_lsa", "type", 2, 2464},
    {"area_scope_lsa_key", "type", 1, 64},
    {"area_scope_lsa", "type", 1, 2160},
    {"area_scope_lsas", "type", 1, 64},
    {"link_scope_lsas", "type", 1, 112},
    {"ospf_static_neighbor", "type", 1, 72},
    {"ospf_nbr_stat", "type", 1, 24},
    {"ospf_neighbor", "type", 2, 256},
    {"fast_reroute", "type", 1, 24},
    {"multi_area", "type", 1, 24},
    {"ospf_crypto_algorithm", "type", 1, 48},
    {"ospf_authentication", "type", 2, 72},
    {"ttl_security", "type", 1, 24},
    {"ospf_interface", "type", 2, 608},
    {"ospf_area", "type", 2, 112},
    {"ospf_instance", "type", 1, 184},
    {"ospf", "type", 1, 80},
    {"ospf_instance_rev1_key", "type", 1, 40},
    {"ospf_instance_rev1", "type", 1, 160},
    {"ospf_rev1", "type", 1, 80},
    {"address_family", "enum", 1, 16},
    {"ospf_operation_mode", "enum", 1, 16},
    {"ospf_network_type", "enum", 1, 16},
    {"ospf_auth_type", "enum", 2, 16},
    {"nbr_state_type", "enum", 1, 16},
    {"lsa_flag_options", "flag", 1, 16},
    {"ospfv2_lsa_body_flags_options", "flag", 1, 16},
    {"ospfv3_lsa_flag_options", "flag", 1, 16},
    {"ospfv3_lsa_body_flag_options", "flag", 1, 16},
}};

// In the order of their blocks of messages. base is the index of a block's first message.
struct Table {
  std::string_view name;
  std::string_view record_type;
  std::string_view key;  // a field, or the key's type in a table with composite keys
  bool composite;
  unsigned base;
  std::string_view luid;        // MD5 of the table
  std::string_view record_md5;  // MD5 of its records
};

inline constexpr std::array<Table, 21> tables{{
    {"tbl_ospfv2_unknown_sub_tlv", "ospfv2_unknown_sub_tlv", "type", false, 0,
     "4832d61989edeef53a2f81762447c6ba", "7adfb448274c9dc734828532264b940f"},
    {"tbl_ospfv2_unknown_tlv", "ospfv2_unknown_tlv", "type", false, 65,
     "48574be6533286839ac86412ed00448b", "62841e9bbf0cbf61501e3a32f723f0b7"},
    {"tbl_ospfv2_external", "ospfv2_external", "mt_id", false, 130,
     "616de672e94863240a21a1e2d91a9899", "ce351a4e1ecdf49ae9d40efd54d35b23"},
    {"tbl_ospfv2_topology", "ospfv2_topology", "mt_id", false, 195,
     "4a19dbad016c9ae911c269ee0a1b0189", "7c32d989a400c7742b00e44d519bedcf"},
    {"tbl_ospfv2_link", "ospfv2_link", "ospfv2_link_key", true, 260,
     "9b116ff239107f1283c534a0e8c7177e", "74e4688afac968e9086213b75ec90020"},
    {"tbl_ospfv3_link", "ospfv3_link", "ospfv3_link_key", true, 328,
     "521843f76a06edcbcc2ca1569d7a0d4f", "2b6efdc82bce370bffca2fbd308d3325"},
    {"tbl_ospfv3_prefix_list", "ospfv3_prefix_list", "prefix", false, 396,
     "f546bc07a0b2d65d1afb8174c06b42f2", "ab5f45c10cd973b532288f50fc226504"},
    {"tbl_ospfv3_ia_prefix_list", "ospfv3_prefix_list", "prefix", false, 461,
     "7ae82c798ec10d57544f7388142c5213", "e338f6f9c6d53885b22ebf284e4edf1b"},
    {"tbl_multi_topology", "multi_topology", "name", false, 526, "50416da66054bfff7ff6621c05097a2f",
     "e99893820070e7fc681b0d116a6e17dd"},
    {"tbl_link_scope_lsa", "link_scope_lsa", "link_scope_lsa_key", true, 591,
     "f317dd483d87eaa4e0cf2e3d4547b5f9", "92e9e532fb56e882e72cf1d18e69b498"},
    {"tbl_area_scope_lsa", "area_scope_lsa", "area_scope_lsa_key", true, 659,
     "ccc7a87c856cad007efa670498e202ed", "5cf0bd346b5a10bb0b09444104149d46"},
    {"tbl_area_scope_lsas", "area_scope_lsas", "lsa_id", false, 727,
     "2225e8f172cfae6e7af5763866a32cfd", "db77eae1a40152ca5facb18a768ea672"},
    {"tbl_link_scope_lsas", "link_scope_lsas", "lsa_type", false, 792,
     "ce90bd5bfbb5c3055bc41506e949c3c2", "91545e08e1b8c2389fa1b847f0adfd00"},
    {"tbl_ospf_static_neighbor", "ospf_static_neighbor", "address", false, 857,
     "51d4eed06185d6b093645c807cb2a40c", "046f07f97a17f681a87f60379722d5a7"},
    {"tbl_ospf_neighbor", "ospf_neighbor", "neighbor_id", false, 922,
     "6d1ad804c2ed0e7b90f9ab64c914813c", "76394a11e256f38bbb4c4c5554f1d769"},
    {"tbl_ospf_interface", "ospf_interface", "name", false, 987, "94ea02f78e0f25da4fe1d5bfeb6c05ba",
     "c2be5f664a8b8e6014831271c3abcf10"},
    {"tbl_ospf_area", "ospf_area", "area_id", false, 1052, "82c5347ad65f8377a99c123367eb25f8",
     "457456782da0f02cb040a49cbda4ea17"},
    {"tbl_ospf_instance", "ospf_instance", "af", false, 1117, "41238823c1ad3b77c95f1c30464d0383",
     "12120f188e0c63fe68b71cfa104dd054"},
    {"tbl_ospf", "ospf", "singleton_id", false, 1182, "9c0b0ab1eee446159760dca6685d0bde",
     "cdc311884da647a477a9a384700c9ffa"},
    {"tbl_ospf_instance_rev1", "ospf_instance_rev1", "ospf_instance_rev1_key", true, 1247,
     "8a659f8e28229ddcf350fc6029daa0e8", "d3542e468df12de69937c229ae764938"},
    {"tbl_ospf_rev1", "ospf_rev1", "singleton_id", false, 1315, "a6990569de17c9576cbb96207a6417b6",
     "d4f7626165fafeeae8c6ca7aa9bab180"},
}};

struct Reference {
  std::string_view type;
  std::string_view field;
};

inline constexpr std::array<Reference, 34> references{{
    {"ospf", "instance"},
    {"ospf_rev1", "instance"},
    {"ospf_instance", "area"},
    {"ospf_instance_rev1", "area"},
    {"ospf_instance", "link_scope_lsas"},
    {"ospf_instance_rev1", "link_scope_lsas"},
    {"ospf_instance", "multi_topology"},
    {"ospf_instance_rev1", "multi_topology"},
    {"ospf_area", "interfaces"},
    {"ospf_area", "area_scope_lsas"},
    {"ospf_interface", "static_neighbor"},
    {"ospf_interface", "neighbor"},
    {"ospf_interface", "link_scope_lsas"},
    {"ospf_interface", "multi_topology"},
    {"link_scope_lsas", "link_scope_lsa_db"},
    {"link_scope_lsas", "area_scope_lsa_db"},
    {"area_scope_lsas", "area_scope_lsa"},
    {"link_scope_lsa", "ospfv2_links"},
    {"link_scope_lsa", "summary"},
    {"link_scope_lsa", "external"},
    {"link_scope_lsa", "unknown_tlv"},
    {"link_scope_lsa", "ospfv3_links"},
    {"link_scope_lsa", "prefix_list"},
    {"link_scope_lsa", "ia_prefix_list"},
    {"link_scope_lsa", "multi_topology"},
    {"link_scope_lsa", "unknown_sub_tlv"},
    {"area_scope_lsa", "links"},
    {"area_scope_lsa", "summary"},
    {"area_scope_lsa", "external"},
    {"area_scope_lsa", "ospfv3_links"},
    {"area_scope_lsa", "prefix_list"},
    {"area_scope_lsa", "ia_prefix_list"},
    {"ospfv2_unknown_tlv", "unknown_sub_tlv"},
    {"ospfv2_link", "topology"},
}};

}  // namespace agreed
