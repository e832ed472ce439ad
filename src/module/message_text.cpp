#include "module/message_text.hpp"

#include <algorithm>

#include "module/signature.hpp"

namespace harbor::messages {

namespace {

constexpr auto has_signature = [](const auto &form) { return signature_of(form.text).has_value(); };
static_assert(std::all_of(type_forms.begin(), type_forms.end(), has_signature));
static_assert(std::all_of(table_forms.begin(), table_forms.end(), has_signature));

void replace(std::string &text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string_view type_name(std::uint32_t ordinal) {
  if (ordinal < structure_count) return model::structures[ordinal]->name;
  ordinal -= structure_count;
  if (ordinal < enumeration_count) return model::all_enumerations[ordinal]->name;
  return model::all_flag_sets[ordinal - enumeration_count]->name;
}

struct Subject {
  std::string_view type;
  std::string_view field;
};

Subject nth(std::uint32_t row, RowsOf rows_of) {
  for (const Structure *type : model::structures) {
    for (const Field *field : type->fields) {
      const std::uint32_t rows = rows_of(*field);
      if (row < rows) return {type->name, field->name};
      row -= rows;
    }
  }
  return {};
}

// The names that a row stands for. Places that read or mark state have none in their texts.
Subject subject_of(TypeOver over, std::uint32_t row) {
  switch (over) {
    case TypeOver::type:
    case TypeOver::structure:
      return {type_name(row), {}};
    case TypeOver::type_end:
    case TypeOver::structure_end:
      return {type_name(row / 2), {}};
    case TypeOver::light_type:
      return {type_name(structure_count + row), {}};
    case TypeOver::light_type_end:
      return {type_name(structure_count + row / 2), {}};
    case TypeOver::framed_type:
      return {type_name(row < structure_count ? row : row + enumeration_count), {}};
    case TypeOver::object_field:
      return nth(row, object_rows);
    case TypeOver::array:
      return nth(row, array_rows);
    case TypeOver::reference:
      return nth(row, reference_rows);
    case TypeOver::once:
    case TypeOver::state_read:
    case TypeOver::state_mark:
    case TypeOver::tracking_mode:
      return {};
  }
  return {};
}

template <typename Over>
Message message_of(const Form<Over> &form, std::string text) {
  return {std::move(text), form.level, signature_of(form.text).value()};
}

// The names of a table's block, for one of its record's objects.
Message message_in_block(const model::Table &table, const Form<TableOver> &form,
                         std::uint32_t object) {
  const bool composite = is_composite(table);
  const std::string_view holder =
      composite && object == 0 ? table.key_structure->name : table.record->name;
  std::string key(composite ? table.key_structure->name : table.record->name);
  key += " ";
  if (!composite) key += table.key->name;
  std::string text(form.text);
  replace(text, "<table>", "tbl_" + std::string(table.name));
  replace(text, "<key>", key);
  replace(text, "<object>", holder);
  return message_of(form, text);
}

}  // namespace

Message type_message(std::uint32_t index) {
  const auto behind = std::upper_bound(first_rows.begin(), first_rows.end(), index);
  const auto number = static_cast<std::size_t>(behind - first_rows.begin() - 1);
  const Form<TypeOver> &form = type_forms[number];
  const Subject names = subject_of(form.over, index - first_rows[number]);
  std::string text(form.text);
  replace(text, "<type>", names.type);
  replace(text, "<field>", names.field);
  return message_of(form, text);
}

Message table_message(std::uint32_t index) {
  if (index >= blocks_end) {
    const Form<TableOver> &form = table_forms[first_once + index - blocks_end];
    return message_of(form, std::string(form.text));
  }
  for (const model::Table *table : model::all_tables) {
    const std::uint32_t base = block_base(*table);
    if (index >= base + block_length(*table)) continue;
    for (std::size_t form = 0; form < first_once; ++form) {
      for (std::uint32_t object = 0; object < 2; ++object) {
        if (block_offset(*table, static_cast<TableForm>(form), object) != index - base) continue;
        return message_in_block(*table, table_forms[form], object);
      }
    }
  }
  return {};
}

}  // namespace harbor::messages
