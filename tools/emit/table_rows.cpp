// The tables as rows of macros, for code in C++ that is generic over them and stands on the public
// headers alone: each table with the types of its objects, and the references that its rows hold.
#include "products.hpp"

namespace emit {

void write_table_rows(Writer &writer) {
  std::string tables;
  std::string references;
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
  }
  writer.file("table_rows.inc", tables + references);
}

}  // namespace emit
