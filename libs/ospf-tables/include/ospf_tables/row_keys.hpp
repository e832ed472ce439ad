// How a path names a row: the key of its record as one word. Router IDs, area IDs and link-state
// IDs stand as dotted quads, other numbers in decimal, the parts of a composite key with commas
// between them.
#pragma once

#include <kelp/primitives.h>

#include <optional>
#include <string>

#include "ospf_tables/field_reader.hpp"
#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace ospf_tables {

std::string dotted(std::uint32_t number);
// The number of a dotted quad, nothing for any other text.
std::optional<std::uint32_t> parse_dotted(const std::string &text);

enum class KeyForm { dotted, decimal, family };
std::string key_word(std::uint32_t number, KeyForm form);
std::string key_word(const kelp_vstring *text);
std::string key_word(const ip_address *address);
// Whether no other value has that word.
bool is_told(std::uint32_t number, KeyForm form);
bool is_told(const kelp_vstring *text);
bool is_told(const ip_address *address);

// The key's fields by table.
struct KeyFields : FieldReader {
  // Cleared by a field whose word others have too.
  bool *are_told;

  std::string of(ospf_rev1_ops, const ospf_rev1 *object) const {
    return word(value(object, ospf_rev1_singleton_id_get_value), KeyForm::decimal);
  }
  std::string of(ospf_ops, const ospf *object) const {
    return word(value(object, ospf_singleton_id_get_value), KeyForm::decimal);
  }
  std::string of(ospf_instance_rev1_ops, const ospf_instance_rev1_key *key) const {
    return word(value(key, ospf_instance_rev1_key_af_get_value), KeyForm::family) + "," +
           word(value(key, ospf_instance_rev1_key_router_id_get_value), KeyForm::dotted);
  }
  std::string of(ospf_instance_ops, const ospf_instance *object) const {
    return word(value(object, ospf_instance_af_get_value), KeyForm::family);
  }
  std::string of(ospf_area_ops, const ospf_area *object) const {
    return word(value(object, ospf_area_area_id_get_value), KeyForm::dotted);
  }
  std::string of(ospf_interface_ops, ospf_interface *object) const {
    return word(value(object, ospf_interface_name_get));
  }
  std::string of(ospf_neighbor_ops, ospf_neighbor *object) const {
    return word(value(object, ospf_neighbor_neighbor_id_get));
  }
  std::string of(ospf_static_neighbor_ops, ospf_static_neighbor *object) const {
    return word(value(object, ospf_static_neighbor_address_get));
  }
  std::string of(area_scope_lsas_ops, const area_scope_lsas *object) const {
    return word(value(object, area_scope_lsas_lsa_id_get_value), KeyForm::decimal);
  }
  std::string of(link_scope_lsas_ops, const link_scope_lsas *object) const {
    return word(value(object, link_scope_lsas_lsa_type_get_value), KeyForm::decimal);
  }
  std::string of(area_scope_lsa_ops, area_scope_lsa_key *key) const {
    return word(value(key, area_scope_lsa_key_lsa_id_get_value), KeyForm::dotted) + "," +
           word(value(key, area_scope_lsa_key_adv_router_get));
  }
  std::string of(link_scope_lsa_ops, link_scope_lsa_key *key) const {
    return word(value(key, link_scope_lsa_key_lsa_id_get_value), KeyForm::dotted) + "," +
           word(value(key, link_scope_lsa_key_adv_router_get));
  }
  std::string of(ospfv2_link_ops, const ospfv2_link_key *key) const {
    return word(value(key, ospfv2_link_key_link_id_get_value), KeyForm::dotted) + "," +
           word(value(key, ospfv2_link_key_link_data_get_value), KeyForm::dotted);
  }
  std::string of(ospfv2_topology_ops, const ospfv2_topology *object) const {
    return word(value(object, ospfv2_topology_mt_id_get_value), KeyForm::decimal);
  }
  std::string of(ospfv2_external_ops, const ospfv2_external *object) const {
    return word(value(object, ospfv2_external_mt_id_get_value), KeyForm::decimal);
  }
  std::string of(ospfv2_unknown_tlv_ops, const ospfv2_unknown_tlv *object) const {
    return word(value(object, ospfv2_unknown_tlv_type_get_value), KeyForm::decimal);
  }
  std::string of(ospfv2_unknown_sub_tlv_ops, const ospfv2_unknown_sub_tlv *object) const {
    return word(value(object, ospfv2_unknown_sub_tlv_type_get_value), KeyForm::decimal);
  }
  std::string of(ospfv3_link_ops, const ospfv3_link_key *key) const {
    return word(value(key, ospfv3_link_key_interface_id_get_value), KeyForm::decimal) + "," +
           word(value(key, ospfv3_link_key_neighbor_interface_id_get_value), KeyForm::decimal) +
           "," + word(value(key, ospfv3_link_key_neighbor_router_id_get_value), KeyForm::dotted);
  }
  std::string of(ospfv3_prefix_list_ops, ospfv3_prefix_list *object) const {
    return word(value(object, ospfv3_prefix_list_prefix_get));
  }
  std::string of(ospfv3_ia_prefix_list_ops, ospfv3_prefix_list *object) const {
    return word(value(object, ospfv3_prefix_list_prefix_get));
  }
  std::string of(multi_topology_ops, multi_topology *object) const {
    return word(value(object, multi_topology_name_get));
  }

 private:
  template <typename... Value>
  std::string word(Value... value) const {
    *are_told &= is_told(value...);
    return key_word(value...);
  }
};

// are_told, when not null: whether no other row of a table has this key.
template <typename Ops>
std::string row_key(Session &session, typename Ops::Record *record, bool *are_told = nullptr) {
  bool told = true;
  const KeyFields fields{{session}, are_told == nullptr ? &told : are_told};
  if constexpr (has_key_object<Ops>) {
    auto *key = Ops::get_key(session.handle(), space, record);
    return key == nullptr ? "" : fields.of(Ops{}, key);
  } else {
    auto *object = Ops::get(session.handle(), space, record);
    return object == nullptr ? "" : fields.of(Ops{}, object);
  }
}

}  // namespace ospf_tables
