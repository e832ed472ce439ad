// The operations that the primitives of fixed image size share: the five numbers and ip_address. A
// primitive gives its facts as a Rule; each operation is written here once and exported under the
// primitive's name by one of the two macros at the end.
//
// A Rule has: Value (the type in memory), kName, kImageSize, kTextSize (enough for any text),
// kExpected (what from_xml takes, in words), and the functions hash(value, seed), encode(value,
// image), decode(image, &value) and parse(text, &value), which are false for what is no value,
// format(value, text) with the length as its result; for a number stored(value), what is kept of
// it, and for anything else store(writer, address, value), which announces.
#pragma once

#include <new>

#include "base/announce.hpp"
#include "base/failure.hpp"
#include "kelp/xml_elements.h"
#include "text/writer.hpp"
#include "wire/bounds.hpp"
#include "xml/element_reader.hpp"
#include "xml/element_text.hpp"
#include "xml/element_writer.hpp"

namespace kelp {

template <class Rule>
struct ValueFamily {
  using Value = typename Rule::Value;

  static void store(Writer writer, Value *address, const Value &value) {
    if constexpr (requires { Rule::stored(value); }) {
      writer.store(address, Rule::stored(value));
    } else {
      Rule::store(writer, address, value);
    }
  }

  static Value *get(const Value *address, const uint32_t *err) {
    return *err != 0 ? nullptr : const_cast<Value *>(address);
  }

  static Value get_value(kelp_handle *handle, const Value *address, uint32_t *err) {
    if (*err != 0) return 0;
    if (address != nullptr) return *address;
    raise(handle, err, KELP_ERR_INVALID, "found a null value");
    return 0;
  }

  static void set(Writer writer, Value *address, const Value *source, uint32_t *err) {
    if (*err != 0) return;
    if (address == nullptr || source == nullptr)
      return raise(writer.handle, err, KELP_ERR_INVALID, "found a null value");
    store(writer, address, *source);
  }

  static uint32_t hash(const Value *address, uint32_t seed) {
    return address == nullptr ? seed : Rule::hash(*address, seed);
  }

  static uint32_t marshal(kelp_handle *handle, void *buffer, const Value *address, int32_t length,
                          uint32_t *err) {
    if (*err != 0 || !piece_fits(handle, buffer, address, Rule::kImageSize, length, err)) return 0;
    Rule::encode(*address, static_cast<uint8_t *>(buffer));
    return Rule::kImageSize;
  }

  static uint32_t unmarshal(Writer writer, const void *buffer, Value *address, int32_t length,
                            uint32_t *err) {
    if (*err != 0) return 0;
    if (!piece_fits(writer.handle, buffer, address, Rule::kImageSize, length, err)) return 0;
    Value value{};
    if (!Rule::decode(static_cast<const uint8_t *>(buffer), &value)) {
      raise(writer.handle, err, KELP_ERR_INVALID);
      return 0;
    }
    store(writer, address, value);
    return Rule::kImageSize;
  }

  static uint32_t print(char *buffer, uint32_t indent, const char *label, const Value *address,
                        uint32_t size, const uint32_t *err) {
    if (*err != 0) return 0;
    char text[Rule::kTextSize];
    TextWriter writer(buffer, size);
    open_line(writer, indent, label, Rule::kName);
    if (address != nullptr) writer.put({text, Rule::format(*address, text)});
    writer.put("\n");
    return writer.used();
  }

  static uint32_t to_xml(const XmlTarget &target, const char *tag, const Value *address,
                         uint32_t state_byte) {
    char text[Rule::kTextSize];
    const size_t length = address == nullptr ? 0 : Rule::format(*address, text);
    return write_element(target, {tag, state_byte, {text, length}, address != nullptr});
  }

  static void from_xml(Writer writer, const XmlSource &source, Value *address) {
    if (*source.err != 0) return;
    if (address == nullptr) return raise(writer.handle, source.err, KELP_ERR_INVALID);
    const pugi::xml_node element = find_element(source);
    if (!element) return;
    try {
      const ElementText text(element);
      Value value{};
      if (!Rule::parse(trimmed(text.view()), &value)) {
        return refuse_text(source, element, text.view(), Rule::kExpected);
      }
      store(writer, address, value);
    } catch (const std::bad_alloc &) {
      raise(writer.handle, source.err, KELP_ERR_NO_MEMORY);
    }
  }

