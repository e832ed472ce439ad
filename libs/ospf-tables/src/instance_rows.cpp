#include "ospf_tables/instance_rows.hpp"

#include <optional>

#include "ospf_tables/row_keys.hpp"
#include "ospf_tables/tree.hpp"

namespace ospf_tables {

namespace {

void fill_authentication(Session &session, ospf_interface *object, Authentication kind) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  ospf_authentication *field = ospf_interface_authentication_val_get(handle, space, object, err);
  session.check("the authentication of an interface");
  if (kind == Authentication::none) {
    std::uint32_t *arm = session.checked(u_int32_create(handle, space), "no_auth");
    ospf_authentication_no_auth_set(handle, space, field, arm, err);
    return;
  }
  // The key is a secret that no source tells: the arm is there and empty.
  kelp_vstring *key = session.checked(kelp_vstring_create(handle, space), "key_string");
  ospf_authentication_key_string_set(handle, space, field, key, err);
  ospf_crypto_algorithm *algorithm =
      session.checked(ospf_crypto_algorithm_create(handle, space), "crypto_algorithm_val");
  switch (kind) {
    case Authentication::none:
    case Authentication::key:
      break;
    case Authentication::message_digest:
      ospf_crypto_algorithm_md5_set_value(handle, space, algorithm, 1, err);
      break;
    case Authentication::hmac_sha_1:
      ospf_crypto_algorithm_hmac_sha_1_set_value(handle, space, algorithm, 1, err);
      break;
    case Authentication::hmac_sha_256:
      ospf_crypto_algorithm_hmac_sha_256_set_value(handle, space, algorithm, 1, err);
      break;
    case Authentication::hmac_sha_384:
      ospf_crypto_algorithm_hmac_sha_384_set_value(handle, space, algorithm, 1, err);
      break;
    case Authentication::hmac_sha_512:
      ospf_crypto_algorithm_hmac_sha_512_set_value(handle, space, algorithm, 1, err);
      break;
  }
  ospf_authentication_crypto_algorithm_val_set(handle, space, field, algorithm, err);
}

void add_neighbor(Session &session, tbl_ospf_neighbor_table *table, const Neighbor &neighbor) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewRecord<ospf_neighbor_ops> record(session);
  NewObject<ospf_neighbor_ops> new_object(session);
  ospf_neighbor *object = record.put(new_object);
  set_address(session, object, ospf_neighbor_neighbor_id_set, neighbor.router_id.c_str());
  set_address(session, object, ospf_neighbor_address_set, neighbor.address.c_str());
  set_address(session, object, ospf_neighbor_dr_set, neighbor.dr.c_str());
  set_address(session, object, ospf_neighbor_bdr_set, neighbor.bdr.c_str());
  ospf_neighbor_state_set_value(handle, space, object, neighbor.state, err);
  ospf_nbr_stat *stats = ospf_neighbor_stats_get(handle, space, object, err);
  session.check("the counters of a neighbour");
  ospf_nbr_stat_nbr_event_count_set_value(handle, space, stats, neighbor.events, err);
  ospf_nbr_stat_nbr_retrans_qlen_set_value(handle, space, stats, neighbor.retransmission_queue,
                                           err);
  session.check("a neighbour");
  record.insert_into(table);
}

void add_static_neighbor(Session &session, tbl_ospf_static_neighbor_table *table,
                         const std::string &address) {
  NewRecord<ospf_static_neighbor_ops> record(session);
  NewObject<ospf_static_neighbor_ops> new_object(session);
  ospf_static_neighbor *object = record.put(new_object);
  set_address(session, object, ospf_static_neighbor_address_set, address.c_str());
  session.check("a static neighbour");
  record.insert_into(table);
}

template <typename Tables, typename Key>
auto *found(const Tables &tables, const Key &key) {
  const auto place = tables.find(key);
  return place == tables.end() ? nullptr : place->second.get();
}

