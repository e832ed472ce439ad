// Objects to XML and back through the runtime's document, for any structure. The element is named
// x.
#pragma once

#include <kelp/xml.h>

#include "support/objects.hpp"

namespace encodings {

using ToXml = std::uint32_t(kelp_handle *, std::uint32_t, const char *, char *, const void *,
                            std::uint32_t, std::uint32_t, std::uint32_t *);
using FromXml = void(kelp_handle *, std::uint32_t, const char *, kelp_xml_document *, void *,
                     std::uint32_t *, char *, std::int32_t);

template <typename Type>
std::string xml_of(kelp_handle *handle, const Object<Type> &object, std::uint32_t *err,
                   std::uint32_t size = 64 * 1024, std::uint32_t state_byte = 0) {
  std::string buffer(size + 1, '#');
  const std::uint32_t length = object.template call<ToXml>("to_xml")(handle, 0, "x", buffer.data(),
                                                                     object, size, state_byte, err);
  return buffer.substr(0, length);
}

class Document {
 public:
  explicit Document(const std::string &text) {
    char message[256] = "";
    document_ = kelp_xml_parse(text.data(), text.size(), message, sizeof message);
    EXPECT_NE(document_, nullptr) << message;
  }
  ~Document() { kelp_xml_free(document_); }
  Document(const Document &) = delete;
  Document &operator=(const Document &) = delete;
  operator kelp_xml_document *() const { return document_; }

 private:
  kelp_xml_document *document_;
};

template <typename Type>
void read(kelp_handle *handle, const Object<Type> &object, const std::string &text,
          std::uint32_t *err, char *message = nullptr, std::int32_t message_size = 0) {
  const Document document(text);
  object.template call<FromXml>("from_xml")(handle, 0, "//x", document, object, err, message,
                                            message_size);
}

}  // namespace encodings
