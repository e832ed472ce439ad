// What differs between tables, as one constant record for each: the argument that binds a table
// rule to its table. Forwarders pass facts_of<table>; rules are plain functions and never ask which
// table they serve.
//
// A variable template here is instantiated by the forwarders, after the emitted headers have
// specialised what it refers to; nothing at namespace scope may use facts_of.
#pragma once

#include <kelp/table.h>
#include <kelp/vft.h>

#include "module/messages.hpp"
#include "module/object.hpp"
#include "module/trace.hpp"
#include "module/type_record.hpp"
#include "tables/handler_addresses.hpp"
#include "tables/key_order.hpp"
#include "tables/key_words.hpp"
#include "tables/tree_functions.hpp"
#include "types/structure_life.hpp"
#include "types/type_record_access.hpp"

namespace harbor {

using messages::TableForm;

// The operations of a record's object, without its type.
struct ObjectOperations {
  const char *name;
  void *(*create)(kelp_handle *, std::uint32_t);
  void (*destroy)(kelp_handle *, std::uint32_t, void *);
  void (*set_instance_embedded)(kelp_handle *, std::uint32_t, void *);
};

struct TableFacts {
  const model::Table *table;
  const char *name;  // tbl_<t>
  const std::uint8_t *luid;
  const char *luid_text;
  kelp_type_record *type;
  kelp_type_record *record_type;
  // In a composite-key table the key object, then the data object; elsewhere the one object. The
  // first is also what a pkey object is.
  std::uint32_t object_count;
  ObjectOperations objects[2];
  std::uint32_t record_size;
  std::uint32_t message_base;  // index of the first message of the table's block
  // Exported functions, as the tree gets them.
  TreeFunctions tree;
  // Orders two records by their keys alone.
  std::int32_t (*compare_keys)(const kelp_record &, const kelp_record &);
  // Says a record's key in words.
  void (*print_key)(const kelp_record &, key_words::Words &);
  kelp_tbi_root **tbi_cache;
  kelp_record *null_record;
  const HandlerAddresses *handlers;
};

// --- texts and bytes of a table's row ---------------------------------------------------------

inline constexpr std::size_t luid_length = 16;

// A row's text as a C string. The rows are literals, which have a NUL behind them.
constexpr const char *c_string(std::string_view text) { return text.data(); }
constexpr bool ends_in_nul(std::string_view text) { return text.data()[text.size()] == '\0'; }

// The table's name as messages and texts show it.
inline constexpr std::string_view table_prefix = "tbl_";
template <std::size_t length>
struct Text {
  char characters[length + 1] = {};
};
template <std::size_t length>
constexpr Text<length> prefixed(std::string_view name) {
  Text<length> result;
  std::size_t at = 0;
  for (char c : table_prefix) result.characters[at++] = c;
  for (char c : name) result.characters[at++] = c;
  return result;
}
template <const model::Table &T>
inline constexpr auto name_of_table = prefixed<table_prefix.size() + T.name.size()>(T.name);

struct Luid {
  std::uint8_t bytes[luid_length];
};
constexpr std::uint8_t digit(char c) {
  return static_cast<std::uint8_t>(c <= '9' ? c - '0' : c - 'a' + 10);
}
constexpr Luid luid_from(std::string_view text) {
  Luid luid{};
  for (std::size_t at = 0; at < luid_length; ++at) {
    luid.bytes[at] = static_cast<std::uint8_t>(digit(text[2 * at]) << 4 | digit(text[2 * at + 1]));
  }
  return luid;
}
template <const model::Table &T>
inline constexpr Luid luid_of = luid_from(T.luid);

// --- static storage of a table ----------------------------------------------------------------

// A record with room for two objects, the second behind the one that a kelp_record declares.
struct CompositeRecord {
  kelp_record record;
  void *second_object;
};
static_assert(offsetof(CompositeRecord, second_object) ==
              offsetof(kelp_record, objects) + sizeof(void *));

// What a _cr create hands out without memory. Nothing frees it.
template <const model::Table &T>
inline constinit CompositeRecord null_record_of{};

// The TBI root last found; good only while lumen_in_range says that it lies in the handle's store.
template <const model::Table &T>
inline constinit kelp_tbi_root *tbi_cache_of = nullptr;

// --- the facts --------------------------------------------------------------------------------

template <const Structure &S>
inline constexpr ObjectOperations object_operations{
    .name = c_string(S.name),
    .create = &structure_life::create<S>,
    .destroy = &structure_life::destroy<S>,
    .set_instance_embedded = &structure_life::set_instance_embedded<S>,
};

template <const model::Table &T>
constexpr TableFacts make_facts() {
  static_assert(T.luid.size() == 2 * luid_length && ends_in_nul(T.luid));
  static_assert(ends_in_nul(T.record->name));
  constexpr bool composite = T.shape() == model::Shape::composite_key;
  TableFacts facts{
      .table = &T,
      .name = name_of_table<T>.characters,
      .luid = luid_of<T>.bytes,
      .luid_text = c_string(T.luid),
      .type = type_record<T>,
      .record_type = record_type_record<T>,
      .object_count = composite ? 2 : 1,
      .objects = {},
      .record_size = composite ? sizeof(CompositeRecord) : sizeof(kelp_record),
      .message_base = messages::block_base(T),
      .tree = tree_functions_of<T>,
      .compare_keys = &key_order::compare<T>,
      .print_key = &key_words::print<T>,
      .tbi_cache = &tbi_cache_of<T>,
      .null_record = &null_record_of<T>.record,
      .handlers = &handlers_of<T>,
  };
  if constexpr (composite) {
    facts.objects[0] = object_operations<*T.key_structure>;
    facts.objects[1] = object_operations<*T.record>;
  } else {
    facts.objects[0] = object_operations<*T.record>;
  }
  return facts;
}

template <const model::Table &T>
inline constexpr TableFacts facts_of = make_facts<T>();

// --- views and messages ------------------------------------------------------------------------

inline kelp_table *table_of(void *table) { return static_cast<kelp_table *>(table); }
inline kelp_record *record_of(void *record) { return static_cast<kelp_record *>(record); }

// The place of an object's pointer in its record. A null record gives an address that faults.
inline void **object_slot(void *record, std::uint32_t object) {
  return reinterpret_cast<void **>(reinterpret_cast<std::uintptr_t>(record) +
                                   offsetof(kelp_record, objects)) +
         object;
}

// The index of a message in the table's block. object says which object of a composite record the
// message is about, for the forms that stand once for each.
inline std::uint32_t message_of(const TableFacts &facts, TableForm form, std::uint32_t object = 0) {
  return facts.message_base + messages::block_offset(*facts.table, form, object);
}

// Emits a message at its own level.
template <typename... Arguments>
inline void report(const TableFacts &facts, TableForm form, Arguments... arguments) {
  trace(table_source, messages::form_of(form).level, message_of(facts, form), arguments...);
}
inline void report_about(const TableFacts &facts, std::uint32_t object, TableForm form) {
  trace(table_source, messages::form_of(form).level, message_of(facts, form, object));
}

// A fatal message, then the end.
template <typename... Arguments>
[[noreturn]] inline void die(const TableFacts &facts, TableForm form, Arguments... arguments) {
  report(facts, form, arguments...);
  std::abort();
}

// The messages of a place that counts tables or records in their variant entry. Only a place that
// tests the type record itself has the last one.
inline type_record_access::Site count_site(
    const TableFacts &facts, TableForm varinfo_null, TableForm variant_above,
    TableForm tinfo_corrupted = TableForm::destroy_tinfo_corrupted) {
  return {&table_source, message_of(facts, varinfo_null), message_of(facts, variant_above),
          message_of(facts, tinfo_corrupted)};
}

// The one variant entry of a table's or record's type.
inline kelp_variant_entry &only_entry(const kelp_type_record *type,
                                      const type_record_access::Site &site) {
  return type_record_access::entry_of(type, 0, 1, site);
}

}  // namespace harbor
