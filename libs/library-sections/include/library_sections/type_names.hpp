// The names of a library's types, by MD5: the manifest has none. They stand in the type records,
// which are data that the library exports as _<name>_type_info_internal:
//
//   offset size
//        0    4 magic 0xbeeff00d
//        4   16 MD5
//       20   33 the same as hexadecimal digits, and a NUL
//       53   64 name, padded with NULs
#pragma once

#include <map>

#include "library_sections/elf_file.hpp"

namespace library_sections {

// By MD5 as hexadecimal digits. Empty for a file without dynamic symbols.
std::map<std::string, std::string> read_type_names(const ElfFile &file);

}  // namespace library_sections
