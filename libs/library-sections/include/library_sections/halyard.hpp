// The section .halyard of a library: the type manifest, then the build record.
//
//   offset size     each of the two records
//        0    4     length of what follows the header
//        4    4     2 for the manifest, 1 for the build record
//        8    length  text, ending in a NUL
//
// The manifest's first line is "# <module>.minime", then one line of 79 columns for each type:
//   1-32 MD5, 33 ':', 34-65 second MD5, 66-69 kind, 70-72 highest variant, 73 ':', 74-78 size, 79
//   'N'
// The build record has the module's name, then "built by: ", "on host: ", "pid: ", "at: " and
// "comment: ", one a line.
#pragma once

#include "library_sections/elf_file.hpp"

namespace library_sections {

struct ManifestLine {
  std::string md5;
  std::string second_md5;
  std::string kind;  // "enum", "type", "flag", "tabl" or "trec"
  std::uint32_t highest_variant = 0;
  std::uint32_t size = 0;
  std::string text;  // the line as it stands
};

struct Manifest {
  std::string module;
  std::vector<ManifestLine> lines;
};

struct BuildRecord {
  std::string module;
  std::string built_by;
  std::string on_host;
  std::string pid;
  std::string at;
  std::string comment;
};

struct Halyard {
  Manifest manifest;
  BuildRecord build;
};

inline constexpr std::string_view halyard_section = ".halyard";

Halyard read_halyard(const ElfFile &file);

}  // namespace library_sections
