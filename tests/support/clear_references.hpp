// Made-up OIDs, of random objects and of images from elsewhere, name no table that destroying the
// object could release: they are zeroed before.
#pragma once

#include <kelp/database.h>
#include <kelp/oid.h>

#include "model/layout.hpp"

namespace encodings {

inline void clear_references(void *object, const harbor::model::Structure &type) {
  for (const harbor::model::Field *field : type.fields) {
    auto *place = static_cast<std::uint8_t *>(object) + harbor::model::offset(type, *field);
    if (field->kind == harbor::model::Kind::reference) {
      reinterpret_cast<kelp_reference *>(place)->oid = kelp_oid{};
    } else if (field->kind == harbor::model::Kind::structure) {
      clear_references(place, *field->structure);
    }
  }
}

}  // namespace encodings