  // What stands in several pieces may find no memory, and is read by its path.
  static bool parse_element(const kelp_xml_element *element, Value *value) {
    const char *text = whole_text(node_of(element));
    return text != nullptr && Rule::parse(trimmed(text), value);
  }

  static bool read_element(Writer writer, const kelp_xml_element *element, Value *address) {
    Value value{};
    if (address == nullptr || !parse_element(element, &value)) return false;
    store(writer, address, value);
    return true;
  }

  static uint32_t read_row(const kelp_xml_row &row, Value *values) {
    uint32_t read = 0;
    while (read < row.count && parse_element(row.elements[read], &values[read])) ++read;
    return read;
  }
};

}  // namespace kelp

// get, hash, len, marshal, unmarshal, print, to_xml, from_xml and read_element of a primitive.
#define KELP_EXPORT_VALUE_FAMILY(prefix, Rule)                                                     \
  Rule::Value *prefix##_get(kelp_handle *, uint32_t, const Rule::Value *address, uint32_t *err) {  \
    return kelp::ValueFamily<Rule>::get(address, err);                                             \
  }                                                                                                \
  uint32_t prefix##_hash(const Rule::Value *address, uint32_t seed) {                              \
    return kelp::ValueFamily<Rule>::hash(address, seed);                                           \
  }                                                                                                \
  uint32_t prefix##_len(kelp_handle *, uint32_t, const Rule::Value *) { return Rule::kImageSize; } \
  uint32_t prefix##_marshal(kelp_handle *handle, uint32_t, void *buffer,                           \
                            const Rule::Value *address, int32_t length, uint32_t *err) {           \
    return kelp::ValueFamily<Rule>::marshal(handle, buffer, address, length, err);                 \
  }                                                                                                \
  uint32_t prefix##_unmarshal(kelp_handle *handle, uint32_t space_id, const void *buffer,          \
                              Rule::Value *address, int32_t length, uint32_t, uint32_t *err) {     \
    return kelp::ValueFamily<Rule>::unmarshal({handle, space_id}, buffer, address, length, err);   \
  }                                                                                                \
  uint32_t prefix##_print(kelp_handle *, uint32_t, char *buffer, uint32_t indent,                  \
                          const char *label, const Rule::Value *address, uint32_t size,            \
                          uint32_t *err) {                                                         \
    return kelp::ValueFamily<Rule>::print(buffer, indent, label, address, size, err);              \
  }                                                                                                \
  uint32_t prefix##_to_xml(kelp_handle *handle, uint32_t, const char *tag, char *buffer,           \
                           const Rule::Value *address, uint32_t size, uint32_t state_byte,         \
                           uint32_t *err) {                                                        \
    return kelp::ValueFamily<Rule>::to_xml({handle, buffer, size, err}, tag, address, state_byte); \
  }                                                                                                \
  void prefix##_from_xml(kelp_handle *handle, uint32_t space_id, const char *path,                 \
                         kelp_xml_document *document, Rule::Value *address, uint32_t *err,         \
                         char *message, int32_t message_size) {                                    \
    kelp::ValueFamily<Rule>::from_xml(                                                             \
        {handle, space_id}, {handle, path, document, err, message, message_size}, address);        \
  }                                                                                                \
  uint32_t prefix##_read_element(kelp_handle *handle, uint32_t space_id,                           \
                                 const kelp_xml_element *element, Rule::Value *address) {          \
    return kelp::ValueFamily<Rule>::read_element({handle, space_id}, element, address) ? 1 : 0;    \
  }

// get_value, set and set_value of a number, beside the operations above.
#define KELP_EXPORT_NUMBER_FAMILY(prefix, Rule)                                             \
  KELP_EXPORT_VALUE_FAMILY(prefix, Rule)                                                    \
  Rule::Value prefix##_get_value(kelp_handle *handle, uint32_t, const Rule::Value *address, \
                                 uint32_t *err) {                                           \
    return kelp::ValueFamily<Rule>::get_value(handle, address, err);                        \
  }                                                                                         \
  void prefix##_set(kelp_handle *handle, uint32_t space_id, Rule::Value *address,           \
                    const Rule::Value *source, uint32_t *err) {                             \
    kelp::ValueFamily<Rule>::set({handle, space_id}, address, source, err);                 \
  }                                                                                         \
  void prefix##_set_value(kelp_handle *handle, uint32_t space_id, Rule::Value *address,     \
                          Rule::Value value, uint32_t *err) {                               \
    kelp::ValueFamily<Rule>::set({handle, space_id}, address, &value, err);                 \
  }
