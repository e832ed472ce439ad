// Where the runtime finds the functions of modules that end records, tables and objects: what the
// program registered, else the function of the fixed name in the process.
#pragma once

#include "kelp/embed.h"

namespace kelp {

// The vft of tables of this type; null when the module cannot be asked or does not know it.
const kelp_table_vft *find_vft(kelp_handle *handle, const kelp_type_record *table_type);

// What ends objects of this type; null when there is none.
kelp_object_destroyer find_destroyer(const kelp_type_record *type);

}  // namespace kelp
