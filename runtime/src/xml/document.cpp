// Parsing and paths. A path is walked part by part: "//name" through the index of names, then each
// "/tag" or "/tag[n]" through the index of children. The fields of an object have one path but for
// their last part, so each thread remembers where the last ones led.
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

// Where the last paths led: a path, and the elements at some of its fronts. What is asked for next
// is mostly what stands next in the document, below one of these.
class Trail {
 public:
  using Node = ElementIndex::Node;

  // The element at front, null when the trail does not have it.
  Node at(uint64_t document, std::string_view front) const {
    if (document != document_) return nullptr;
    for (size_t level = depth_; level-- > 0;) {
      if (levels_[level].length != front.size()) continue;
      return std::memcmp(path_, front.data(), front.size()) == 0 ? levels_[level].node : nullptr;
    }
    return nullptr;
  }

  // Goes on to found at path from above at its front, the first front_length bytes, 0 for none.
  void go(uint64_t document, std::string_view path, size_t front_length, Node above, Node found) {
    if (path.size() > kLongest) return;
    if (front_length == 0 || at(document, path.substr(0, front_length)) == nullptr) {
      depth_ = 0;
      document_ = document;
      if (front_length != 0) add(path.substr(0, front_length), 0, above);
    }
    while (depth_ > 0 && levels_[depth_ - 1].length > front_length) --depth_;
    add(path, front_length, found);
  }

  // The group that is likely to be asked for next.
  uint32_t next_group = 0;

 private:
  static constexpr size_t kLongest = 256;
  static constexpr size_t kDeepest = 8;
  struct Level {
    size_t length = 0;
    Node node = nullptr;
  };

  void add(std::string_view path, size_t known, Node node) {
    if (depth_ == kDeepest) return;
    std::memcpy(path_ + known, path.data() + known, path.size() - known);
    levels_[depth_++] = {path.size(), node};
  }

  uint64_t document_ = 0;  // its serial
  size_t depth_ = 0;
  Level levels_[kDeepest] = {};
  char path_[kLongest] = {};
};
constinit thread_local Trail t_trail;

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
  if (!document->index.build(document->tree, text.size(), &too_deep)) {
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
  constexpr kelp::Found kBadPath = {KELP_ERR_INVALID, nullptr, 0, {}};
  constexpr kelp::Found kNone = {KELP_ERR_NOT_FOUND, nullptr, 0, {}};
  kelp::Trail &trail = kelp::t_trail;
  const std::string_view whole = path;
  const size_t slash = path.rfind('/');
  const std::string_view front = path.substr(0, slash);
  kelp::ElementIndex::Node above = trail.at(serial, front);
  if (above != nullptr) {
    const auto row = index.group(trail.next_group, above, path.substr(slash + 1));
    if (!row.empty()) {
      ++trail.next_group;
      trail.go(serial, whole, slash, above, row.front());
      return {0, row.front(), static_cast<uint32_t>(row.size()), row};
    }
    path.remove_prefix(slash);
  } else {
    kelp::Part part;
    if (!path.starts_with("//")) return kBadPath;
    path.remove_prefix(2);
    if (!kelp::take_part(&path, &part) || part.index != 0) return kBadPath;
    const kelp::ElementIndex::Named named = index.named(part.name);
    if (path.empty()) {
      if (named.count == 0) return kNone;
      trail.go(serial, whole, 0, nullptr, named.first);
      return {0, named.first, named.count, {}};
    }
    above = named.first;
  }
  kelp::ElementIndex::Nodes row;
  for (kelp::Part part; !path.empty();) {
    if (!path.starts_with('/')) return kBadPath;
    path.remove_prefix(1);
    if (!row.empty()) above = row.front();
    if (!kelp::take_part(&path, &part)) return kBadPath;
    if (above == nullptr) continue;
    row = index.children(above, part.name, &trail.next_group);
    if (part.index != 0) {
      row = part.index <= row.size() ? row.subspan(part.index - 1, 1) : kelp::ElementIndex::Nodes{};
    }
    if (row.empty()) above = nullptr;
  }
  if (row.empty()) return kNone;
  trail.go(serial, whole, slash, above, row.front());
  return {0, row.front(), static_cast<uint32_t>(row.size()), row};
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
