#include "module/message_text.hpp"

#include <algorithm>

#include "module/signature.hpp"

namespace harbor::messages {

namespace {

constexpr bool has_signature(const Form &form) { return signature_of(form.text).has_value(); }
static_assert(std::all_of(type_forms.begin(), type_forms.end(), has_signature));
static_assert(std::all_of(table_forms.begin(), table_forms.end(), has_signature));
static_assert(has_signature(vft_initializing) && has_signature(vft_error_present));

void replace(std::string &text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos;
       at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
}

std::string_view type_name(std::uint32_t ordinal) {
  if (ordinal < structure_count) return model::structures[ordinal]->name;
  ordinal -= structure_count;
  if (ordinal < model::all_enumerations.size()) return model::all_enumerations[ordinal]->name;
  return model::all_flag_sets[ordinal - model::all_enumerations.size()]->name;
}

struct Subject {
  std::string_view type;
  std::string_view field;
};

template <typename RowsOf>
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

Message message_of(const Form &form, std::string text) {
  return {std::move(text), form.level, signature_of(form.text).value()};
}

// The names that a row of a form stands for. Forms without names in their text take none.
Subject subject(TypeForm form, std::uint32_t row) {
  switch (form) {
    case TypeForm::light_create_failed:
      return {type_name(structure_count + row), {}};
    case TypeForm::mapping_not_removed:
      return {type_name(row / 2), {}};
    case TypeForm::create_failed:
    case TypeForm::still_referenced:
    case TypeForm::mapping_removed:
      return {type_name(row), {}};
    case TypeForm::references_unknown:
    case TypeForm::reference_not_dropped:
      return nth(row, object_rows);
    case TypeForm::reallocating:
      return nth(row, array_rows);
    case TypeForm::reference_not_released:
    case TypeForm::existing_oid_unresolved:
    case TypeForm::mapping_missing_for_clear:
    case TypeForm::clear_not_dropped:
    case TypeForm::target_refused:
    case TypeForm::existing_mapping_unknown:
    case TypeForm::earlier_not_dropped:
    case TypeForm::mapping_entry_missing:
    case TypeForm::target_without_oid:
      return nth(row, reference_rows);
    default:
      return {};
  }
}

}  // namespace

Message type_message(std::uint32_t index) {
  std::uint8_t number = 0;
  while (index >= type_rows(static_cast<TypeForm>(number))) {
    index -= type_rows(static_cast<TypeForm>(number++));
  }
  const Form &form = type_forms[number];
  const Subject names = subject(static_cast<TypeForm>(number), index);
  std::string text(form.text);
  replace(text, "<type>", names.type);
  replace(text, "<field>", names.field);
  return message_of(form, text);
}

Message table_message(std::uint32_t index) {
  for (const auto &[own_index, form] : {std::pair{vft_initializing_index, &vft_initializing},
                                        {vft_error_present_index, &vft_error_present}}) {
    if (index == own_index) return message_of(*form, std::string(form->text));
  }
  for (const model::Table *table : model::all_tables) {
    const std::uint32_t base = block_base(*table);
    if (index >= base + block_length(*table)) continue;
    for (std::uint32_t form = 0; form < table_forms.size(); ++form) {
      for (std::uint32_t object = 0; object < 2; ++object) {
        if (block_offset(*table, static_cast<TableForm>(form), object) != index - base) continue;
        const bool composite = is_composite(*table);
        const std::string_view holder =
            composite && object == 0 ? table->key_structure->name : table->record->name;
        std::string key(composite ? table->key_structure->name : table->record->name);
        key += " ";
        if (!composite) key += table->key->name;
        std::string text(table_forms[form].text);
        replace(text, "<table>", "tbl_" + std::string(table->name));
        replace(text, "<key>", key);
        replace(text, "<object>", holder);
        return message_of(table_forms[form], text);
      }
    }
  }
  return {};
}

}  // namespace harbor::messages
