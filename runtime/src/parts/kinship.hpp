// When two type records are editions of one type: they have the same names, and objects of the one
// hold all that both know at the same places. A type that a later edition gave more variants goes
// by another md5 there.
#pragma once

#include <cstdint>

#include "kelp/object.h"

namespace kelp {

// Whether the record is that of a structure, whose objects own things and may grow.
bool is_structure(const kelp_type_record &record);

// Bytes of an object; 0 without variant info.
std::uint32_t object_bytes(const kelp_type_record &record);

// Bytes that a store gives to each object of a type that comes to it with this record.
std::uint32_t room_of(const kelp_type_record &record);

bool have_same_names(const kelp_type_record &one, const kelp_type_record &other);

// Whether what a variant of both reaches is the same.
bool are_laid_out_alike(const kelp_type_record &one, const kelp_type_record &other);

// Whether the record is an edition of the type that a store has as this copy, with objects that
// find room in those of the store.
bool is_edition_of(const kelp_type_record &record, const kelp_type_record_copy &copy);

// Calls visit with each type record of the modules in the process, until it gives false.
template <typename Visit>
void each_own_record(Visit &&visit) {
  for (const kelp_module_node *module = kelp_module_tot_root.first; module != nullptr;
       module = module->next) {
    for (kelp_type_record *const *type = module->types; *type != nullptr; ++type) {
      if (!visit(**type)) return;
    }
  }
}

}  // namespace kelp
