// The three external forms of a text: an image of a 32-bit length and the bytes, a line with
// escapes, and an element.
#include <cstring>
#include <new>
#include <string>

#include "kelp/xml_elements.h"
#include "primitives/vstring_text.hpp"
#include "text/writer.hpp"
#include "wire/bounds.hpp"
#include "wire/byte_order.hpp"
#include "xml/element_reader.hpp"
#include "xml/element_text.hpp"
#include "xml/element_writer.hpp"

namespace {

using kelp::quick::TextRule;

// The value of a hexadecimal digit, 16 for any other byte.
unsigned digit_value(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f') return static_cast<unsigned>(digit - 'a' + 10);
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
  return 16;
}

bool decode_hexadecimal(std::string_view digits, std::string *bytes) {
  if (digits.size() % 2 != 0) return false;
  bytes->reserve(digits.size() / 2);
  for (size_t i = 0; i < digits.size(); i += 2) {
    const unsigned high = digit_value(digits[i]);
    const unsigned low = digit_value(digits[i + 1]);
    if (high > 15 || low > 15) return false;
    bytes->push_back(static_cast<char>(high << 4 | low));
  }
  return true;
}

void read_element(kelp::Writer writer, const kelp::XmlSource &source, pugi::xml_node element,
                  kelp_vstring *address) {
  const kelp::ElementText text(element);
  if (!kelp::is_hexadecimal(element)) {
    return kelp::replace_text(writer, address, text.view(), source.err);
  }
  std::string bytes;
  if (!decode_hexadecimal(kelp::trimmed(text.view()), &bytes)) {
    return kelp::refuse_text(source, element, text.view(), "pairs of hexadecimal digits");
  }
  kelp::replace_text(writer, address, bytes, source.err);
}

}  // namespace

uint32_t kelp_vstring_len(kelp_handle *, uint32_t, const kelp_vstring *address) {
  return static_cast<uint32_t>(TextRule::image_size(kelp::text_of(address)));
}

uint32_t kelp_vstring_marshal(kelp_handle *handle, uint32_t, void *buffer,
                              const kelp_vstring *address, int32_t length, uint32_t *err) {
  if (*err != 0) return 0;
  const std::string_view text = kelp::text_of(address);
  const uint64_t needed = TextRule::image_size(text);
  if (!kelp::piece_fits(handle, buffer, address, needed, length, err)) return 0;
  TextRule::encode(text, static_cast<uint8_t *>(buffer));
  return static_cast<uint32_t>(needed);
}

uint32_t kelp_vstring_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,
                                kelp_vstring *address, int32_t length, uint32_t reuse,
                                uint32_t *err) {
  if (*err != 0) return 0;
  if (!kelp::piece_fits(handle, buffer, address, TextRule::kLengthSize, length, err)) return 0;
  const auto *at = static_cast<const uint8_t *>(buffer);
  const auto text_length = kelp::load_big_endian<uint32_t>(at);
  const uint64_t needed = uint64_t{TextRule::kLengthSize} + text_length;
  if (!kelp::piece_fits(handle, buffer, address, needed, length, err)) return 0;

  const kelp::Writer writer = {handle, space_id};
  const std::string_view text(reinterpret_cast<const char *>(at + TextRule::kLengthSize),
                              text_length);
  if (reuse != 0 && address->text != nullptr && address->length == text_length) {
    writer.announce(address->text, text_length);
    std::memcpy(address->text, text.data(), text_length);
  } else {
    kelp::replace_text(writer, address, text, err);
  }
  return *err == 0 ? static_cast<uint32_t>(needed) : 0;
}

uint32_t kelp_vstring_print(kelp_handle *, uint32_t, char *buffer, uint32_t indent,
                            const char *label, const kelp_vstring *address, uint32_t size,
                            uint32_t *err) {
  if (*err != 0) return 0;
  kelp::TextWriter writer(buffer, size);
  kelp::open_line(writer, indent, label, "kelp_vstring");
  writer.put_escaped(kelp::text_of(address));
  writer.put("\n");
  return writer.used();
}

uint32_t kelp_vstring_to_xml(kelp_handle *handle, uint32_t, const char *tag, char *buffer,
                             const kelp_vstring *address, uint32_t size, uint32_t state_byte,
                             uint32_t *err) {
  return kelp::write_element({handle, buffer, size, err},
                             {tag, state_byte, kelp::text_of(address), address != nullptr});
}

void kelp_vstring_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,
                           kelp_xml_document *document, kelp_vstring *address, uint32_t *err,
                           char *message, int32_t message_size) {
  if (*err != 0) return;
  if (address == nullptr) return kelp::raise(handle, err, KELP_ERR_INVALID);
  const kelp::XmlSource source = {handle, path, document, err, message, message_size};
  const pugi::xml_node element = kelp::find_element(source);
  if (!element) return;
  try {
    read_element({handle, space_id}, source, element, address);
  } catch (const std::bad_alloc &) {
    kelp::raise(handle, err, KELP_ERR_NO_MEMORY);
  }
}

uint32_t kelp_vstring_read_element(kelp_handle *handle, uint32_t space_id,
                                   const kelp_xml_element *element, kelp_vstring *address,
                                   uint32_t *err) {
  const pugi::xml_node node = kelp::node_of(element);
  const char *text = kelp::whole_text(node);
  if (address == nullptr || text == nullptr || kelp::is_hexadecimal(node)) return 0;
  kelp::replace_text({handle, space_id}, address, text, err);
  return 1;
}
