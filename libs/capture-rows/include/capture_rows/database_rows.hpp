// Link-state databases as tables of an instance that is not in the tree yet: one table for the LSAs
// of a type in a place, made when the first of them comes. Who reads databases, from captures or
// from what routers say, fills the tables through this.
//
// AS scope: the instance's link_scope_lsas. Area scope: the area's area_scope_lsas. With an
// interface: link_scope_lsas of that interface, which LSAs of link scope need and others may have.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_tables/instance_rows.hpp"
#include "ospf_tables/session.hpp"

namespace capture_rows {

// An LSA's row, in a table of one of the two kinds.
struct LsaRow {
  tbl_area_scope_lsa_record *of_area = nullptr;
  tbl_link_scope_lsa_record *of_link = nullptr;
};

class DatabaseRows {
 public:
  // holds_ipv4: the instance routes IPv4 (RFC 5838).
  DatabaseRows(ospf_tables::Session &session, bool holds_ipv4)
      : session_(session), holds_ipv4_(holds_ipv4) {}

  // Each LSA once in a place. Throw LibraryFailure.
  LsaRow add_to_as(const ospf_decode::LsaV2 &lsa);
  LsaRow add_to_as(const ospf_decode::LsaV3 &lsa);
  LsaRow add_to_area(std::uint32_t area, const ospf_decode::LsaV2 &lsa);
  LsaRow add_to_area(std::uint32_t area, const ospf_decode::LsaV3 &lsa);
  LsaRow add_to_interface(std::uint32_t area, const std::string &interface,
                          const ospf_decode::LsaV2 &lsa);
  LsaRow add_to_interface(std::uint32_t area, const std::string &interface,
                          const ospf_decode::LsaV3 &lsa);

  // Destroys an LSA's row, and with the last one of a type the row above it.
  void remove(const LsaRow &row);

  const ospf_tables::Databases &databases() const { return databases_; }
  // Takes the databases from the instance that was made with them and refers to none then, so that
  // they can be added to, and be another one's.
  void take_back(tbl_ospf_instance_rev1_record *instance);

 private:
  // The table for the LSAs of a type, and the row that refers to it.
  template <typename Ops, typename AboveOps>
  struct Rows {
    typename Ops::Table *table = nullptr;
    typename AboveOps::Record *above = nullptr;
  };
  using LinkRows = Rows<ospf_tables::link_scope_lsa_ops, ospf_tables::link_scope_lsas_ops>;
  using AreaRows = Rows<ospf_tables::area_scope_lsa_ops, ospf_tables::area_scope_lsas_ops>;

  tbl_link_scope_lsa_table *as_rows(std::uint16_t type);
  tbl_link_scope_lsa_table *interface_rows(std::uint32_t area, const std::string &interface,
                                           std::uint16_t type);
  tbl_area_scope_lsa_table *area_rows(std::uint32_t area, std::uint16_t type);

  ospf_tables::Session &session_;
  bool holds_ipv4_;
  ospf_tables::Databases databases_;
  std::map<std::uint16_t, LinkRows> as_;
  std::map<std::pair<std::uint32_t, std::uint16_t>, AreaRows> areas_;
  std::map<std::tuple<std::uint32_t, std::string, std::uint16_t>, LinkRows> interfaces_;
};

}  // namespace capture_rows
