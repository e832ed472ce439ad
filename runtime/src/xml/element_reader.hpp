// The reading side of a primitive's from_xml: finds the element, hands its text to the primitive,
// and says in the message buffer what was wrong with a text or a path.
#pragma once

#include <string_view>

#include "base/failure.hpp"
#include "xml/document.hpp"

namespace kelp {

// The arguments that every from_xml has.
struct XmlSource {
  kelp_handle *handle;
  const char *path;
  kelp_xml_document *document;
  uint32_t *err;
  char *message;
  int32_t message_size;
};

// The element at the source's path; null with the error word set when there is none to read.
pugi::xml_node find_element(const XmlSource &source);

// Fails with 22 and a message: what the element holds, where, and what was expected.
void refuse_text(const XmlSource &source, pugi::xml_node element, std::string_view text,
                 const char *expected);

// The text without the blanks, tabs, newlines and returns around it.
std::string_view trimmed(std::string_view text);

// Whether the element's text is in hexadecimal digits.
bool is_hexadecimal(pugi::xml_node element);

}  // namespace kelp
