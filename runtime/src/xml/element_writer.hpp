// Writes tags, texts and the whole element of a primitive, each whole or not at all. start_tag,
// end_tag and xml_enum_print of kelp/xml.h and the to_xml operations of the primitives stand on it.
#pragma once

#include <string_view>

#include "kelp/base.h"

namespace kelp {

// Where an XML piece goes, as every writing operation gets it.
struct XmlTarget {
  kelp_handle *handle;
  char *buffer;
  uint32_t size;
  uint32_t *err;
};

// An element with a text. has_value false gives an empty element.
struct XmlElement {
  const char *tag;
  uint32_t state_byte;
  std::string_view text;
  bool has_value;
};

// Each returns the bytes written; under a set error word 0. A piece that does not fit is error 90,
// a null or empty tag 22.
uint32_t write_opening_tag(const XmlTarget &target, const char *tag, uint32_t state_byte);
uint32_t write_closing_tag(const XmlTarget &target, const char *tag);
uint32_t write_raw(const XmlTarget &target, std::string_view text);
uint32_t write_element(const XmlTarget &target, const XmlElement &element);

// The name of the attribute that marks a text in hexadecimal digits, and its value.
inline constexpr std::string_view kEncodingAttribute = "encoding";
inline constexpr std::string_view kHexEncoding = "hex";

}  // namespace kelp
