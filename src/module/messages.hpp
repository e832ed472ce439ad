// The catalogue of trace messages: where the message of each place has its number. The messages are
// the rows of type_messages.inc and table_messages.inc: a name, what the message is repeated over,
// its level and its text. A call site names a row and where it stands; the functions that give its
// number number the stored texts too, so that a number and its text cannot part.
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

template <typename Over>
struct Form {
  std::string_view text;
  Level level;
  Over over;
};

// --- the type side ----------------------------------------------------------------------------

// What a message of the type side is repeated over; rows_over() counts, subject_of() names.
enum class TypeOver : std::uint8_t {
  once,
  type,
  type_end,  // twice for a type: where it is created, where it is destroyed
  light_type,
  light_type_end,
  structure,
  structure_end,
  framed_type,  // types whose image has a jump word: structures and flag sets
  object_field,
  array,
  reference,
  state_read,     // places that read state bytes
  state_mark,     // places that mark them, and the transfer of each structure
  tracking_mode,  // places that read the handle's tracking mode
};

#define FORM(name, over, level, text) name,
enum class TypeForm : std::uint8_t {
#include "module/type_messages.inc"
};
#undef FORM
#define FORM(name, over, level, text) Form<TypeOver>{text, Level::level, TypeOver::over},
inline constexpr std::array type_forms{
#include "module/type_messages.inc"
};
#undef FORM

// --- what rows are repeated over ----------------------------------------------------------------

inline constexpr std::uint32_t structure_count = model::structures.size();
inline constexpr std::uint32_t enumeration_count = model::all_enumerations.size();
inline constexpr std::uint32_t flag_set_count = model::all_flag_sets.size();
inline constexpr std::uint32_t light_count = enumeration_count + flag_set_count;
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
  return at + enumeration_count;
}
constexpr std::uint32_t type_ordinal(const model::Enumeration &type) {
  return structure_count + light_ordinal(type);
}
constexpr std::uint32_t type_ordinal(const model::FlagSet &type) {
  return structure_count + light_ordinal(type);
}

// Fields take rows field by field, structure after structure: how many a field takes.
using RowsOf = std::uint32_t (*)(const Field &);

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

// How many rows the structures before each one take, and behind the last one all of them.
template <RowsOf rows_of>
inline constexpr auto rows_of_structures = [] {
  std::array<std::uint32_t, structure_count + 1> rows{};
  for (std::uint32_t at = 0; at < structure_count; ++at) {
    rows[at + 1] = rows[at];
    for (const Field *field : model::structures[at]->fields) rows[at + 1] += rows_of(*field);
  }
  return rows;
}();
template <RowsOf rows_of>
inline constexpr std::uint32_t all_rows = rows_of_structures<rows_of>.back();

