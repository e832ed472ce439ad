// What the whole-object operations of structures know of a type: its sizes, its messages, its null
// object and one row for each field. The rules in structure_life.cpp and transfer.cpp walk these
// rows, and reach an embedded structure through the row that leads to its own facts; so they exist
// once for all structures. Constants only, bound to the schema here and nowhere else.
#pragma once

#include <array>
#include <span>

#include "module/messages.hpp"
#include "module/type_record.hpp"
#include "types/array_field.hpp"
#include "types/creation.hpp"
#include "types/light_object.hpp"
#include "types/structure_template.hpp"
#include "types/type_record_access.hpp"

namespace harbor {

struct StructureFacts;

struct FieldFacts {
  Kind kind;
  Kind held;
  std::uint32_t offset;
  std::uint32_t block_place;                        // structures: their block in the owner's area
  const StructureFacts *structure = nullptr;        // structures, and arms that hold one
  const light_object::LightFacts *light = nullptr;  // enumerations and flag sets
  const array_field::ArrayFacts *array = nullptr;   // arrays
  kelp_type_record *target = nullptr;               // references: the table's record
  // What destroy traces.
  std::uint32_t reference_not_released = 0;  // references
  std::uint32_t references_unknown = 0;      // addresses and texts
  std::uint32_t reference_not_dropped = 0;
};

struct StructureMessages {
  std::uint32_t create_failed;
  std::uint32_t corrupted_at_size;
  std::uint32_t corrupted_at_flag;
  std::uint32_t corrupted_at_state;
  std::uint32_t base_missing;
  std::uint32_t embedded_object_null;
  std::uint32_t mapping_not_removed;
  std::uint32_t still_referenced;
  std::uint32_t mapping_removed;
  std::uint32_t distance_not_removed;
  std::uint32_t corrupted_at_transfer;
  std::uint32_t not_tracked_at_transfer;
  type_record_access::Site creation;
  type_record_access::Site destruction;
};

struct StructureFacts {
  kelp_type_record *record;
  void *null_object;
  std::uint8_t variants;
  std::uint32_t object_size;
  std::uint32_t state_size;
  std::span<const FieldFacts> fields;
  structure_template::Kept *kept;
  StructureMessages messages;
};

// How a row reaches the facts of another structure, which are bound below.
template <const Structure &T>
constexpr const StructureFacts *facts_of_structure();

template <const Structure &T, const Field &F>
constexpr FieldFacts facts_of_field() {
  FieldFacts facts{.kind = F.kind, .held = F.held, .offset = model::offset(T, F), .block_place = 0};
  if constexpr (F.kind == Kind::structure) {
    facts.structure = facts_of_structure<*F.structure>();
    facts.block_place = model::state_block_place(T, F);
  } else if constexpr (F.kind == Kind::arm && F.held == Kind::structure) {
    facts.structure = facts_of_structure<*F.structure>();
  } else if constexpr (F.kind == Kind::enumeration) {
    facts.light = &light_object::facts<*F.enumeration>;
  } else if constexpr (F.kind == Kind::flags) {
    facts.light = &light_object::facts<*F.flag_set>;
  } else if constexpr (F.kind == Kind::array) {
    facts.array = &array_field::facts<T, F>;
  } else if constexpr (F.kind == Kind::reference) {
    facts.target = type_record<model::table(F.table)>;
    facts.reference_not_released =
        messages::of_reference(messages::TypeForm::reference_not_released, T, F);
  } else if constexpr (F.kind == Kind::address || F.kind == Kind::text) {
    facts.references_unknown =
        messages::of_object_field(messages::TypeForm::references_unknown, T, F);
    facts.reference_not_dropped =
        messages::of_object_field(messages::TypeForm::reference_not_dropped, T, F);
  }
  return facts;
}

template <const Structure &T>
inline constexpr auto facts_of_fields = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array{facts_of_field<T, *T.fields[I]>()...};
}
(std::make_index_sequence<T.fields.size()>());

template <const Structure &T>
constexpr StructureMessages messages_of_structure() {
  using messages::StructureSite;
  using messages::TypeForm;
  return {
      .create_failed = messages::of_type(TypeForm::create_failed, T),
      .corrupted_at_size = messages::corrupted_at(T, StructureSite::size),
      .corrupted_at_flag = messages::corrupted_at(T, StructureSite::initialize_flag),
      .corrupted_at_state = messages::corrupted_at(T, StructureSite::initialize_state),
      .base_missing = messages::of_type(TypeForm::base_missing, T),
      .embedded_object_null = messages::of_type(TypeForm::embedded_object_null, T),
      .mapping_not_removed = messages::of_type_end(TypeForm::mapping_not_removed, T, 0),
      .still_referenced = messages::of_type(TypeForm::still_referenced, T),
      .mapping_removed = messages::of_type(TypeForm::mapping_removed, T),
      .distance_not_removed = messages::of_type_end(TypeForm::mapping_not_removed, T, 1),
      .corrupted_at_transfer = messages::corrupted_at_transfer(T),
      .not_tracked_at_transfer = messages::not_tracked_at_transfer(T),
      .creation = type_record_access::site_of<T, type_record_access::End::creation>,
      .destruction = type_record_access::site_of<T, type_record_access::End::destruction>,
  };
}

template <const Structure &T>
inline constinit structure_template::Kept kept_template{nullptr};

template <const Structure &T>
inline constexpr StructureFacts structure_facts{
    .record = type_record<T>,
    .null_object = creation::null_object<T>,
    .variants = T.variants,
    .object_size = model::object_size(T),
    .state_size = model::state_size(T),
    .fields = facts_of_fields<T>,
    .kept = &kept_template<T>,
    .messages = messages_of_structure<T>(),
};

template <const Structure &T>
constexpr const StructureFacts *facts_of_structure() {
  return &structure_facts<T>;
}

}  // namespace harbor
