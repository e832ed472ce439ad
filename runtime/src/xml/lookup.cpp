// The exported look-ups, through which modules read enumerations and flag sets and test whether an
// element is there at all. They have no handle and no error word: the code is the result.
#include <algorithm>
#include <cstring>
#include <new>

#include "kelp/xml.h"
#include "xml/document.hpp"
#include "xml/element_text.hpp"

uint32_t xml_get_element_value(kelp_xml_document *document, const char *path, char *value,
                               uint32_t size, uint32_t) {
  if (document == nullptr || path == nullptr) return KELP_ERR_INVALID;
  const kelp::Found found = document->find(path);
  if (found.code != 0 || value == nullptr || size == 0) return found.code;
  try {
    const kelp::ElementText text(found.element());
    const size_t length = std::min<size_t>(text.view().size(), size - 1);
    if (length > 0) std::memcpy(value, text.view().data(), length);
    value[length] = '\0';
    return 0;
  } catch (const std::bad_alloc &) {
    return KELP_ERR_NO_MEMORY;
  }
}

uint32_t xml_get_element_nodecount(kelp_xml_document *document, const char *path, uint32_t *count) {
  if (document == nullptr || path == nullptr || count == nullptr) return KELP_ERR_INVALID;
  const kelp::Found found = document->find(path);
  if (found.code == KELP_ERR_INVALID) return found.code;
  *count = found.count;
  return 0;
}

uint32_t xml_get_element_position(kelp_xml_document *document, const char *path, uint32_t *line,
                                  uint32_t *column) {
  if (document == nullptr || path == nullptr || line == nullptr || column == nullptr) {
    return KELP_ERR_INVALID;
  }
  const kelp::Found found = document->find(path);
  if (found.code != 0) return found.code;
  const kelp::Position at = document->position_of(found.element());
  *line = static_cast<uint32_t>(at.line);
  *column = static_cast<uint32_t>(at.column);
  return 0;
}
