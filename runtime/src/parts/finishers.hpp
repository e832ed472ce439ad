// Where the runtime finds the functions of modules that end records, tables and objects, or prepare
// objects: what the program registered, else the function of the fixed name in the process.
#pragma once

#include <cstdint>

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

// What prepares an object of this type, as <type>_initialize does; null when there is none.
using ObjectInitializer = void (*)(kelp_handle *, std::uint32_t space_id, void *object,
                                   kelp_type_record *, std::int32_t notify, std::int32_t skip_stats,
                                   std::uint8_t flags, void *sttr_base, std::uint32_t *err);
ObjectInitializer find_initializer(const kelp_type_record *type);

}  // namespace kelp
