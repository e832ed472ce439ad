// The exported look-ups, through which modules read enumerations and flag sets and test whether an
// element is there at all. They have no handle and no error word: the code is the result. Behind
// them those of elements that are found without paths.
#include <algorithm>
#include <cstring>
#include <new>

#include "kelp/xml_elements.h"
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

const kelp_xml_element *kelp_xml_find(const kelp_xml_document *document, const char *path) {
  return document == nullptr || path == nullptr ? nullptr : document->find(path).first;
}

kelp_xml_row kelp_xml_children(const kelp_xml_document *document, const kelp_xml_element *parent,
                               const char *tag, size_t length, uint32_t *next) {
  const std::string_view name(tag, length);
  kelp::ElementIndex::Nodes row = document->index.group(*next, parent, name);
  if (row.empty()) {
    row = document->index.children(parent, name, next);
  } else {
    ++*next;
  }
  return {row.data(), static_cast<uint32_t>(row.size())};
}

uint32_t kelp_xml_empty_children(const kelp_xml_element *parent, const char **tags, uint32_t room) {
  uint32_t count = 0;
  for (pugi::xml_node child = kelp::node_of(parent).first_child(); child;
       child = child.next_sibling()) {
    if (child.type() != pugi::node_element) continue;
    if (count == room || child.first_child()) return UINT32_MAX;
    tags[count++] = child.name();
  }
  return count;
}
