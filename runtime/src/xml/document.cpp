// Parsing and paths. A path is walked part by part: "//name" through the index of names, then each
// "/tag" or "/tag[n]" through the index of children. The fields of an object have one path but for
// their last part, so each thread remembers where the front of the last one led.
#include "xml/document.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "kelp/xml.h"
#include "xml/well_formed.hpp"

namespace kelp {

LineMap::LineMap(std::string_view text) : starts_{0} {
  for (size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1)) {
    starts_.push_back(at + 1);
  }
}

Position LineMap::at(size_t offset) const {
  const auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
  return {static_cast<size_t>(next - starts_.begin()), offset - *(next - 1) + 1};
}

namespace {

constexpr auto kEndsName = [] {
  std::array<bool, 256> ends{};
  for (const char c : std::string_view("/[]@*()=\"'<>&|,$!+ \t\r\n")) {
    ends[static_cast<unsigned char>(c)] = true;
  }
  return ends;
}();

// One part of a path; index 0 stands for no index.
struct Part {
  std::string_view name;
  uint32_t index = 0;
};

// Takes the part off the front of *path, which starts behind its slash. False for another form.
bool take_part(std::string_view *path, Part *part) {
  std::size_t length = 0;
  while (length < path->size() && !kEndsName[static_cast<unsigned char>((*path)[length])]) ++length;
  part->name = path->substr(0, length);
  part->index = 0;
  path->remove_prefix(part->name.size());
  if (part->name.empty() || part->name == "." || part->name == "..") return false;
  if (!path->starts_with('[')) return true;
  const char *end = path->data() + path->size();
  const auto [stop, error] = std::from_chars(path->data() + 1, end, part->index);
  if (error != std::errc() || part->index == 0 || stop == end || *stop != ']') return false;
  path->remove_prefix(static_cast<size_t>(stop + 1 - path->data()));
  return true;
}

// Where the front of a path led, the last part without.
struct Front {
  static constexpr size_t kLongest = 256;
  uint64_t document = 0;  // its serial
  size_t length = 0;
  pugi::xml_node_struct *node = nullptr;
  char path[kLongest];

  bool is(uint64_t serial, std::string_view front) const {
    return document == serial && std::string_view(path, length) == front;
  }
  void keep(uint64_t serial, std::string_view front, pugi::xml_node_struct *found) {
    if (front.size() > kLongest) return;
    document = serial;
    length = front.size();
    node = found;
    std::memcpy(path, front.data(), length);
  }
};
thread_local Front t_front;

void describe(char *message, uint32_t size, const char *what, Position at) {
  if (message == nullptr || size == 0) return;
  std::snprintf(message, size, "XML document: found %s at line %zu, column %zu", what, at.line,
                at.column);
}

// Texts of blanks only are kept where they are all that an element holds. Texts outside the root
// element become nodes instead of vanishing, so that they can be refused.
constexpr unsigned kParseOptions =
    pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_fragment;

// Where a node starts: the "<" of an element, whose own offset is that of its name.
size_t offset_of(pugi::xml_node node) {
  const auto offset = static_cast<size_t>(node.offset_debug());
  return node.type() == pugi::node_element ? offset - 1 : offset;
}

kelp_xml_document *parse(std::string_view text, char *message, uint32_t size) {
  auto document = std::make_unique<kelp_xml_document>(text);
  if (const Refusal refused = find_forbidden(text); refused.found != nullptr) {
    describe(message, size, refused.found, document->lines.at(refused.offset));
    return nullptr;
  }
  const pugi::xml_parse_result result =
      document->tree.load_buffer(text.data(), text.size(), kParseOptions, pugi::encoding_utf8);
  if (!result) {
    describe(message, size, result.description(),
             document->lines.at(static_cast<size_t>(result.offset)));
    return nullptr;
  }
  const pugi::xml_node root = document->tree.first_child();
  if (!root) {
    describe(message, size, "no root element", document->lines.at(text.size()));
    return nullptr;
  }
  for (pugi::xml_node node = root; node; node = node.next_sibling()) {
    if (node == root && node.type() == pugi::node_element) continue;
    describe(message, size, "something beside the one root element", document->position_of(node));
    return nullptr;
  }
  pugi::xml_node too_deep;
  if (!document->index.build(document->tree, KELP_XML_MAX_DEPTH, &too_deep)) {
    describe(message, size, "an element nested too deep", document->position_of(too_deep));
    return nullptr;
  }
  static std::atomic<uint64_t> last{0};
  document->serial = ++last;
  return document.release();
}

}  // namespace
}  // namespace kelp

kelp::Position kelp_xml_document::position_of(pugi::xml_node node) const {
  return lines.at(kelp::offset_of(node));
}

kelp::Found kelp_xml_document::find(std::string_view path) const {
  constexpr kelp::Found kBadPath = {KELP_ERR_INVALID, nullptr, 0};
  kelp::Part part;
  kelp::Front &known = kelp::t_front;
  const std::string_view front = path.substr(0, path.find_last_of('/'));
  kelp::ElementIndex::Node above = nullptr;
  kelp::ElementIndex::Named found;
  if (known.is(serial, front)) {
    above = known.node;
    path.remove_prefix(front.size());
  } else {
    if (!path.starts_with("//")) return kBadPath;
    path.remove_prefix(2);
    if (!kelp::take_part(&path, &part) || part.index != 0) return kBadPath;
    found = index.named(part.name);
  }
  while (!path.empty()) {
    if (!path.starts_with('/')) return kBadPath;
    path.remove_prefix(1);
    if (found.count != 0) above = found.first;
    if (!kelp::take_part(&path, &part)) return kBadPath;
    if (above == nullptr) continue;
    if (path.empty()) known.keep(serial, front, above);
    const kelp::ElementIndex::Nodes nodes = index.children(above, part.name);
    const std::size_t first = part.index == 0 ? 0 : part.index - 1;
    above = nullptr;
    if (first >= nodes.size()) {
      found = {};
    } else {
      found = {nodes[first], part.index == 0 ? static_cast<uint32_t>(nodes.size()) : 1};
    }
  }
  if (found.count == 0) return {KELP_ERR_NOT_FOUND, nullptr, 0};
  return {0, found.first, found.count};
}

kelp_xml_document *kelp_xml_parse(const char *data, size_t length, char *message,
                                  uint32_t message_size) {
  try {
    return kelp::parse(data == nullptr ? std::string_view() : std::string_view(data, length),
                       message, message_size);
  } catch (const std::bad_alloc &) {
    if (message != nullptr && message_size > 0) {
      std::snprintf(message, message_size, "XML document: no memory for %zu bytes", length);
    }
    return nullptr;
  }
}

void kelp_xml_free(kelp_xml_document *document) { delete document; }
