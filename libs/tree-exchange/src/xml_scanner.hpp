// Walks the tags of a document that is known to be well-formed, in one pass over its text, and says
// where each stands, so that a part can be handed on as it is written. Knows nothing of trees.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tree_exchange {

enum class XmlPiece { open, close, text, end };

struct XmlEvent {
  XmlPiece piece;
  std::size_t begin;  // the "<", or the first character that is no blank
  std::size_t end;
  std::string_view name;  // of an element
  std::vector<std::pair<std::string_view, std::string_view>> attributes;
  bool empty = false;  // <name/>: no close follows

  std::optional<std::string_view> attribute(std::string_view wanted) const;
};

class XmlScanner {
 public:
  explicit XmlScanner(std::string_view text) : text_(text) {}

  // The next tag, or text that is not blank. Comments and instructions are passed over.
  XmlEvent next();
  // The same without moving.
  XmlEvent peek();
  // The end of the element that was opened last.
  std::size_t skip_element(const XmlEvent &opened);

 private:
  XmlEvent tag(std::size_t begin);

  std::string_view text_;
  std::size_t at_ = 0;
};

struct LineAndColumn {
  std::size_t line;
  std::size_t column;  // in bytes
};

// Lines and columns of a text, from 1.
class XmlLines {
 public:
  explicit XmlLines(std::string_view text);
  LineAndColumn at(std::size_t offset) const;

 private:
  std::vector<std::size_t> starts_;
};

}  // namespace tree_exchange
