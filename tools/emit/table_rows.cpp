// The tables as rows of macros, for code in C++ that is generic over them and stands on the public
// headers alone: each table with the types of its objects, and the references that its rows hold.
// In a file of its own, which tables are flat: nothing of a row lies in arrays, arms or tables of
// its own.
#include <algorithm>

#include "products.hpp"

namespace emit {

namespace {

bool is_flat(const Structure *type) {
  return type == nullptr || std::ranges::all_of(type->fields, [](const Field *field) {
           const bool leads_on = field->kind == Kind::reference || field->kind == Kind::array ||
                                 field->kind == Kind::counter || field->kind == Kind::arm;
           return !leads_on && is_flat(field->structure);
         });
}

}  // namespace

void write_table_rows(Writer &writer) {
  std::string tables;
  std::string references;
  std::string flat;
  for (const Table *table : harbor::model::all_tables) {
    const std::string name(table->name);
    const std::string object = name + ", " + std::string(table->record->name);
    tables += table->key_structure == nullptr ? "TABLE(" + object + ")\n"
                                              : "KEYED_TABLE(" + object + ", " +
                                                    std::string(table->key_structure->name) + ")\n";
    std::string held;
    for (const Field *field : table->record->fields) {
      if (field->kind != Kind::reference) continue;
      held += ",\n           REFERENCE(" + object + ", " + std::string(field->name) + ", " +
              std::string(harbor::model::table(field->table).name) + ")";
    }
    if (!held.empty()) references += "REFERENCES(" + name + held + ")\n";
    if (is_flat(table->record) && is_flat(table->key_structure)) flat += "FLAT(" + name + ")\n";
  }
  writer.file("table_rows.inc", tables + references);
  writer.file("flat_tables.inc", flat);
}

}  // namespace emit
