// One LSA, decoded, as a row of a database: the bytes received, the typed header and body, and the
// child tables of what repeats in it.
//
// Numbers stand as they are on the wire; the age keeps its DoNotAge bit. Texts: sequence numbers
// are "0x80000001", checksums "0x0d68", prefixes "2001:db8::/32", prefix options "0x02". Bandwidths
// are octets a second; of the eight unreserved ones the field has that of priority 0.
//
// decoded_completed is true when the fields and child rows say all that the bytes say and the model
// has a place for. It is false for an LSA that the decoder has no types for or could not read to
// its end, and for one of which something could not be kept: of links, topologies, prefixes and
// TLVs that come twice under one key the first stays, and a metric beyond 16 bits stays at 65535
// where the field has no more. A TLV that the typed fields hold in part is there as a whole among
// the unknown ones too: a link TLV after the first, unreserved bandwidths that differ.
#pragma once

#include "ospf_decode/lsa_v2.hpp"
#include "ospf_decode/lsa_v3.hpp"
#include "ospf_tables/session.hpp"
#include "ospf_tables/table_ops.hpp"

namespace capture_rows {

// Each inserts a row and gives it; the key must not be in the table yet. Throws LibraryFailure.
tbl_area_scope_lsa_record *add_lsa(ospf_tables::Session &session, tbl_area_scope_lsa_table *table,
                                   const ospf_decode::LsaV2 &lsa);
tbl_link_scope_lsa_record *add_lsa(ospf_tables::Session &session, tbl_link_scope_lsa_table *table,
                                   const ospf_decode::LsaV2 &lsa);

// holds_ipv4: the instance routes IPv4 (RFC 5838), whose addresses fill the front of the IPv6 ones.
tbl_area_scope_lsa_record *add_lsa(ospf_tables::Session &session, tbl_area_scope_lsa_table *table,
                                   const ospf_decode::LsaV3 &lsa, bool holds_ipv4);
tbl_link_scope_lsa_record *add_lsa(ospf_tables::Session &session, tbl_link_scope_lsa_table *table,
                                   const ospf_decode::LsaV3 &lsa, bool holds_ipv4);

}  // namespace capture_rows
