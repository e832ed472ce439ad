#include "encodings/xml.hpp"

namespace harbor::xml {

Path child_path(const Source &source, const char *tag) {
  Path path;
  path.put(source.path).put("/").put(tag);
  return path;
}

Path element_path(const Source &source, const char *tag, std::uint32_t index) {
  Path path;
  path.put(source.path).put("/").put(tag).put("[").put(index).put("]");
  return path;
}

bool open(const Source &source) {
  std::uint32_t count = 0;
  if (xml_get_element_nodecount(source.document, source.path, &count) == 0 && count != 0) {
    return true;
  }
  fail(source.handle, KELP_ERR_NOT_FOUND, source.err, About(source.path, "from_xml"),
       "found no such element in the document");
  return false;
}

bool goes_on(const Source &source) {
  if (*source.err == KELP_ERR_NOT_FOUND) *source.err = 0;
  return *source.err == 0;
}

void fail_creation(const Source &source) {
  fail(source.handle, KELP_ERR_NO_MEMORY, source.err, About(source.path, "from_xml"));
}

}  // namespace harbor::xml
