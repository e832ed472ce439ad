// The text of an element: its own character data in order, without that of its children.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace kelp {

// The text of an element that holds one piece of text and nothing else, or nothing at all; null for
// any other.
const char *whole_text(pugi::xml_node element);

// Valid as long as it and its document are. Nearly every element has its text in one piece, which
// is then not copied; joining several pieces may throw std::bad_alloc.
class ElementText {
 public:
  explicit ElementText(pugi::xml_node element);
  ElementText(const ElementText &) = delete;
  ElementText &operator=(const ElementText &) = delete;

  std::string_view view() const { return view_; }

 private:
  std::string joined_;
  std::string_view view_;
};

}  // namespace kelp
