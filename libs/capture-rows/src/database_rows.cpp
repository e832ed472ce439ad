#include "capture_rows/database_rows.hpp"

#include "capture_rows/lsa_rows.hpp"

namespace capture_rows {

using namespace ospf_tables;

void DatabaseRows::add_to_as(const ospf_decode::LsaV2 &lsa) {
  add_lsa(session_, as_rows(lsa.header.type), lsa);
}

void DatabaseRows::add_to_as(const ospf_decode::LsaV3 &lsa) {
  add_lsa(session_, as_rows(lsa.header.type), lsa, holds_ipv4_);
}

void DatabaseRows::add_to_area(std::uint32_t area, const ospf_decode::LsaV2 &lsa) {
  add_lsa(session_, area_rows(area, lsa.header.type), lsa);
}

void DatabaseRows::add_to_area(std::uint32_t area, const ospf_decode::LsaV3 &lsa) {
  add_lsa(session_, area_rows(area, lsa.header.type), lsa, holds_ipv4_);
}

void DatabaseRows::add_to_interface(std::uint32_t area, const std::string &interface,
                                    const ospf_decode::LsaV2 &lsa) {
  add_lsa(session_, interface_rows(area, interface, lsa.header.type), lsa);
}

void DatabaseRows::add_to_interface(std::uint32_t area, const std::string &interface,
                                    const ospf_decode::LsaV3 &lsa) {
  add_lsa(session_, interface_rows(area, interface, lsa.header.type), lsa, holds_ipv4_);
}

DatabaseRows::LinkRows *DatabaseRows::as_rows(std::uint16_t type) {
  LinkRows *&rows = as_[type];
  if (rows == nullptr) rows = add_link_rows(databases_.of_instance, type);
  return rows;
}

DatabaseRows::AreaRows *DatabaseRows::area_rows(std::uint32_t area, std::uint16_t type) {
  AreaRows *&rows = areas_[{area, type}];
  if (rows == nullptr) rows = add_area_rows(databases_.of_areas[area], type);
  return rows;
}

DatabaseRows::LinkRows *DatabaseRows::interface_rows(std::uint32_t area,
                                                     const std::string &interface,
                                                     std::uint16_t type) {
  LinkRows *&rows = interfaces_[{area, interface, type}];
  if (rows == nullptr) rows = add_link_rows(databases_.of_interfaces[{area, interface}], type);
  return rows;
}

// The row above the LSAs of one type, with the table for them.
DatabaseRows::LinkRows *DatabaseRows::add_link_rows(LinkTable &table, std::uint16_t type) {
  if (table == nullptr) table = std::make_unique<NewTable<link_scope_lsas_ops>>(session_);
  NewRecord<link_scope_lsas_ops> record(session_);
  NewObject<link_scope_lsas_ops> new_object(session_);
  link_scope_lsas *object = record.put(new_object);
  link_scope_lsas_lsa_type_set_value(session_.handle(), space, object, type, session_.err());
  auto *rows =
      add_table<link_scope_lsa_ops>(session_, object, link_scope_lsas_link_scope_lsa_db_set_by_ref);
  record.insert_into(*table);
  return rows;
}

DatabaseRows::AreaRows *DatabaseRows::add_area_rows(AreaTable &table, std::uint16_t type) {
  if (table == nullptr) table = std::make_unique<NewTable<area_scope_lsas_ops>>(session_);
  NewRecord<area_scope_lsas_ops> record(session_);
  NewObject<area_scope_lsas_ops> new_object(session_);
  area_scope_lsas *object = record.put(new_object);
  area_scope_lsas_lsa_id_set_value(session_.handle(), space, object, type, session_.err());
  auto *rows =
      add_table<area_scope_lsa_ops>(session_, object, area_scope_lsas_area_scope_lsa_set_by_ref);
  record.insert_into(*table);
  return rows;
}

}  // namespace capture_rows
