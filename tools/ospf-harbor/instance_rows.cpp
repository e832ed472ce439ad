#include "instance_rows.hpp"

#include "row_keys.hpp"
#include "rows.hpp"
#include "tree.hpp"

namespace tool {

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
  // The daemon does not disclose the key: the arm is there and empty.
  kelp_vstring *key = session.checked(kelp_vstring_create(handle, space), "key_string");
  ospf_authentication_key_string_set(handle, space, field, key, err);
  ospf_crypto_algorithm *algorithm =
      session.checked(ospf_crypto_algorithm_create(handle, space), "crypto_algorithm_val");
  if (kind == Authentication::message_digest) {
    ospf_crypto_algorithm_md5_set_value(handle, space, algorithm, 1, err);
  }
  ospf_authentication_crypto_algorithm_val_set(handle, space, field, algorithm, err);
}

void add_neighbor(Session &session, tbl_ospf_neighbor_table *table, const Neighbor &neighbor) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewRecord<ospf_neighbor_ops> record(session);
  NewObject<ospf_neighbor_ops> object(session);
  set_address<ospf_neighbor>(session, object, ospf_neighbor_neighbor_id_set,
                             neighbor.router_id.c_str());
  set_address<ospf_neighbor>(session, object, ospf_neighbor_address_set, neighbor.address.c_str());
  set_address<ospf_neighbor>(session, object, ospf_neighbor_dr_set, neighbor.dr.c_str());
  set_address<ospf_neighbor>(session, object, ospf_neighbor_bdr_set, neighbor.bdr.c_str());
  ospf_neighbor_state_set_value(handle, space, object, neighbor.state, err);
  ospf_nbr_stat *stats = ospf_neighbor_stats_get(handle, space, object, err);
  session.check("the counters of a neighbour");
  ospf_nbr_stat_nbr_event_count_set_value(handle, space, stats, neighbor.events, err);
  ospf_nbr_stat_nbr_retrans_qlen_set_value(handle, space, stats, neighbor.retransmission_queue,
                                           err);
  session.check("a neighbour");
  record.put(object);
  record.insert_into(table);
}

void add_interface(Session &session, tbl_ospf_interface_table *table, const Interface &interface) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewTable<ospf_neighbor_ops> neighbors(session);
  for (const Neighbor &neighbor : interface.neighbors) add_neighbor(session, neighbors, neighbor);
  NewRecord<ospf_interface_ops> record(session);
  NewObject<ospf_interface_ops> object(session);
  set_text<ospf_interface>(session, object, ospf_interface_name_set, interface.name);
  ospf_interface_network_type_set_value(handle, space, object, interface.network_type, err);
  ospf_interface_passive_set_value(handle, space, object, interface.passive ? 1 : 0, err);
  ospf_interface_cost_set_value(handle, space, object, interface.cost, err);
  ospf_interface_hello_interval_set_value(handle, space, object, interface.hello_interval, err);
  ospf_interface_dead_interval_set_value(handle, space, object, interface.dead_interval, err);
  ospf_interface_retransmit_interval_set_value(handle, space, object, interface.retransmit_interval,
                                               err);
  ospf_interface_transmit_delay_set_value(handle, space, object, interface.transmit_delay, err);
  ospf_interface_mtu_ignore_set_value(handle, space, object, interface.mtu_ignored ? 1 : 0, err);
  ospf_interface_enable_set_value(handle, space, object, interface.enabled ? 1 : 0, err);
  fill_authentication(session, object, interface.authentication);
  set_text<ospf_interface>(session, object, ospf_interface_state_set, interface.state);
  ospf_interface_hello_timer_set_value(handle, space, object, interface.hello_timer, err);
  ospf_interface_wait_timer_set_value(handle, space, object, interface.wait_timer, err);
  set_address<ospf_interface>(session, object, ospf_interface_dr_set, interface.dr.c_str());
  set_address<ospf_interface>(session, object, ospf_interface_bdr_set, interface.bdr.c_str());
  ospf_interface_priority_set_value(handle, space, object, interface.priority, err);
  session.check("an interface");
  record.put(object);
  auto *row = ospf_interface_ops::get(handle, space, record.get());
  ospf_interface_neighbor_set_by_ref(handle, space, row, neighbors, err);
  session.check("the neighbours of an interface");
  record.insert_into(table);
  neighbors.is_referred_to();
}

void add_area(Session &session, tbl_ospf_area_table *table, const Area &area) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  NewTable<ospf_interface_ops> interfaces(session);
  for (const Interface &interface : area.interfaces) add_interface(session, interfaces, interface);
  NewRecord<ospf_area_ops> record(session);
  NewObject<ospf_area_ops> object(session);
  ospf_area_area_id_set_value(handle, space, object, area.id, err);
  ospf_area_interfaces_set_by_ref(handle, space, object, interfaces, err);
  session.check("an area");
  record.put(object);
  record.insert_into(table);
  interfaces.is_referred_to();
}

}  // namespace

void add_instance(Session &session, const Instance &instance) {
  kelp_handle *handle = session.handle();
  std::uint32_t *err = session.err();
  const std::uint32_t family =
      instance.family == Family::ipv4 ? ADDR_FAMILY_IPV4 : ADDR_FAMILY_IPV6;
  tbl_ospf_instance_rev1_table *instances = instances_of_root(session);
  NewTable<ospf_area_ops> areas(session);
  for (const Area &area : instance.areas) add_area(session, areas, area);
  NewRecord<ospf_instance_rev1_ops> record(session);
  NewObject<ospf_instance_rev1_ops> object(session);
  NewKey<ospf_instance_rev1_ops> new_key(session);
  ospf_instance_rev1_key *key = new_key;
  record.put_key(new_key);
  ospf_instance_rev1_key_af_set_value(handle, space, key, family, err);
  ospf_instance_rev1_key_router_id_set_value(handle, space, key, instance.router_id, err);
  ospf_instance_rev1_area_set_by_ref(handle, space, object, areas, err);
  session.check("an instance");
  record.put(object);
  // Everything that can fail has been done: the instance of the same key gives way now.
  for_each_record<ospf_instance_rev1_ops>(
      session, instances, [&](tbl_ospf_instance_rev1_record *other) {
        if (ospf_instance_rev1_key_compare(ospf_instance_rev1_ops::get_key(handle, space, other),
                                           key) == 0) {
          end_record<ospf_instance_rev1_ops>(session, other);
        }
      });
  record.insert_into(instances);
  areas.is_referred_to();
}

}  // namespace tool
