// The exported tag writers, with which modules build the elements of objects around the fields.
#include "base/failure.hpp"
#include "kelp/xml.h"
#include "xml/element_writer.hpp"

uint32_t start_tag(kelp_handle *handle, uint32_t, char *buffer, const char *tag, uint32_t size,
                   uint32_t state_byte, uint32_t *err) {
  return kelp::write_opening_tag({handle, buffer, size, err}, tag, state_byte);
}

uint32_t end_tag(kelp_handle *handle, uint32_t, char *buffer, const char *tag, uint32_t size,
                 uint32_t *err) {
  return kelp::write_closing_tag({handle, buffer, size, err}, tag);
}

uint32_t xml_enum_print(kelp_handle *handle, uint32_t, char *buffer, const char *text,
                        uint32_t size, uint32_t text_length, uint32_t *err) {
  if (*err != 0) return 0;
  if (text == nullptr) {
    kelp::raise(handle, err, KELP_ERR_INVALID);
    return 0;
  }
  return kelp::write_raw({handle, buffer, size, err}, {text, text_length});
}
