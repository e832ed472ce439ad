// The sections of the library's file that are no code: what each is called, whether it is loaded,
// and its bytes.
#pragma once

#include <string>
#include <vector>

namespace emit {

struct Section {
  std::string name;
  std::string file;  // where its bytes are written, below the folder of the sections
  bool loaded;
  std::string bytes;
};

// The messages: a table for each trace source, the texts of both, and what a reader must know of
// them.
std::vector<Section> message_sections();

// The type manifest and the build record.
Section manifest_section(const std::string &build_record);

}  // namespace emit
