// The tables of the model for code that meets them by name at run time: what a row is in each
// external form, how rows are added to a table, and which references lead on from a row. One rule
// for each table, made of its operations; streams and documents of whole trees stand on these and
// name no table. A rule hands out untyped pointers and takes back only those of its own table.
#pragma once

#include <kelp/xml.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "ospf_tables/session.hpp"

namespace tree_exchange {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

struct TableRule;

// A field of a row by which it refers to a table of the next level.
struct ReferenceRule {
  const char *name;
  const TableRule *child;
  // The table that the row refers to; null for none, and for a row at a variant without the field.
  void *(*below)(ospf_tables::Session &session, void *record);
  // False at a variant without the field.
  bool (*held)(ospf_tables::Session &session, void *record);
  void (*tie)(ospf_tables::Session &session, void *record, void *table);
};

enum class Added { behind_the_last, out_of_order, twice };

// What a row is behind refill(): that of the image; not quite that, as when the image has what this
// edition does not know; or one with another key than it had, which its table does not stand.
enum class Refilled { is_that, differs, has_another_key };

struct TableRule {
  const char *name;  // "tbl_ospf_area"
  const char *kind;  // "area"
  std::span<const std::uint8_t> luid;
  std::span<const ReferenceRule> references;  // in field order

  void *(*open)(ospf_tables::Session &session);  // a new table without a name
  void (*free)(ospf_tables::Session &session,
               void *table);  // with all its rows and what they refer to
  void (*end_record)(ospf_tables::Session &session, void *record);
  void (*for_each)(ospf_tables::Session &session, void *table,
                   const std::function<void(void *record)> &act);
  std::string (*key)(ospf_tables::Session &session, void *record);  // as a path names the row
  // The same, where no other key of the table has that text; else nothing, and the bytes of the
  // key's image are put to it.
  std::optional<std::string> (*telling_key)(ospf_tables::Session &session, void *record,
                                            Bytes &image);
  // Puts the record behind `last`, which is the last one or null. Twice: it is not in the table.
  Added (*add)(ospf_tables::Session &session, void *table, void *last, void *record);

  // The record's image as it leaves the tree: its references are empty.
  Bytes (*image)(ospf_tables::Session &session, void *record);
  // The image with references as they stand, put into bytes that may be used again: two of one
  // database differ when anything of the row does.
  void (*stored_image)(ospf_tables::Session &session, void *record, Bytes &image);
  std::string (*xml)(ospf_tables::Session &session, void *record);
  // New records out of forms that were checked before; in no table, and owned by the caller.
  void *(*from_image)(ospf_tables::Session &session, ByteView image);
  void *(*from_xml)(ospf_tables::Session &session, kelp_xml_document *document);
  // Reads an image that was checked before into a row of a table, whose stored_image() is put into
  // `stored`. Only in a store, where what becomes another row can be undone, and only into a row
  // that this process made. Null for tables whose rows own more than texts.
  Refilled (*refill)(ospf_tables::Session &session, void *record, ByteView image, Bytes &stored);
};

// The rule of the table that holds the root of a tree.
const TableRule &root_rule();

// Null for a name that no table has.
const TableRule *rule_named(std::string_view name);
// The same for an identity.
const TableRule *rule_with_luid(ByteView luid);

// Null when the rows of the table have no such reference.
const ReferenceRule *reference_named(const TableRule &rule, std::string_view name);

// "area, link_scope_lsas or multi_topology": for messages; "no reference" when there are none.
std::string list_of_references(const TableRule &rule);

}  // namespace tree_exchange
