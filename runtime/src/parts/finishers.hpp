// Where the runtime finds the functions of modules that end records, tables and objects: what the
// program registered, else the function of the fixed name in the process.
#pragma once

#include "kelp/embed.h"

namespace kelp {

// Registers a function under the name of its module or type; null takes it out again. Both throw
// bad_alloc.
void set_vft_lookup(const char *module_name, kelp_vft_lookup lookup);
void set_destroyer(const char *type_name, kelp_object_destroyer destroyer);

// The vft of tables of this type; null when the module cannot be asked or does not know it.
const kelp_table_vft *find_vft(kelp_handle *handle, const kelp_type_record *table_type);

// What ends objects of this type; null when there is none.
kelp_object_destroyer find_destroyer(const kelp_type_record *type);

}  // namespace kelp
