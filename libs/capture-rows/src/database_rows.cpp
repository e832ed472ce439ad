#include "capture_rows/database_rows.hpp"

#include "capture_rows/lsa_rows.hpp"
#include "ospf_tables/field_reader.hpp"

namespace capture_rows {

using namespace ospf_tables;

namespace {

// The table for the LSAs of one type, made with the row above it when it is not there, and so the
// table above that.
template <typename Ops, typename Rows, typename AboveOps, typename SetType, typename SetRows>
typename Ops::Table *table_of(Session &session, Rows &rows,
                              std::unique_ptr<NewTable<AboveOps>> &above, std::uint16_t type,
                              SetType set_type, SetRows set_rows) {
  if (rows.table != nullptr) return rows.table;
  if (above == nullptr) above = std::make_unique<NewTable<AboveOps>>(session);
  NewRecord<AboveOps> record(session);
  NewObject<AboveOps> new_object(session);
  auto *object = record.put(new_object);
  set_type(session.handle(), space, object, type, session.err());
  auto *table = add_table<Ops>(session, object, set_rows);
  rows = {table, record.insert_into(*above)};
  return table;
}

template <typename Ops, typename AboveOps, typename... Places>
void remove_row(Session &session, typename Ops::Record *record, Places &...places) {
  auto *table = reinterpret_cast<typename Ops::Table *>(
      reinterpret_cast<kelp_record *>(record)->record_table);
  end_record<Ops>(session, record);
  if (first_record<Ops>(session, table, session.err()) != nullptr) return;
  session.check(Ops::name);
  const auto end_in = [&](auto &all) {
    std::erase_if(all, [&](const auto &place) {
      if (place.second.table != table) return false;
      end_record<AboveOps>(session, place.second.above);
      return true;
    });
  };
  (end_in(places), ...);
}

// Has the object refer to no table any more, and gives the one that it referred to.
template <typename Ops, typename Object>
std::unique_ptr<NewTable<Ops>> taken(Session &session, Object *object,
                                     typename Ops::Table *(*get)(kelp_handle *, std::uint32_t,
                                                                 Object *, std::uint32_t *),
                                     void (*set)(kelp_handle *, std::uint32_t, Object *,
                                                 typename Ops::Table *, std::uint32_t *)) {
  auto *table = get(session.handle(), space, object, session.err());
  session.check(Ops::name);
  if (table == nullptr) return nullptr;
  set(session.handle(), space, object, nullptr, session.err());
  session.check(Ops::name);
  return std::make_unique<NewTable<Ops>>(session, table);
}

}  // namespace

LsaRow DatabaseRows::add_to_as(const ospf_decode::LsaV2 &lsa) {
  return {.of_link = add_lsa(session_, as_rows(lsa.header.type), lsa)};
}

LsaRow DatabaseRows::add_to_as(const ospf_decode::LsaV3 &lsa) {
  return {.of_link = add_lsa(session_, as_rows(lsa.header.type), lsa, holds_ipv4_)};
}

LsaRow DatabaseRows::add_to_area(std::uint32_t area, const ospf_decode::LsaV2 &lsa) {
  return {.of_area = add_lsa(session_, area_rows(area, lsa.header.type), lsa)};
}

LsaRow DatabaseRows::add_to_area(std::uint32_t area, const ospf_decode::LsaV3 &lsa) {
  return {.of_area = add_lsa(session_, area_rows(area, lsa.header.type), lsa, holds_ipv4_)};
}

LsaRow DatabaseRows::add_to_interface(std::uint32_t area, const std::string &interface,
                                      const ospf_decode::LsaV2 &lsa) {
  return {.of_link = add_lsa(session_, interface_rows(area, interface, lsa.header.type), lsa)};
}

LsaRow DatabaseRows::add_to_interface(std::uint32_t area, const std::string &interface,
                                      const ospf_decode::LsaV3 &lsa) {
  return {.of_link = add_lsa(session_, interface_rows(area, interface, lsa.header.type), lsa,
                             holds_ipv4_)};
}

void DatabaseRows::remove(const LsaRow &row) {
  if (row.of_area != nullptr) {
    remove_row<area_scope_lsa_ops, area_scope_lsas_ops>(session_, row.of_area, areas_);
  } else {
    remove_row<link_scope_lsa_ops, link_scope_lsas_ops>(session_, row.of_link, as_, interfaces_);
  }
}

void DatabaseRows::take_back(tbl_ospf_instance_rev1_record *instance) {
  kelp_handle *handle = session_.handle();
  const FieldReader read{session_};
  databases_ = {};
  ospf_instance_rev1 *object = ospf_instance_rev1_ops::get(handle, space, instance);
  databases_.of_instance =
      taken<link_scope_lsas_ops>(session_, object, ospf_instance_rev1_link_scope_lsas_get_by_ref,
                                 ospf_instance_rev1_link_scope_lsas_set_by_ref);
  auto *areas = read.value(object, ospf_instance_rev1_area_get_by_ref);
  for_each_record<ospf_area_ops>(session_, areas, [&](tbl_ospf_area_record *area_record) {
    ospf_area *area = ospf_area_ops::get(handle, space, area_record);
    const std::uint32_t id = read.value(area, ospf_area_area_id_get_value);
    databases_.of_areas[id] = taken<area_scope_lsas_ops>(
        session_, area, ospf_area_area_scope_lsas_get_by_ref, ospf_area_area_scope_lsas_set_by_ref);
    auto *interfaces = read.value(area, ospf_area_interfaces_get_by_ref);
    for_each_record<ospf_interface_ops>(session_, interfaces, [&](tbl_ospf_interface_record *row) {
      ospf_interface *interface = ospf_interface_ops::get(handle, space, row);
      databases_.of_interfaces[{id, read.text(interface, ospf_interface_name_get)}] =
          taken<link_scope_lsas_ops>(session_, interface, ospf_interface_link_scope_lsas_get_by_ref,
                                     ospf_interface_link_scope_lsas_set_by_ref);
    });
  });
}

tbl_link_scope_lsa_table *DatabaseRows::as_rows(std::uint16_t type) {
  return table_of<link_scope_lsa_ops>(session_, as_[type], databases_.of_instance, type,
                                      link_scope_lsas_lsa_type_set_value,
                                      link_scope_lsas_link_scope_lsa_db_set_by_ref);
}

tbl_area_scope_lsa_table *DatabaseRows::area_rows(std::uint32_t area, std::uint16_t type) {
  return table_of<area_scope_lsa_ops>(session_, areas_[{area, type}], databases_.of_areas[area],
                                      type, area_scope_lsas_lsa_id_set_value,
                                      area_scope_lsas_area_scope_lsa_set_by_ref);
}

tbl_link_scope_lsa_table *DatabaseRows::interface_rows(std::uint32_t area,
                                                       const std::string &interface,
                                                       std::uint16_t type) {
  return table_of<link_scope_lsa_ops>(
      session_, interfaces_[{area, interface, type}], databases_.of_interfaces[{area, interface}],
      type, link_scope_lsas_lsa_type_set_value, link_scope_lsas_link_scope_lsa_db_set_by_ref);
}

}  // namespace capture_rows
