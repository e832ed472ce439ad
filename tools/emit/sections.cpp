#include "sections.hpp"

#include "products.hpp"

namespace emit {

namespace {

// No code refers to these sections. R keeps them when a link drops what is not referred to; what is
// not allocated stays out of memory, and being no debug section it stays through strip.
std::string assembler(const Section &section) {
  return ".section " + section.name + ",\"" + (section.loaded ? "aR" : "R") +
         "\",%progbits\n.balign " + (section.loaded ? "4" : "1") + "\n.incbin \"sections/" +
         section.file + "\"\n\n";
}

}  // namespace

void write_sections(Writer &writer, const std::string &build_record) {
  std::vector<Section> sections = message_sections();
  sections.push_back(manifest_section(build_record));
  std::string text;
  for (const Section &section : sections) {
    writer.file("sections/" + section.file, section.bytes);
    text += assembler(section);
  }
  writer.file("sections.s", text + ".section .note.GNU-stack,\"\",%progbits\n");
}

}  // namespace emit