// How many rows the fields before this one take.
template <RowsOf rows_of>
constexpr std::uint32_t rows_before(const Structure &type, const Field &wanted) {
  std::uint32_t rows = rows_of_structures<rows_of>[type_ordinal(type)];
  for (const Field *field : type.fields) {
    if (field == &wanted) break;
    rows += rows_of(*field);
  }
  return rows;
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

inline constexpr std::uint32_t state_accesses = all_rows<state_access_rows>;
inline constexpr std::uint32_t writes = all_rows<write_rows>;

constexpr std::uint32_t rows_over(TypeOver over) {
  switch (over) {
    case TypeOver::once:
      return 1;
    case TypeOver::type:
      return type_count;
    case TypeOver::type_end:
      return 2 * type_count;
    case TypeOver::light_type:
      return light_count;
    case TypeOver::light_type_end:
      return 2 * light_count;
    case TypeOver::structure:
      return structure_count;
    case TypeOver::structure_end:
      return 2 * structure_count;
    case TypeOver::framed_type:
      return structure_count + flag_set_count;
    case TypeOver::object_field:
      return all_rows<object_rows>;
    case TypeOver::array:
      return all_rows<array_rows>;
    case TypeOver::reference:
      return all_rows<reference_rows>;
    case TypeOver::state_read:
      return state_accesses;
    case TypeOver::state_mark:
      return state_accesses + writes + structure_count;
    case TypeOver::tracking_mode:
      return structure_count * structure_sites + 2 * state_accesses + writes + structure_count;
  }
  return 0;
}

// Where the rows of each form begin, and behind the last one their number. Counted once: every
// index starts from here.
inline constexpr auto first_rows = [] {
  std::array<std::uint32_t, type_forms.size() + 1> rows{};
  for (std::size_t form = 0; form < type_forms.size(); ++form) {
    rows[form + 1] = rows[form] + rows_over(type_forms[form].over);
  }
  return rows;
}();

constexpr std::uint32_t first_row(TypeForm form) {
  return first_rows[static_cast<std::size_t>(form)];
}

inline constexpr std::uint32_t type_message_count = first_rows.back();

// --- indices of the type side -------------------------------------------------------------------

// Called where a place asks for the row of a form that is repeated over something else. It is no
// constant expression, and an index is one: the place does not compile.
[[noreturn]] inline void form_is_repeated_over_something_else() { __builtin_trap(); }

template <typename... Over>
constexpr std::uint32_t first_row_over(TypeForm form, Over... over) {
  const TypeOver actual = type_forms[static_cast<std::size_t>(form)].over;
  if (((actual != over) && ...)) form_is_repeated_over_something_else();
  return first_row(form);
}

// A form with one row for a type.
template <typename Type>
constexpr std::uint32_t of_type(TypeForm form, const Type &type) {
  return first_row_over(form, TypeOver::type, TypeOver::structure) + type_ordinal(type);
}
// A form with two rows for a type: 0 where it is created, 1 where it is destroyed.
template <typename Type>
constexpr std::uint32_t of_type_end(TypeForm form, const Type &type, std::uint32_t end) {
  return first_row_over(form, TypeOver::type_end, TypeOver::structure_end) +
         2 * type_ordinal(type) + end;
}
template <typename Type>
constexpr std::uint32_t of_light_type(TypeForm form, const Type &type) {
  return first_row_over(form, TypeOver::light_type) + light_ordinal(type);
}
constexpr std::uint32_t of_offset_jump(const Structure &type) {
  return first_row(TypeForm::offset_jump) + type_ordinal(type);
}
constexpr std::uint32_t of_offset_jump(const model::FlagSet &type) {
  return first_row(TypeForm::offset_jump) + structure_count + light_ordinal(type) -
         enumeration_count;
}
constexpr std::uint32_t of_reference(TypeForm form, const Structure &type, const Field &field) {
  return first_row_over(form, TypeOver::reference) + rows_before<reference_rows>(type, field);
}
constexpr std::uint32_t of_object_field(TypeForm form, const Structure &type, const Field &field) {
  return first_row_over(form, TypeOver::object_field) + rows_before<object_rows>(type, field);
}
constexpr std::uint32_t of_array(TypeForm form, const Structure &type, const Field &field) {
  return first_row_over(form, TypeOver::array) + rows_before<array_rows>(type, field);
}

constexpr std::uint32_t corrupted_at(const Structure &type, StructureSite site) {
  return first_row(TypeForm::corrupted_handle) + structure_sites * type_ordinal(type) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t corrupted_at_state_get(const Structure &type, const Field &field,
                                               StateSite site) {
  return first_row(TypeForm::corrupted_handle) + structure_count * structure_sites +
         rows_before<state_access_rows>(type, field) + static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t corrupted_at_state_set(const Structure &type, const Field &field,
                                               StateSite site) {
  return corrupted_at_state_get(type, field, site) + state_accesses;
}
constexpr std::uint32_t corrupted_at_write(const Structure &type, const Field &field,
                                           WriteSite site) {
  return first_row(TypeForm::corrupted_handle) + structure_count * structure_sites +
         2 * state_accesses + rows_before<write_rows>(type, field) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t corrupted_at_transfer(const Structure &type) {
  return first_row(TypeForm::corrupted_handle) + structure_count * structure_sites +
         2 * state_accesses + writes + type_ordinal(type);
}
constexpr std::uint32_t non_tracked_at_state_get(const Structure &type, const Field &field,
                                                 StateSite site) {
  return first_row(TypeForm::object_non_tracked) + rows_before<state_access_rows>(type, field) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t not_tracked_at_state_set(const Structure &type, const Field &field,
                                                 StateSite site) {
  return first_row(TypeForm::object_not_tracked) + rows_before<state_access_rows>(type, field) +
         static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t not_tracked_at_write(const Structure &type, const Field &field,
                                             WriteSite site) {
  return first_row(TypeForm::object_not_tracked) + state_accesses +
         rows_before<write_rows>(type, field) + static_cast<std::uint32_t>(site);
}
constexpr std::uint32_t not_tracked_at_transfer(const Structure &type) {
  return first_row(TypeForm::object_not_tracked) + state_accesses + writes + type_ordinal(type);
}

// --- the table side -----------------------------------------------------------------------------

// What a message of the table side is repeated over.
enum class TableOver : std::uint8_t {
  table,   // one row in the block of a table
  object,  // one for each object of its record: the key of a composite record, then the data
  once,    // behind the last block
};

#define FORM(name, over, level, text) name,
enum class TableForm : std::uint8_t {
#include "module/table_messages.inc"
};
#undef FORM
#define FORM(name, over, level, text) Form<TableOver>{text, Level::level, TableOver::over},
inline constexpr std::array table_forms{
#include "module/table_messages.inc"
};
#undef FORM

constexpr const Form<TableOver> &form_of(TableForm form) {
  return table_forms[static_cast<std::size_t>(form)];
}

constexpr bool is_composite(const model::Table &table) {
  return table.shape() == model::Shape::composite_key;
}

// Where a form's row stands in a block, and how far behind it the row of the second object.
struct BlockPlace {
  std::uint32_t first;
  std::uint32_t to_second;
};

// A composite block repeats each run of forms that stand once for an object, which moves what
// follows.
constexpr auto block_places(std::uint32_t objects) {
  std::array<BlockPlace, table_forms.size()> places{};
  std::uint32_t next = 0;
  for (std::size_t form = 0; form < table_forms.size();) {
    std::size_t end = form;
    while (end < table_forms.size() && table_forms[end].over == table_forms[form].over) ++end;
    const auto length = static_cast<std::uint32_t>(end - form);
    const std::uint32_t runs = table_forms[form].over == TableOver::object ? objects : 1;
    for (std::uint32_t at = 0; at < length; ++at) {
      places[form + at] = {next + at, runs == 1 ? 0 : length};
    }
    next += length * runs;
    form = end;
  }
  return places;
}
inline constexpr auto plain_places = block_places(1);
inline constexpr auto composite_places = block_places(2);

// Offset in the table's own block. object counts the objects of a composite record: 0 is the key,
// 1 the data; elsewhere it is 0.
constexpr std::uint32_t block_offset(const model::Table &table, TableForm form,
                                     std::uint32_t object = 0) {
  const auto &places = is_composite(table) ? composite_places : plain_places;
  const BlockPlace &place = places[static_cast<std::size_t>(form)];
  return place.first + object * place.to_second;
}

// The forms that are traced once stand last, so that a block ends where the first of them would.
inline constexpr std::size_t first_once = [] {
  std::size_t form = 0;
  while (table_forms[form].over != TableOver::once) ++form;
  return form;
}();

constexpr std::uint32_t block_length(const model::Table &table) {
  return block_offset(table, static_cast<TableForm>(first_once));
}

constexpr std::uint32_t block_base(const model::Table &table) {
  std::uint32_t base = 0;
  for (const model::Table *other : model::all_tables) {
    if (other == &table) break;
    base += block_length(*other);
  }
  return base;
}

constexpr std::uint32_t of_table(const model::Table &table, TableForm form,
                                 std::uint32_t object = 0) {
  return block_base(table) + block_offset(table, form, object);
}

inline constexpr std::uint32_t blocks_end =
    block_base(*model::all_tables.back()) + block_length(*model::all_tables.back());

// The index of a message that is traced once.
consteval std::uint32_t of_module(TableForm form) {
  return blocks_end + static_cast<std::uint32_t>(form) - static_cast<std::uint32_t>(first_once);
}

inline constexpr std::uint32_t table_message_count =
    blocks_end + static_cast<std::uint32_t>(table_forms.size() - first_once);

}  // namespace harbor::messages