void add_interface(Session &session, tbl_ospf_interface_table *table, const Interface &interface,
                   NewTable<link_scope_lsas_ops> *lsas) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewRecord<ospf_interface_ops> record(session);
  NewObject<ospf_interface_ops> new_object(session);
  ospf_interface *object = record.put(new_object);
  set_text(session, object, ospf_interface_name_set, interface.name);
  ospf_interface_network_type_set_value(handle, space, object, interface.network_type, err);
  ospf_interface_passive_set_value(handle, space, object, interface.passive ? 1 : 0, err);
  ospf_interface_demand_circuit_set_value(handle, space, object, interface.demand_circuit ? 1 : 0,
                                          err);
  ospf_interface_cost_set_value(handle, space, object, interface.cost, err);
  ospf_interface_hello_interval_set_value(handle, space, object, interface.hello_interval, err);
  ospf_interface_dead_interval_set_value(handle, space, object, interface.dead_interval, err);
  ospf_interface_retransmit_interval_set_value(handle, space, object, interface.retransmit_interval,
                                               err);
  ospf_interface_transmit_delay_set_value(handle, space, object, interface.transmit_delay, err);
  ospf_interface_mtu_ignore_set_value(handle, space, object, interface.mtu_ignored ? 1 : 0, err);
  ospf_interface_lls_set_value(handle, space, object, interface.lls ? 1 : 0, err);
  ospf_interface_enable_set_value(handle, space, object, interface.enabled ? 1 : 0, err);
  fill_authentication(session, object, interface.authentication);
  set_text(session, object, ospf_interface_state_set, interface.state);
  ospf_interface_hello_timer_set_value(handle, space, object, interface.hello_timer, err);
  ospf_interface_wait_timer_set_value(handle, space, object, interface.wait_timer, err);
  set_address(session, object, ospf_interface_dr_set, interface.dr.c_str());
  set_address(session, object, ospf_interface_bdr_set, interface.bdr.c_str());
  ospf_interface_priority_set_value(handle, space, object, interface.priority, err);
  session.check("an interface");
  auto *neighbors =
      add_table<ospf_neighbor_ops>(session, object, ospf_interface_neighbor_set_by_ref);
  for (const Neighbor &neighbor : interface.neighbors) add_neighbor(session, neighbors, neighbor);
  if (!interface.static_neighbors.empty()) {
    auto *configured = add_table<ospf_static_neighbor_ops>(
        session, object, ospf_interface_static_neighbor_set_by_ref);
    for (const std::string &address : interface.static_neighbors) {
      add_static_neighbor(session, configured, address);
    }
  }
  hand_over(session, lsas, object, ospf_interface_link_scope_lsas_set_by_ref);
  record.insert_into(table);
}

void add_area(Session &session, tbl_ospf_area_table *table, const Area &area,
              const Databases &databases) {
  NewRecord<ospf_area_ops> record(session);
  NewObject<ospf_area_ops> new_object(session);
  ospf_area *object = record.put(new_object);
  ospf_area_area_id_set_value(session.handle(), space, object, area.id, session.err());
  session.check("an area");
  auto *interfaces =
      add_table<ospf_interface_ops>(session, object, ospf_area_interfaces_set_by_ref);
  for (const Interface &interface : area.interfaces) {
    add_interface(session, interfaces, interface,
                  found(databases.of_interfaces, std::pair(area.id, interface.name)));
  }
  hand_over(session, found(databases.of_areas, area.id), object,
            ospf_area_area_scope_lsas_set_by_ref);
  record.insert_into(table);
}

ToldOfInstance told_of(const Instance &instance) {
  ToldOfInstance told;
  told.ages = instance.ages;
  for (const Area &area : instance.areas) {
    if (!area.kind.empty()) told.area_kinds[area.id] = area.kind;
    for (const Interface &interface : area.interfaces) {
      ToldOfInterface &to = told.interfaces[{area.id, interface.name}];
      to.address = interface.address;
      to.prefix = interface.prefix;
      to.mtu = interface.mtu;
      to.authentication = interface.authentication_known;
      to.type = interface.told_type;
      to.silent = interface.silent;
      if (interface.cost_known) to.cost = interface.cost;
      for (const Neighbor &neighbor : interface.neighbors) {
        told.neighbors[{area.id, interface.name, neighbor.router_id}] = {neighbor.priority,
                                                                         neighbor.evidence};
      }
    }
  }
  return told;
}

}  // namespace

NewInstance::NewInstance(Session &session, const Instance &instance, const Databases &databases)
    : record_(session), told_(told_of(instance)) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewKey<ospf_instance_rev1_ops> key(session);
  const std::uint32_t family =
      instance.family == Family::ipv4 ? ADDR_FAMILY_IPV4 : ADDR_FAMILY_IPV6;
  ospf_instance_rev1_key_af_set_value(handle, space, key, family, err);
  ospf_instance_rev1_key_router_id_set_value(handle, space, key, instance.router_id, err);
  session.check("the key of an instance");
  record_.put_key(key);
  NewObject<ospf_instance_rev1_ops> new_object(session);
  ospf_instance_rev1 *object = record_.put(new_object);
  auto *areas = add_table<ospf_area_ops>(session, object, ospf_instance_rev1_area_set_by_ref);
  for (const Area &area : instance.areas) add_area(session, areas, area, databases);
  hand_over(session, databases.of_instance.get(), object,
            ospf_instance_rev1_link_scope_lsas_set_by_ref);
}

void add_instances(Session &session, const std::vector<std::unique_ptr<NewInstance>> &instances) {
  tbl_ospf_instance_rev1_table *table = instances_of_root(session);
  // Everything that can fail has been done: instances of the same key give way now.
  for (const std::unique_ptr<NewInstance> &instance : instances) {
    replace_instance(session, table, instance->record_.get());
    if (!session.is_store()) {
      const std::string key = row_key<ospf_instance_rev1_ops>(session, instance->record_.get());
      session.told()[key] = std::move(instance->told_);
    }
    instance->record_.is_in_a_table();
  }
}

}  // namespace ospf_tables
