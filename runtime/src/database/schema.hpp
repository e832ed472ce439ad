// Whether the types of this process are those of a store: found by their md5, and laid out alike.
#pragma once

#include <cstdint>

#include "kelp/embed.h"

namespace kelp {

// Whether objects made by the one can be used by the other: what a variant of both reaches, and the
// size of an object, are the same.
bool are_laid_out_alike(const kelp_type_record &one, const kelp_type_record &other);

// Holds the types of every module in the process against those that the store has. 0, or 22 with
// the first type that differs.
std::int32_t check_schema(const kelp_database &database, kelp_error *error);

}  // namespace kelp
