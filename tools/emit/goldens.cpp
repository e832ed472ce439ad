// What a reviewer reads in a change: the exported names, the layout of every type, all messages by
// index, and the list of families.
#include <algorithm>

#include "families.hpp"
#include "model/layout.hpp"
#include "model/sizes.hpp"
#include "module/message_text.hpp"
#include "products.hpp"

namespace emit {

namespace {

using namespace harbor::model;

std::string layout() {
  std::string text =
      "# Offsets and sizes in bytes. state: place of the field's state byte in the state area.\n";
  for (const Structure *type : structures) {
    text += "\n" + std::string(type->name) + ": size " + std::to_string(object_size(*type)) +
            ", tracked " + std::to_string(tracked_size(*type)) + ", used";
    for (int variant = 0; variant < type->variants; ++variant) {
      text += " " + std::to_string(used_length(*type, variant));
    }
    text += "\n";
    for (const Field *field : type->fields) {
      text += "  " + std::string(field->name) + ": offset " +
              std::to_string(offset(*type, *field)) + ", width " + std::to_string(width(*field));
      if (has_state(*field)) text += ", state " + std::to_string(state_place(*type, *field));
      if (field->kind == Kind::array || field->kind == Kind::structure) {
        text += ", behind it " + std::to_string(state_block_place(*type, *field));
      }
      text += "\n";
    }
  }
  return text;
}

char level_letter(harbor::messages::Level level) {
  switch (level) {
    case harbor::messages::Level::fatal:
      return 'F';
    case harbor::messages::Level::error:
      return 'E';
    case harbor::messages::Level::information:
      return 'I';
    case harbor::messages::Level::debug:
      return 'D';
  }
  return '?';
}

std::string messages() {
  std::string text =
      "# Trace messages: index, level, text. The type side, then the table side.\n\n";
  const auto row = [&](std::uint32_t index, const harbor::messages::Message &message) {
    text += std::to_string(index) + " " + level_letter(message.level) + " " + message.text + "\n";
  };
  for (std::uint32_t index = 0; index < harbor::messages::type_message_count; ++index) {
    row(index, harbor::messages::type_message(index));
  }
  text += "\n";
  for (std::uint32_t index = 0; index < harbor::messages::table_message_count; ++index) {
    row(index, harbor::messages::table_message(index));
  }
  return text;
}

template <typename Families>
void list_families(std::string &text, std::string_view title, std::string_view prefix,
                   const Families &families) {
  text += "\n## " + std::string(title) + "\n";
  for (const auto &family : families) {
    if (family.operations.empty()) continue;
    text += "\n### " + std::string(family.name) + "\n\n| Operation | Meaning |\n|---|---|\n";
    for (const Operation &operation : family.operations) {
      text += "| `" + std::string(prefix) + std::string(operation.suffix) + "` | " +
              replaced(with_counts(operation.brief), "|", "or") + " |\n";
    }
  }
}

std::string families() {
  std::string text =
      "# Families of operations\n\n"
      "Every exported function is an operation of a family, crossed with a type, a field or a "
      "table.\nThe public headers give each its arguments, errors and ownership.\n";
  list_families(text, "The module", "", harbor::module_families);
  list_families(text, "Enumerations", "<type>_", harbor::enumeration_families);
  list_families(text, "Flag sets", "<type>_", harbor::flag_set_families);
  list_families(text, "Structures", "<type>_", harbor::structure_families);
  list_families(text, "Fields", "<type>_<field>_", harbor::field_families);
  list_families(text, "Tables", "tbl_<t>_", harbor::table_families);
  return text;
}

}  // namespace

void write_goldens(Writer &writer, const std::vector<Unit> &units) {
  std::vector<std::string> names = data_symbols();
  for (const Unit &unit : units) {
    for (const Function &function : unit.functions) names.push_back(function.name);
  }
  std::sort(names.begin(), names.end());
  std::string exports;
  for (const std::string &name : names) exports += name + "\n";
  writer.file("abi/exports.txt", exports);
  writer.file("abi/layout.txt", layout());
  writer.file("abi/messages.txt", messages());
  writer.file("docs/families.md", families());
}

}  // namespace emit
