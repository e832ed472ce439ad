// The catalogue of trace messages: each text once, with its level and the rule for its index. A
// call site names a form and where it stands; the same constexpr functions number the stored texts,
// so that an index and its text cannot part. Forms that no path emits keep their rows, or the
// numbering of all others would move.
#pragma once

#include "model/lists.hpp"

namespace harbor::messages {

using model::Field;
using model::Kind;
using model::Structure;

// The level word of a trace call.
enum class Level : std::uint32_t {
  fatal = 0,
  error = 0x3000000,
  information = 0x6000000,
  debug = 0x7000000,
};

struct Form {
  std::string_view text;  // <type>, <field>, <table>, <key> and <object> stand for names
  Level level;
};

// --- the type side ----------------------------------------------------------------------------

// In the order of their rows. What a form is repeated over stands in type_rows().
enum class TypeForm : std::uint8_t {
  light_create_failed,
  create_failed,
  corrupted_handle,
  object_not_tracked,
  object_non_tracked,
  varinfo_null,
  variant_above,
  mapping_not_removed,
  references_unknown,
  reference_not_dropped,
  count_error_present,
  count_object_null,
  references_error_present,
  references_object_null,
  tinfo_corrupted,
  offset_jump,
  base_missing,
  embedded_object_null,
  still_referenced,
  mapping_removed,
  tracking_mismatch,
  reference_unresolved,
  reference_not_released,
  existing_oid_unresolved,
  mapping_missing_for_clear,
  clear_not_dropped,
  target_refused,
  existing_mapping_unknown,
  earlier_not_dropped,
  mapping_entry_missing,
  target_without_oid,
  stats_failed,
  light_embedded_object_null,
  reallocating,
  arm_not_tracked,
  dump_without_varinfo,
};

inline constexpr std::array<Form, 36> type_forms{{
    {"error in <type> create %s", Level::error},
    {"error in <type> create: %s", Level::error},
    {"Corrupted KELP Handle", Level::fatal},
    {"The object is not state tracked", Level::error},
    {"The object is non state tracked", Level::error},
    {"varinfo is NULL", Level::fatal},
    {"variant %u requested only %u variants present", Level::information},
    {"<type> destroy: Failed to remove oid mapping for object. Error %s", Level::error},
    {"<type> destroy: Failed to get oid references from object. Error %s", Level::error},
    {"<type> destroy: Failed to decrement ref count of oid %p. Error %s", Level::error},
    {"Error already present in call to get object oid count", Level::error},
    {"Invalid object passed in to get object oid count", Level::error},
    {"Error present in call to get table references from object", Level::error},
    {"Cannot get table references. Invalid object passed on", Level::error},
    {"tinfo is null or corrupted", Level::fatal},
    {"offset_jump read_len %d offset_jump_base %d _kelp_variant_jump %d", Level::information},
    {"sttr_base can not be NULL in NESTED case. Please check the parent object and provide the "
     "correct state tracking base pointer",
     Level::error},
    {"Invalid object pointer passed in to set instance flag", Level::error},
    {"<type> destroy: Object has references and will be cleaned up when all of them are released",
     Level::information},
    {"<type> destroy: Successfully removed OID mapping", Level::debug},
    {"KELP handle and object state tracking mis-match", Level::fatal},
    {"Failed to obtain resolve existing oid reference from object", Level::error},
    {"<type> destroy: Failed to release oid reference for <field> oid. Error %s", Level::error},
    {"<type> <field> set by ref: Failed to resolve existing oid id. Error %s", Level::error},
    {"<type> <field> set by ref: Could not get oid id mapping for object %s/%s",
     Level::information},
    {"<type> <field> set by ref: Failed to decrement ref count on earlier reference. Error %s",
     Level::error},
    {"<type> <field> set by ref: Cannot set reference to this object", Level::error},
    {"<type> <field> set by ref: Failed to obtain existing oid mapping of object. Error %s",
     Level::error},
    {"<type> <field> set by ref: Failed to update ref count on earlier reference. Error %s",
     Level::error},
    {"<type> <field> set by ref: Could not get oid mapping entry using oid id", Level::error},
    {"<type> <field> set by ref: Handle to oid failed with error code %s", Level::error},
    {"kelp_stats_inc failed %s", Level::error},
    {"Invalid object handle passed to set embedded flag", Level::error},
    {"Reallocating resource for <type>", Level::error},
    {"The val object is not state tracked", Level::error},
    {"type variant cached info is NULL during usage dump", Level::error},
}};

// --- what rows are repeated over ----------------------------------------------------------------

inline constexpr std::uint32_t structure_count = model::structures.size();
inline constexpr std::uint32_t light_count =
    model::all_enumerations.size() + model::all_flag_sets.size();
inline constexpr std::uint32_t type_count = structure_count + light_count;

// Structures first, then enumerations, then flag sets: the order of the type records.
constexpr std::uint32_t type_ordinal(const Structure &type) {
  std::uint32_t at = 0;
  while (model::structures[at] != &type) ++at;
  return at;
}
constexpr std::uint32_t light_ordinal(const model::Enumeration &type) {
  std::uint32_t at = 0;
  while (model::all_enumerations[at] != &type) ++at;
  return at;
}
constexpr std::uint32_t light_ordinal(const model::FlagSet &type) {
  std::uint32_t at = 0;
  while (model::all_flag_sets[at] != &type) ++at;
  return at + static_cast<std::uint32_t>(model::all_enumerations.size());
}
constexpr std::uint32_t type_ordinal(const model::Enumeration &type) {
  return structure_count + light_ordinal(type);
}
constexpr std::uint32_t type_ordinal(const model::FlagSet &type) {
  return structure_count + light_ordinal(type);
}

// Field by field, structure after structure: how many rows the fields before this one take, where
// each takes rows_of(field).
template <typename RowsOf>
constexpr std::uint32_t rows_before(const Structure &type, const Field &field, RowsOf rows_of) {
  std::uint32_t rows = 0;
  for (const Structure *other : model::structures) {
    for (const Field *candidate : other->fields) {
      if (other == &type && candidate == &field) return rows;
      rows += rows_of(*candidate);
    }
  }
  return rows;
}
template <typename RowsOf>
constexpr std::uint32_t all_rows(RowsOf rows_of) {
  std::uint32_t rows = 0;
  for (const Structure *type : model::structures) {
    for (const Field *field : type->fields) rows += rows_of(*field);
  }
  return rows;
}

constexpr std::uint32_t reference_rows(const Field &field) {
  return field.kind == Kind::reference ? 1 : 0;
}
constexpr std::uint32_t array_rows(const Field &field) { return field.kind == Kind::array ? 1 : 0; }
// Fields that hold an object: addresses, texts and embedded structures.
constexpr std::uint32_t object_rows(const Field &field) {
  return field.kind == Kind::address || field.kind == Kind::text || field.kind == Kind::structure
             ? 1
             : 0;
}
// Places that read, and as many that write, the state bytes of a field directly: three for an
// array (whole, one element, the element array).
constexpr std::uint32_t state_access_rows(const Field &field) {
  if (field.kind == Kind::counter) return 0;
  return field.kind == Kind::array ? 3 : 1;
}
// Places that write a field and mark its state.
constexpr std::uint32_t write_rows(const Field &field) {
  switch (field.kind) {
    case Kind::counter:
      return 0;
    case Kind::address:
    case Kind::text:
    case Kind::structure:
    case Kind::reference:
    case Kind::flags:
      return 1;
    case Kind::array:
      return field.held == Kind::address ? 3 : 5;
    default:
      return 2;
  }
}

// Where in a structure's whole-object operations the handle's tracking mode is read.
enum class StructureSite : std::uint8_t {
  size,
  initialize_flag,
  initialize_state,
  marshal,
  unmarshal,
  length,
  to_xml,
};
inline constexpr std::uint32_t structure_sites = 7;

enum class StateSite : std::uint8_t { whole = 0, element = 1, element_array = 2 };

// Which of a field's write_rows() a place is. The two writers of a flag field share one.
enum class WriteSite : std::uint8_t {
  set = 0,
  set_value = 1,
  detach = 1,           // arms
  array_gate = 0,       // before an array grows
  array_growth = 1,     // once the store has grown
  array_mark = 2,       // an element was set
  array_set_value = 3,  // arrays of numbers: an element was set by value
  array_replace = 4,    // arrays of numbers: the whole was replaced
};

constexpr std::uint32_t type_rows(TypeForm form) {
  const std::uint32_t state_accesses = all_rows(state_access_rows);
  const std::uint32_t writes = all_rows(write_rows);
  switch (form) {
    case TypeForm::light_create_failed:
    case TypeForm::light_embedded_object_null:
      return light_count;
    case TypeForm::stats_failed:
      return 2 * light_count;
    case TypeForm::corrupted_handle:
      return structure_count * structure_sites + 2 * state_accesses + writes + structure_count;
    case TypeForm::object_not_tracked:
      return state_accesses + writes + structure_count;
    case TypeForm::object_non_tracked:
      return state_accesses;
    case TypeForm::varinfo_null:
    case TypeForm::variant_above:
      return 2 * type_count;
    case TypeForm::mapping_not_removed:
      return 2 * structure_count;
    case TypeForm::references_unknown:
    case TypeForm::reference_not_dropped:
      return all_rows(object_rows);
    case TypeForm::count_error_present:
    case TypeForm::count_object_null:
    case TypeForm::references_error_present:
    case TypeForm::references_object_null:
    case TypeForm::tinfo_corrupted:
      return type_count;
    case TypeForm::offset_jump:
      return structure_count + static_cast<std::uint32_t>(model::all_flag_sets.size());
    case TypeForm::create_failed:
    case TypeForm::base_missing:
    case TypeForm::embedded_object_null:
    case TypeForm::still_referenced:
    case TypeForm::mapping_removed:
    case TypeForm::tracking_mismatch:
      return structure_count;
    case TypeForm::reallocating:
      return all_rows(array_rows);
    case TypeForm::arm_not_tracked:
    case TypeForm::dump_without_varinfo:
      return 1;
    default:
      return all_rows(reference_rows);
  }
}

// Where the rows of each form begin, and behind the last one their number. Counted once: every
// index starts from here.
inline constexpr auto first_rows = [] {
  std::array<std::uint32_t, type_forms.size() + 1> rows{};
  for (std::size_t form = 0; form < type_forms.size(); ++form) {
    rows[form + 1] = rows[form] + type_rows(static_cast<TypeForm>(form));
  }
  return rows;
}();

constexpr std::uint32_t first_row(TypeForm form) {
  return first_rows[static_cast<std::size_t>(form)];
}

inline constexpr std::uint32_t type_message_count = first_rows.back();
static_assert(model::if_current(type_message_count == 3855));
static_assert(first_row(TypeForm::light_create_failed) == 0);
static_assert(model::if_current(type_rows(TypeForm::corrupted_handle) == 1339));
static_assert(model::if_current(type_rows(TypeForm::object_not_tracked) == 714));
static_assert(model::if_current(type_rows(TypeForm::object_non_tracked) == 261));

// --- indices of the type side -------------------------------------------------------------------

// A form with one row for a type.
template <typename Type>
constexpr std::uint32_t of_type(TypeForm form, const Type &type) {
  return first_row(form) + type_ordinal(type);
}
// A form with two rows for a type: 0 where it is created, 1 where it is destroyed.
template <typename Type>
constexpr std::uint32_t of_type_end(TypeForm form, const Type &type, std::uint32_t end) {
  return first_row(form) + 2 * type_ordinal(type) + end;
}
template <typename Type>
constexpr std::uint32_t of_light_type(TypeForm form, const Type &type) {
  return first_row(form) + light_ordinal(type);
}
constexpr std::uint32_t of_offset_jump(const Structure &type) {
  return of_type(TypeForm::offset_jump, type);
}
constexpr std::uint32_t of_offset_jump(const model::FlagSet &type) {
  return first_row(TypeForm::offset_jump) + structure_count + light_ordinal(type) -
         static_cast<std::uint32_t>(model::all_enumerations.size());
}
constexpr std::uint32_t of_reference(TypeForm form, const Structure &type, const Field &field) {
  return first_row(form) + rows_before(type, field, reference_rows);
}
constexpr std::uint32_t of_object_field(TypeForm form, const Structure &type, const Field &field) {
  return first_row(form) + rows_before(type, field, object_rows);
}
constexpr std::uint32_t of_array(TypeForm form, const Structure &type, const Field &field) {
  return first_row(form) + rows_before(type, field, array_rows);
}

constexpr std::uint32_t corrupted_at(const Structure &type, StructureSite site) {
  return first_row(TypeForm::corrupted_handle) + structure_sites * type_ordinal(type) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t corrupted_at_transfer(const Structure &type) {
  return first_row(TypeForm::corrupted_handle) + structure_count * structure_sites +
         2 * all_rows(state_access_rows) + all_rows(write_rows) + type_ordinal(type);
}
constexpr std::uint32_t corrupted_at_state_get(const Structure &type, const Field &field,
                                               StateSite site) {
  return first_row(TypeForm::corrupted_handle) + structure_count * structure_sites +
         rows_before(type, field, state_access_rows) + static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t corrupted_at_state_set(const Structure &type, const Field &field,
                                               StateSite site) {
  return corrupted_at_state_get(type, field, site) + all_rows(state_access_rows);
}
constexpr std::uint32_t corrupted_at_write(const Structure &type, const Field &field,
                                           WriteSite site) {
  return first_row(TypeForm::corrupted_handle) + structure_count * structure_sites +
         2 * all_rows(state_access_rows) + rows_before(type, field, write_rows) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t non_tracked_at_state_get(const Structure &type, const Field &field,
                                                 StateSite site) {
  return first_row(TypeForm::object_non_tracked) + rows_before(type, field, state_access_rows) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t not_tracked_at_state_set(const Structure &type, const Field &field,
                                                 StateSite site) {
  return first_row(TypeForm::object_not_tracked) + rows_before(type, field, state_access_rows) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t not_tracked_at_write(const Structure &type, const Field &field,
                                             WriteSite site) {
  return first_row(TypeForm::object_not_tracked) + all_rows(state_access_rows) +
         rows_before(type, field, write_rows) + static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t not_tracked_at_transfer(const Structure &type) {
  return first_row(TypeForm::object_not_tracked) + all_rows(state_access_rows) +
         all_rows(write_rows) + type_ordinal(type);
}

// --- the table side -----------------------------------------------------------------------------

// Offset of a message in the block of an inline-key or typed-key table.
enum class TableForm : std::uint8_t {
  unknown_key = 0,
  create_without_write_lock = 1,
  toc_not_opened = 2,
  toc_root_missing_for_writer = 3,
  toc_root_missing_for_reader = 4,
  find_by_name_failed = 5,
  reader_cannot_allocate_id_root = 6,
  id_root_not_set = 7,
  find_by_id_failed = 8,
  lumen_gc_word = 9,
  lumen_link_next = 10,
  lumen_link_prev = 11,
  lumen_link_last = 12,
  lumen_link_head = 13,
  mapping_not_created = 14,
  toc_insert_failed = 15,
  open_varinfo_null = 16,
  open_variant_above = 17,
  open_stats_failed = 18,
  free_root_missing = 19,
  force_delete_failed = 20,
  free_of_shared_table = 21,
  toc_delete_failed_on_shared = 22,
  toc_delete_failed = 23,
  mapping_not_removed = 24,
  mapping_removed = 25,
  lumen_unlink_successor = 26,
  lumen_unlink_head = 27,
  lumen_unlink_predecessor = 28,
  free_varinfo_null = 29,
  free_variant_above = 30,
  free_stats_failed = 31,
  request_on_private = 32,
  request_root_missing = 33,
  request_delete_failed = 34,
  request_free_failed = 35,
  default_create_handler = 36,
  default_modify_handler = 37,
  default_delete_handler = 38,
  default_create_dm_handler = 39,
  default_delete_dm_handler = 40,
  default_grouping_handler = 41,
  default_free_handler = 42,
  create_varinfo_null = 43,
  create_variant_above = 44,
  create_stats_failed = 45,
  request_destroy_failed = 46,
  delete_while_destroying_failed = 47,
  destroy_varinfo_null = 48,
  destroy_variant_above = 49,
  destroy_stats_failed = 50,
  destroy_tinfo_corrupted = 51,
  hd_mapping_not_removed = 52,
  set_field_refused = 53,
  free_and_set_field_refused = 54,
  insert_exists = 55,
  delete_on_replicated = 56,
  delete_not_found = 57,
  delete_count_zero = 58,
  invalid_get_flag = 59,
  marshal_error_present = 60,
  marshal_field_empty = 61,
  pkey_marshal_error_present = 62,
  unmarshal_error_present = 63,
  pkey_unmarshal_error_present = 64,
};

inline constexpr std::array<Form, 65> table_forms{{
    {"unknow key:%d", Level::error},
    {"Opening table in create mode while not holding a write lock", Level::fatal},
    {"Failed to open TOC. Error %s", Level::error},
    {"Failed to open toc root for database %s", Level::fatal},
    {"Could not find TOC root in DB %s. Lock type: RD_LOCK, Open type: %u", Level::information},
    {"kelp database toc find returned error: %s", Level::error},
    {"reader cannot allocate table ID root\\n", Level::error},
    {"Setting tbi root failed\\n", Level::error},
    {"kelp database toc find returned error: %s", Level::error},
    {"lumen internal error", Level::fatal},
    {"lumen internal error", Level::fatal},
    {"lumen internal error", Level::fatal},
    {"lumen internal error", Level::fatal},
    {"lumen internal error", Level::fatal},
    {"Failed to create mapping for <table> table", Level::fatal},
    {"Failed to insert %s table <table> into the TOC", Level::error},
    {"varinfo is NULL", Level::fatal},
    {"variant %u requested only %u variants present", Level::information},
    {"kelp_stats_inc failed %s", Level::error},
    {"Failed to get toc root while freeing tablle. Error %s", Level::error},
    {"<table> table free: Failed to force delete table entry from TOC. Error: %s", Level::error},
    {"APPLICATION ERROR! Table <table> in SHARED DB should be freed by requesting table free by "
     "the GC. Please free the table via toc delete or mark the DB as non-shared",
     Level::debug},
    {"<table> table free: Failed to delete table entry from TOC. Error: %s", Level::error},
    {"<table> table free: Failed to delete table entry from TOC. Error: %s", Level::error},
    {"<table> table free: Failed to request oid mapping destroy for table. Error %s", Level::error},
    {"<table> table free: Successfully removed OID mapping for <table>", Level::debug},
    {"lumen internal error", Level::fatal},
    {"lumen internal error", Level::fatal},
    {"lumen internal error", Level::fatal},
    {"varinfo is NULL", Level::fatal},
    {"variant %u requested only %u variants present", Level::information},
    {"kelp_stats_inc failed %s", Level::error},
    {"APPLICATION ERROR! KELp_REQUEST_TABLE_FREE should only be used for SHARED databases",
     Level::error},
    {"Failed to get TOC root while freeing table. Error %s", Level::error},
    {"Failed to perform toc delete for table <table>. Error %s", Level::error},
    {"Failed to destroy <table> table, Error %s", Level::error},
    {"default ospf_harbor_oper_<table>_record create handler called", Level::information},
    {"default ospf_harbor_oper_<table>_record modify handler called", Level::information},
    {"default ospf_harbor_oper_<table>_record delete handler called", Level::information},
    {"default ospf_harbor_oper_<table>_record create DM handler called", Level::information},
    {"default ospf_harbor_oper_<table>_record delete DM handler called", Level::information},
    {"default ospf_harbor_oper_<table>_record grouping handler called", Level::information},
    {"default ospf_harbor_oper_<table>_record free handler called", Level::information},
    {"varinfo is NULL", Level::fatal},
    {"variant %u requested only %u variants present", Level::information},
    {"kelp_stats_inc failed %s", Level::error},
    {"<table> request destroy record failed", Level::error},
    {"Error %d deleting <table> record when destroying", Level::error},
    {"varinfo is NULL", Level::fatal},
    {"variant %u requested only %u variants present", Level::information},
    {"kelp_stats_inc failed %s", Level::error},
    {"tinfo is null or corrupted", Level::fatal},
    {"<table> destroy: Failed to remove oid mapping for object. Error %s", Level::error},
    {"Object is either nested or already embedded. Cannot set such objects into the record",
     Level::error},
    {"Object is either nested or already embedded in a record. Cannot set such objects into the "
     "record",
     Level::error},
    {"<table> insert record exists for <key>", Level::error},
    {"<table>_delete() cannot be direclty used when the table is marked for replication",
     Level::error},
    {"<table> delete, record not found for <key>", Level::error},
    {"<table> delete: record count already 0!", Level::error},
    {"invalid record get flag %d", Level::error},
    {"Error present in call to table marshal: %s", Level::debug},
    {"Failed to marshal <table> record: Field <object> is empty", Level::error},
    {"Error present in call to table marshal: %s", Level::debug},
    {"Error present in call to %s unmarshal: %s", Level::debug},
    {"Error present in call to %s pkey unmarshal: %s", Level::debug},
}};

constexpr bool is_composite(const model::Table &table) {
  return table.shape() == model::Shape::composite_key;
}

constexpr std::uint32_t block_length(const model::Table &table) {
  return is_composite(table) ? 68 : 65;
}

constexpr std::uint32_t block_base(const model::Table &table) {
  std::uint32_t base = 0;
  for (const model::Table *other : model::all_tables) {
    if (other == &table) break;
    base += block_length(*other);
  }
  return base;
}

// Offset in the table's own block. object counts the objects of a composite record: 0 is the key,
// 1 the data; elsewhere it is 0. A composite block repeats the two refusals of fields and the
// complaint about an empty field, which moves what follows.
constexpr std::uint32_t block_offset(const model::Table &table, TableForm form,
                                     std::uint32_t object = 0) {
  const auto plain = static_cast<std::uint32_t>(form);
  if (!is_composite(table) || form < TableForm::set_field_refused) return plain;
  if (form <= TableForm::free_and_set_field_refused) return plain + 2 * object;
  if (form < TableForm::marshal_field_empty) return plain + 2;
  if (form == TableForm::marshal_field_empty) return plain + 2 + object;
  return plain + 3;
}

constexpr std::uint32_t of_table(const model::Table &table, TableForm form,
                                 std::uint32_t object = 0) {
  return block_base(table) + block_offset(table, form, object);
}

inline constexpr Form vft_initializing{"Initializing table vft for %s", Level::debug};
inline constexpr Form vft_error_present{
    "Error already set when requesting ospf_harbor_oper table vft", Level::debug};
inline constexpr std::uint32_t vft_initializing_index =
    block_base(*model::all_tables.back()) + block_length(*model::all_tables.back());
inline constexpr std::uint32_t vft_error_present_index = vft_initializing_index + 1;
inline constexpr std::uint32_t table_message_count = vft_error_present_index + 1;

static_assert(block_base(model::tables::ospf_area) == 1052);
static_assert(block_base(model::tables::ospf_rev1) == 1315);
static_assert(vft_initializing_index == 1380);
static_assert(table_message_count == 1382);

}  // namespace harbor::messages
