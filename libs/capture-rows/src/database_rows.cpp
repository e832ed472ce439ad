#include "capture_rows/database_rows.hpp"

#include "capture_rows/lsa_rows.hpp"

namespace capture_rows {

using namespace ospf_tables;

namespace {

// The row above the LSAs of one type, with the table for them; the table above is made when it is
// not there.
template <typename Ops, typename AboveOps, typename SetType, typename SetRows>
typename Ops::Table *add_rows(Session &session, std::unique_ptr<NewTable<AboveOps>> &above,
                              std::uint16_t type, SetType set_type, SetRows set_rows) {
  if (above == nullptr) above = std::make_unique<NewTable<AboveOps>>(session);
  NewRecord<AboveOps> record(session);
  NewObject<AboveOps> new_object(session);
  auto *object = record.put(new_object);
  set_type(session.handle(), space, object, type, session.err());
  auto *rows = add_table<Ops>(session, object, set_rows);
  record.insert_into(*above);
  return rows;
}

}  // namespace

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

DatabaseRows::LinkRows *DatabaseRows::add_link_rows(LinkTable &table, std::uint16_t type) {
  return add_rows<link_scope_lsa_ops>(session_, table, type, link_scope_lsas_lsa_type_set_value,
                                      link_scope_lsas_link_scope_lsa_db_set_by_ref);
}

DatabaseRows::AreaRows *DatabaseRows::add_area_rows(AreaTable &table, std::uint16_t type) {
  return add_rows<area_scope_lsa_ops>(session_, table, type, area_scope_lsas_lsa_id_set_value,
                                      area_scope_lsas_area_scope_lsa_set_by_ref);
}

}  // namespace capture_rows
