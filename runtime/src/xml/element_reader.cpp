// Messages quote at most the first bytes of a text, with control characters escaped, so that they
// stay one short line whatever the document holds.
#include "xml/element_reader.hpp"

#include <cstdio>

#include "text/writer.hpp"
#include "xml/element_writer.hpp"

namespace kelp {
namespace {

constexpr size_t kQuotedBytes = 40;

bool is_white(char byte) { return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n'; }

bool has_message(const XmlSource &source) {
  return source.message != nullptr && source.message_size > 0;
}

}  // namespace

pugi::xml_node find_element(const XmlSource &source) {
  if (source.document == nullptr || source.path == nullptr) {
    raise(source.handle, source.err, KELP_ERR_INVALID);
    return {};
  }
  const Found found = source.document->find(source.path);
  if (found.code == 0) return found.element();
  char text[200];
  TextWriter words(text, sizeof text - 1);
  words.put("found no element ");
  words.put(source.path);
  words.put(" in the document");
  text[words.used()] = '\0';
  raise(source.handle, source.err, found.code,
        found.code == KELP_ERR_NOT_FOUND ? text : source.path);
  if (found.code == KELP_ERR_INVALID && has_message(source)) {
    std::snprintf(source.message, static_cast<size_t>(source.message_size),
                  "%s: found no path that can be read, expected //name, /tag and /tag[n]",
                  source.path);
  }
  return {};
}

void refuse_text(const XmlSource &source, pugi::xml_node element, std::string_view text,
                 const char *expected) {
  raise(source.handle, source.err, KELP_ERR_INVALID, expected);
  if (!has_message(source)) return;
  const Position at = source.document->position_of(element);
  char quoted[4 * kQuotedBytes + 1] = "";
  TextWriter(quoted, sizeof quoted).put_escaped(text.substr(0, kQuotedBytes));
  std::snprintf(source.message, static_cast<size_t>(source.message_size),
                "%s: found \"%s\"%s at line %zu, column %zu, expected %s", source.path, quoted,
                text.size() > kQuotedBytes ? "..." : "", at.line, at.column, expected);
}

std::string_view trimmed(std::string_view text) {
  const char *first = text.data();
  const char *last = first + text.size();
  while (first != last && is_white(*first)) ++first;
  while (first != last && is_white(last[-1])) --last;
  return {first, static_cast<size_t>(last - first)};
}

bool is_hexadecimal(pugi::xml_node element) {
  return element.attribute(kEncodingAttribute.data()).value() == kHexEncoding;
}

}  // namespace kelp
